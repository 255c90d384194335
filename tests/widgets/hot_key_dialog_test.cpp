#include "ui/hot_key_dialog.h"

#include <QLineEdit>
#include <QRadioButton>
#include <QShortcut>
#include <QtTest>
#include <memory>

#include "config/hot_key.h"
#include "config/settings.h"
#include "core/recording_sink.h"

using namespace zorvik;

class HotKeyDialogTest : public QObject {
  Q_OBJECT

 private slots:
  void anOccupiedKeyAsksAndTheDialogStaysUntilAFreeOne() {
    MemorySettings settings;
    RecordingSink sink;
    saveHotKey(settings, "Oscilloscope", {2, 'O'});
    saveHotKey(settings, "Statscope", {2, 'O'});
    auto scope = std::make_unique<QWidget>();
    QWidget stat;
    HotKey::SetKey(scope.get(), "Oscilloscope", settings, &sink);
    QVERIFY(scope->findChild<QShortcut*>("HotKey Oscilloscope"));

    // The second window's stored key is taken: the question, and on Yes the dialog for another one.
    sink.answers = {kAnswerYes};
    HotKey::SetKey(&stat, "Statscope", settings, &sink);
    QCOMPARE(sink.messages.size(), size_t{1});
    QCOMPARE(sink.messages[0].text, std::string(kHotKeyOccupiedQuestion));
    QVERIFY(!stat.findChild<QShortcut*>("HotKey Statscope"));
    QPointer<HotKey> dialog = stat.findChild<HotKey*>("HotKey");
    QVERIFY(dialog && dialog->isVisible());

    // The same key again: refused with a critical box, and the dialog stays.
    dialog->KeySET_Click();
    QCOMPARE(sink.messages.back().kind, BoxKind::Critical);
    QVERIFY(dialog && dialog->isVisible());
    // A free one is given.
    dialog->findChild<QLineEdit*>("SymbolHotKey")->setText("S");
    dialog->KeySET_Click();
    QVERIFY(!dialog || !dialog->isVisible());
    auto* key = stat.findChild<QShortcut*>("HotKey Statscope");
    QVERIFY(key);
    QCOMPARE(key->key(), QKeySequence("Ctrl+S"));

    // A window that is gone frees its key.
    scope.reset();
    saveHotKey(settings, "Statscope", {2, 'O'});
    HotKey::SetKey(&stat, "Statscope", settings, &sink);
    QCOMPARE(stat.findChild<QShortcut*>("HotKey Statscope")->key(), QKeySequence("Ctrl+O"));
    QCOMPARE(HotKey::table().holder({2, 'S'}), std::string());
  }
};

QTEST_MAIN(HotKeyDialogTest)
#include "hot_key_dialog_test.moc"
