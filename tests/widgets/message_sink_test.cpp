#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTimer>
#include <QtTest>

#include "config/settings.h"
#include "ui/qt_message_sink.h"

using namespace zorvik;

namespace {

QList<QMessageBox*> openBoxes() {
  QList<QMessageBox*> out;
  for (QWidget* w : QApplication::topLevelWidgets())
    if (auto* b = qobject_cast<QMessageBox*>(w); b && b->isVisible()) out.append(b);
  return out;
}

void closeAll() {
  for (QMessageBox* b : openBoxes()) b->close();
  QCoreApplication::processEvents();
}

// Clicks the button of that caption in the modal box as soon as it is up.
void answerWith(const QString& caption) {
  QTimer::singleShot(50, [caption] {
    for (QMessageBox* b : openBoxes())
      for (QAbstractButton* btn : b->buttons())
        if (btn->text() == caption) btn->click();
  });
}

}  // namespace

class MessageSinkTest : public QObject {
  Q_OBJECT

 private slots:
  void cleanup() { closeAll(); }

  void infoBoxesStackAndSilencedOnesAreNotCreated() {
    MemorySettings settings;
    QtMessageSink sink(settings, "ZORVIK 1");
    sink.show(BoxKind::InfoBox, "ZORVIK 1", "same text", "K1");
    sink.show(BoxKind::InfoBox, "ZORVIK 1", "same text", "K1");
    QCOMPARE(openBoxes().size(), 2);
    QCOMPARE(openBoxes().first()->windowTitle(), QString("ZORVIK 1"));
    closeAll();
    settings.saveBool("HideInfoWin", "K1", true);
    sink.show(BoxKind::InfoBox, "ZORVIK 1", "silenced", "K1");
    QCOMPARE(openBoxes().size(), 0);
    // The instance title as key can't be silenced: the box has no check box.
    sink.show(BoxKind::InfoBox, "ZORVIK 1", "plain", "ZORVIK 1");
    QCOMPARE(openBoxes().size(), 1);
    QVERIFY(openBoxes().first()->checkBox() == nullptr);
  }

  void questionAnswersForGood() {
    MemorySettings settings;
    QtMessageSink sink(settings, "ZORVIK 1");
    answerWith("Always");
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", ""), kAnswerYes);
    QCOMPARE(settings.values().size(), size_t{0});  // "Always" without a key stores nothing

    answerWith("Always");
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", "Q1"), kAnswerYes);
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", "Q1"), kAnswerYes);  // answered without a box
    QCOMPARE(openBoxes().size(), 0);

    answerWith("Never");
    QCOMPARE(sink.show(BoxKind::QuestBox3, "", "Go?", "Q2"), kAnswerNo);
    QCOMPARE(sink.show(BoxKind::QuestBox3, "", "Go?", "Q2"), kAnswerNo);
    // A stored "no" does not hold for the box without "Never": the question comes up again.
    answerWith("Yes");
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", "Q2"), kAnswerYes);
  }
};

QTEST_MAIN(MessageSinkTest)
#include "message_sink_test.moc"
