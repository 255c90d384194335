#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>

#include "app/packet_file_menu.h"
#include "core/recording_sink.h"
#include "export/scripted_file_dialogs.h"
#include "session/main_controller.h"
#include "ui/file_dialog_qt.h"
#include "window_fixture.h"

using namespace zorvik;
using zorvik::test::onDialog;

namespace {
// The File menu's packet entries on a core with scripted dialogs.
struct MenuRig {
  MemorySettings settings;
  RecordingSink sink;
  MainView view;
  MainController main{settings, sink, view};
  ScriptedFileDialogs dialogs;
  QMenu menu;
  MenuRig() { addPacketFileMenu(&menu, main, dialogs); }
};
}  // namespace

class PacketFilesWidgetTest : public QObject {
  Q_OBJECT

 private slots:
  void menuEntriesAndTheirFaults() {
    MenuRig rig;
    auto& [settings, sink, view, main, dialogs, menu] = rig;
    auto* save = menu.findChild<QMenu*>("SaveLastPacket");
    auto* binary = menu.findChild<QAction*>("SaveLastPacket2binary");
    auto* csv = menu.findChild<QAction*>("SaveLastPacket2csv");
    auto* restore = menu.findChild<QAction*>("RestorePacketFromBinary");
    QVERIFY(save && binary && csv && restore);
    QCOMPARE(save->title(), QString("Save last packet:"));
    QCOMPARE(binary->text(), QString("binary file"));
    QCOMPARE(csv->text(), QString("CSV file"));
    QCOMPARE(restore->text(), QString("Restore from file"));
    QCOMPARE(binary->parent(), save);

    // A fault of a command becomes the critical box.
    dialogs.answers = {"/no/such/folder/p.zrv"};
    binary->trigger();
    QCOMPARE(sink.messages.back().kind, BoxKind::Critical);
    QVERIFY(QString::fromStdString(sink.messages.back().text).contains("/no/such/folder/p.zrv"));
  }

  void scaledCsvEntryStandsBesideTheCsvEntryAndWritesVolts() {
    MenuRig rig;
    auto& [settings, sink, view, main, dialogs, menu] = rig;
    auto* scaled = menu.findChild<QAction*>("SaveLastPacket2scaledCsv");
    QVERIFY(scaled);
    QCOMPARE(scaled->text(), QString("Save to CSV (time, volts)"));
    const QList<QAction*> items = menu.actions();
    const qsizetype at = items.indexOf(scaled);
    QVERIFY(at > 0);
    QCOMPARE(items[at - 1]->menu(), menu.findChild<QMenu*>("SaveLastPacket"));

    // No packet yet: the critical box, and no dialog asked.
    scaled->trigger();
    QCOMPARE(sink.messages.back().kind, BoxKind::Critical);
    QVERIFY(dialogs.requests.empty());

    QTemporaryDir dir;
    main.setLastPacket(std::string("\x10\x00\x00\x00\x80\xc0\x80\x80\x80\x80", 10));
    dialogs.answers = {dir.filePath("v.csv").toStdString()};
    scaled->trigger();
    QFile file(dir.filePath("v.csv"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().startsWith("time_s,volts\n0,0\n1e-06,0.4\n"));
    QCOMPARE(sink.messages.back().kind, BoxKind::InfoBox);
  }

  void qtDialogShowsTheRequestAndReportsWhereItEnded() {
    QTemporaryDir dir;
    QDir(dir.path()).mkdir("sub");
    QtFileDialogs dialogs;
    FileDialogRequest request;
    request.kind = FileDialogKind::Save;
    request.title = "File Save: Zorvik CSV data";
    request.filters = {{"Zorvik CSV Files (*.csv)", "*.csv"}, {"All Files (*.*)", "*.*"}};
    request.defaultExtension = "csv";
    request.initialFolder = dir.path().toStdString();
    QString title, folder;
    QStringList filters;
    bool confirms = false;
    onDialog([&](QFileDialog* d) {
      if (title.isEmpty()) {  // as it first stood
        title = d->windowTitle();
        filters = d->nameFilters();
        folder = d->directory().absolutePath();
        confirms = !d->testOption(QFileDialog::DontConfirmOverwrite);
      }
      d->setDirectory(dir.filePath("sub"));
      // Typed, as a user does: selectFile races the dialog's folder reading.
      d->findChild<QLineEdit*>("fileNameEdit")->setText(dir.filePath("sub/out"));
      static_cast<QDialog*>(d)->accept();  // as the Save key does
    });
    FileDialogAnswer a = dialogs.ask(request);
    QCOMPARE(title, QString("File Save: Zorvik CSV data"));
    QCOMPARE(filters, QStringList({"Zorvik CSV Files (*.csv)", "All Files (*)"}));
    QCOMPARE(folder, QDir(dir.path()).absolutePath());
    QVERIFY(confirms);
    QCOMPARE(QString::fromStdString(a.path), dir.filePath("sub/out.csv"));
    QCOMPARE(QString::fromStdString(a.folder), dir.filePath("sub"));

    // Cancelled: no name, but still where it stood.
    onDialog([](QFileDialog* d) { d->reject(); });
    a = dialogs.ask(request);
    QVERIFY(a.path.empty());
    QCOMPARE(QString::fromStdString(a.folder), QDir(dir.path()).absolutePath());
  }
};

QTEST_MAIN(PacketFilesWidgetTest)
#include "packet_files_test.moc"
