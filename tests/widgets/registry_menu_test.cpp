#include <QDir>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenu>
#include <QTemporaryDir>
#include <QtTest>
#include <functional>

#include "app/mainwin.h"
#include "config/registry_store.h"
#include "sim/sim_config.h"
#include "sim/simulated_obex.h"
#include "window_fixture.h"

using namespace zorvik;
using zorvik::test::onDialog;

namespace {

QAction* settingAction(mainwin& w, const char* caption) {
  auto* setting = w.findChild<QMenu*>("Setting");
  if (!setting) return nullptr;
  for (QAction* a : setting->actions())
    if (a->text() == caption) return a;
  return nullptr;
}
}  // namespace

class RegistryMenuTest : public QObject {
  Q_OBJECT

 private slots:
  void settingsFileDialogsRememberTheirFolders() {
    QTemporaryDir dir;
    RegistryStore store(dir.filePath("registry.sqlite").toStdString());
    MemorySettings settings;
    CommandLine cl;
    mainwin w(settings, makeIdentity(1), std::make_unique<SimulatedObex>(SimConfig{}), cl);
    w.setRegistry(&store, 200);
    w.show();
    QAction* save = settingAction(w, "Save to file");
    QAction* load = settingAction(w, "Load from file");
    QVERIFY(save && load);
    QDir(dir.path()).mkdir("kept");
    const QString kept = dir.filePath("kept");

    // Typed without an extension: the settings file gets ".reg", and its folder is remembered.
    QString title, startFolder;
    QStringList filters;
    onDialog([&](QFileDialog* d) {
      if (title.isEmpty()) {
        title = d->windowTitle();
        filters = d->nameFilters();
        startFolder = d->directory().absolutePath();
      }
      d->setDirectory(kept);
      d->findChild<QLineEdit*>("fileNameEdit")->setText(kept + "/all");
      static_cast<QDialog*>(d)->accept();
    });
    save->trigger();
    QCOMPARE(title, QString("File Save: Zorvik Save All Setting to file"));
    QCOMPARE(filters, QStringList({"Zorvik setting (*.reg)"}));
    QCOMPARE(startFolder, QDir::currentPath());
    QVERIFY(QFileInfo::exists(kept + "/all.reg"));
    QCOMPARE(QString::fromStdString(settings.getText("Folders", "Save All Setting to file")), kept + "/");

    // The next save starts there; cancelled, it writes nothing more.
    startFolder.clear();
    onDialog([&](QFileDialog* d) {
      startFolder = d->directory().absolutePath();
      d->reject();
    });
    save->trigger();
    QCOMPARE(startFolder, kept);
    QCOMPARE(QDir(kept).entryList(QDir::Files), QStringList({"all.reg"}));

    // Loading keeps a folder of its own; cancelled, the window stays as it was.
    title.clear();
    onDialog([&](QFileDialog* d) {
      title = d->windowTitle();
      d->reject();
    });
    load->trigger();
    QCOMPARE(title, QString("File Open: Zorvik Restore Setting from file"));
    QCOMPARE(QString::fromStdString(settings.getText("Folders", "Restore Setting from file")),
             QDir::currentPath() + "/");
    QVERIFY(w.isVisible());
  }
};

QTEST_MAIN(RegistryMenuTest)
#include "registry_menu_test.moc"
