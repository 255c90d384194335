#include <QAbstractButton>
#include <QApplication>
#include <QFile>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include "app/mainwin.h"
#include "firmware/fw_update_window.h"
#include "session/scope_session.h"
#include "sim/sim_config.h"
#include "sim/simulated_obex.h"
#include "window_fixture.h"

using namespace zorvik;

namespace {

// A valid image for the simulated ZV-1, hardware 1.2.
QByteArray image(int sectors) {
  QByteArray s = "Zorvik firmware\r\nTarget: ZV-1\r\nVersion: 1.20\r\nDate: 20261123\r\nFW:";
  for (int i = 0; i < sectors * 512; ++i) s += static_cast<char>(i * 7);
  return s;
}

// The user at the modal windows of the update: types the image's name into the file dialog and accepts it,
// presses the key of every modal box and keeps its text. A window that takes no input (disabled) is counted
// as stuck and closed from outside, so that the test reports it instead of waiting for good.
class User : public QObject {
 public:
  explicit User(QString file) : file_(std::move(file)) {
    connect(&timer_, &QTimer::timeout, this, [this] { tick(); });
    timer_.start(20);
  }
  QStringList boxes;
  int stuck = 0;

 private:
  void tick() {
    for (QWidget* w : QApplication::topLevelWidgets()) {
      if (!w->isVisible()) continue;
      if (auto* d = qobject_cast<QFileDialog*>(w)) {
        auto* name = d->findChild<QLineEdit*>("fileNameEdit");
        if (!name->isEnabled()) ++stuck;
        name->setText(file_);                // typed, as a user does
        static_cast<QDialog*>(d)->accept();  // as the Open key does; again while it reads its folder
        return;
      }
      if (auto* b = qobject_cast<QMessageBox*>(w); b && b->isModal()) {
        boxes << b->text();
        QAbstractButton* key = b->buttons().first();
        if (key->isEnabled()) {
          QTest::mouseClick(key, Qt::LeftButton);
        } else {
          ++stuck;
          b->done(0);
        }
        return;
      }
    }
  }
  QString file_;
  QTimer timer_;
};

}  // namespace

// The Device menu's firmware update on the simulated instrument, as the user meets it.
class FirmwareWindowTest : public QObject {
  Q_OBJECT

 private:
  std::unique_ptr<mainwin> connected() {
    auto w = test::simWindow(settings_, "rate=max");
    QTest::mouseClick(w->findChild<QPushButton*>("KeyConnect"), Qt::LeftButton);
    [&] { QTRY_COMPARE_WITH_TIMEOUT(w->core().sessionState(), SessionState::Ready, 5000); }();
    return w;
  }
  // The Device menu's item of that text.
  static QAction* item(mainwin& w, const QString& text) {
    auto* menu = qobject_cast<QMenu*>(w.findChild<QAction*>("FWupdateKey")->parent());
    for (QAction* a : menu->actions())
      if (a->text() == text) return a;
    return nullptr;
  }
  QString file(const char* name, const QByteArray& bytes) {
    QFile f(dir_.filePath(name));
    if (!f.open(QIODevice::WriteOnly) || f.write(bytes) != bytes.size()) return {};
    return f.fileName();
  }
  MemorySettings settings_;
  QTemporaryDir dir_;

 private slots:
  void aValidImageIsWrittenFromTheUpdateWindow() {
    auto w = connected();
    item(*w, "Version")->trigger();  // another window of the program stands open
    auto* other = w->findChild<QWidget*>("DevicePage");
    QVERIFY(other && other->isVisible());

    User user(file("fw.zfw", image(4)));
    item(*w, "Firmware update")->trigger();
    auto* window = w->findChild<FWupdate*>("FWupdate");
    QVERIFY(window && window->isVisible());
    auto* start = window->findChild<QPushButton*>("KeyStartFU");
    QTRY_VERIFY_WITH_TIMEOUT(start->isEnabled(), 3000);  // the instrument's identity fits the image
    QVERIFY(w->session().firmware().Updating);
    // The update window alone takes input; the other windows are out of reach.
    QCOMPARE(QApplication::activeModalWidget(), window);
    QVERIFY(!other->isEnabled());

    QTest::mouseClick(start, Qt::LeftButton);
    QVERIFY(window->findChild<QLabel*>("InfoMessage")->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!w->session().firmware().Updating, 10000);
    const auto sectors = window->findChildren<QLabel*>(QRegularExpression("^SectorShape"));
    QCOMPARE(sectors.size(), 4);
    for (QLabel* s : sectors) QCOMPARE(s->styleSheet(), QString("background: #00ff00"));
    QCOMPARE(user.boxes, QStringList{"Firmware update\r\ncompleted successfully!"});
    QCOMPARE(user.stuck, 0);
    QVERIFY(!window->isVisible());
    QVERIFY(w->isEnabled() && other->isEnabled());
    QTRY_VERIFY_WITH_TIMEOUT(!w->core().Online(), 3000);
  }

  void aRefusedImageLeavesTheProgramUsable() {
    auto w = connected();
    item(*w, "Version")->trigger();
    auto* other = w->findChild<QWidget*>("DevicePage");

    User user(file("bad.zfw", "Zorvik firmware, but not an image"));
    item(*w, "Firmware update")->trigger();
    QCOMPARE(user.boxes, QStringList{"Firmware file error!"});
    QCOMPARE(user.stuck, 0);
    QVERIFY(!w->session().firmware().Updating);
    QVERIFY(!w->findChild<FWupdate*>("FWupdate")->isVisible());
    QVERIFY(w->isEnabled() && other->isEnabled());
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
    // As every refused update, the session ends; the program goes on offline.
    QTRY_VERIFY_WITH_TIMEOUT(!w->core().Online(), 3000);
    QVERIFY(w->findChild<QPushButton*>("KeyConnect")->isEnabled());
  }
};

QTEST_MAIN(FirmwareWindowTest)
#include "firmware_window_test.moc"
