#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QMessageBox>
#include <QScreen>
#include <QTimer>
#include <QtTest>
#include <functional>

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

QMessageBox* boxWithText(const QString& text) {
  for (QMessageBox* b : openBoxes())
    if (b->text() == text) return b;
  return nullptr;
}

// Clicks the button of that caption in the modal box as soon as it is up; `seen` looks at the box first.
void answerWith(QObject* context, const QString& caption,
                const std::function<void(QMessageBox*)>& seen = nullptr) {
  QTimer::singleShot(50, context, [caption, seen] {
    for (QMessageBox* b : openBoxes())
      for (QAbstractButton* btn : b->buttons())
        if (btn->text() == caption) {
          if (seen) seen(b);
          btn->click();
          return;
        }
  });
}

// A modal box that waits for an answer nobody gives ends the test's wait after a while, not never.
void giveUpAfter(QObject* context, int ms) {
  QTimer::singleShot(ms, context, [] {
    for (QMessageBox* b : openBoxes())
      if (b->isModal()) b->done(0);
  });
}

}  // namespace

class MessageSinkTest : public QObject {
  Q_OBJECT

 private slots:
  void init() { timers_ = new QObject; }
  // Timers of a test die with it, so none of them answers a box of the next.
  void cleanup() {
    delete timers_;
    closeAll();
  }

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
    answerWith(timers_, "Always");
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", ""), kAnswerYes);
    QCOMPARE(settings.values().size(), size_t{0});  // "Always" without a key stores nothing

    answerWith(timers_, "Always");
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", "Q1"), kAnswerYes);
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", "Q1"), kAnswerYes);  // answered without a box
    QCOMPARE(openBoxes().size(), 0);

    answerWith(timers_, "Never");
    QCOMPARE(sink.show(BoxKind::QuestBox3, "", "Go?", "Q2"), kAnswerNo);
    QCOMPARE(sink.show(BoxKind::QuestBox3, "", "Go?", "Q2"), kAnswerNo);
    // A stored "no" does not hold for the box without "Never": the question comes up again.
    answerWith(timers_, "Yes");
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", "Q2"), kAnswerYes);
  }

  void aQuestionThatNamesAKeyRemembersItsAnswer() {
    MemorySettings settings;
    QtMessageSink sink(settings, "ZORVIK 1");
    giveUpAfter(timers_, 3000);
    answerWith(timers_, "Always");
    QCOMPARE(sink.show(BoxKind::Question, "ZORVIK 1", "Animated GIF saved.\r\nDo you want view it?",
                       "ViewAnimGIF"),
             kAnswerYes);
    QCOMPARE(settings.getInt("HideQuestWin", "ViewAnimGIF"), kAnswerYes);
    QCOMPARE(sink.show(BoxKind::Question, "ZORVIK 1", "Go?", "ViewAnimGIF"), kAnswerYes);  // without a box
  }

  void anInfoBoxStepsDownAndRightFromOneWhereItIsTested() {
    MemorySettings settings;
    QtMessageSink sink(settings, "ZORVIK 1");
    sink.show(BoxKind::InfoBox, "ZORVIK 1", "same text", "");
    QMessageBox* first = openBoxes().first();
    const QPoint centred = first->pos();
    const QRect screen = first->screen()->availableGeometry();
    QCOMPARE(centred.x(), screen.x() + (screen.width() - first->frameGeometry().width()) / 2);
    QVERIFY(centred.x() != centred.y());
    // The next box tests the centred top first: a box with its left there makes it step.
    first->move(centred.y(), 0);
    sink.show(BoxKind::InfoBox, "ZORVIK 1", "same text", "");
    QCOMPARE(openBoxes().size(), 2);
    QMessageBox* second = openBoxes().first() == first ? openBoxes().last() : openBoxes().first();
    const int step = qRound(centred.x() / 5.0);
    QCOMPARE(second->pos(), centred + QPoint(step, step));
  }

  void anyKeyClosesAnInfoBox() {
    MemorySettings settings;
    QtMessageSink sink(settings, "ZORVIK 1");
    sink.show(BoxKind::InfoBox, "ZORVIK 1", "one", "K3");
    QTest::keyClick(boxWithText("one"), Qt::Key_A);
    QVERIFY(!boxWithText("one"));
    // Also with the focus on the check box: the key closes the box and silences nothing.
    sink.show(BoxKind::InfoBox, "ZORVIK 1", "two", "K3");
    QTest::keyClick(boxWithText("two")->checkBox(), Qt::Key_Space);
    QVERIFY(!boxWithText("two"));
    QVERIFY(!settings.getBool("HideInfoWin", "K3"));
  }

  void aQuestionMovesDownByItsHeightWhileAnInfoBoxIsOpen() {
    MemorySettings settings;
    QtMessageSink sink(settings, "ZORVIK 1");
    giveUpAfter(timers_, 3000);
    QPoint alone, besideInfo;
    int height = 0;
    answerWith(timers_, "Yes", [&](QMessageBox* b) {
      alone = b->pos();
      height = b->frameGeometry().height();
    });
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", ""), kAnswerYes);
    sink.show(BoxKind::InfoBox, "ZORVIK 1", "info", "");
    answerWith(timers_, "No", [&](QMessageBox* b) { besideInfo = b->pos(); });
    QCOMPARE(sink.show(BoxKind::QuestBox, "", "Go?", ""), kAnswerNo);
    QVERIFY(height > 0);
    QCOMPARE(besideInfo, alone + QPoint(0, height));
  }

 private:
  QObject* timers_ = nullptr;
};

QTEST_MAIN(MessageSinkTest)
#include "message_sink_test.moc"
