// The window on the instrument that zorvik-sim serves in a process of its own: connect, a serial run,
// and the process killed in the middle of it, which is a lost device.
#include <QCheckBox>
#include <QCoreApplication>
#include <QProcess>
#include <QPushButton>
#include <QTemporaryDir>
#include <QtTest>

#include "app/mainwin.h"
#include "link/device_address.h"
#include "link/stream_obex.h"

using namespace zorvik;

class DeviceStreamTest : public QObject {
  Q_OBJECT

 private:
  QTemporaryDir dir_;
  QProcess sim_;
  QString address() const { return "unix:" + dir_.filePath("z.sock"); }
  bool startSim() {
    sim_.start(QCoreApplication::applicationDirPath() + "/zorvik-sim",
               {"--listen", address(), "--sim", "rate=max"});
    return sim_.waitForStarted(5000) && sim_.waitForReadyRead(10000) &&
           sim_.readAllStandardOutput().contains("listening on");
  }

 private slots:
  void cleanup() {
    if (sim_.state() != QProcess::NotRunning) {
      sim_.kill();
      sim_.waitForFinished(5000);
    }
  }

  void killingTheServerEndsTheSessionInTheWindow() {
    QVERIFY(startSim());
    MemorySettings settings;
    CommandLine cl;
    mainwin w(settings, makeIdentity(1),
              std::make_unique<StreamObex>(parseDeviceAddress(address().toStdString())), cl);
    w.show();
    auto* connectKey = w.findChild<QPushButton*>("KeyConnect");
    auto* start = w.findChild<QPushButton*>("KeyStart");
    QVERIFY(connectKey && start);
    QTest::mouseClick(connectKey, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w.core().sessionState(), SessionState::Ready, 10000);
    QVERIFY(w.findChild<QCheckBox*>("WorkMode")->isChecked());
    QTRY_VERIFY_WITH_TIMEOUT(w.core().PacketCount() >= 5, 5000);

    sim_.kill();
    QTRY_COMPARE_WITH_TIMEOUT(w.core().sessionState(), SessionState::NoSession, 5000);
    QTRY_VERIFY_WITH_TIMEOUT(connectKey->isVisible(), 3000);
    QCOMPARE(connectKey->text(), QString("Connect"));
    QVERIFY(!start->isEnabled());

    // Served again, the same window connects again.
    QVERIFY(startSim());
    QTest::mouseClick(connectKey, Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w.core().sessionState(), SessionState::Ready, 10000);
    QVERIFY(start->isEnabled());
  }
};

QTEST_MAIN(DeviceStreamTest)
#include "device_stream_test.moc"
