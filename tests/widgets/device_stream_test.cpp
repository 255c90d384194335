// The window on the instrument that zorvik-sim serves in a process of its own: connect, a serial run,
// and the process killed in the middle of it, which is a lost device.
#include <QCheckBox>
#include <QCoreApplication>
#include <QProcess>
#include <QPushButton>
#include <QScreen>
#include <QTemporaryDir>
#include <QtTest>
#include <atomic>
#include <chrono>
#include <thread>

#include "app/mainwin.h"
#include "display/scope_display_window.h"
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

  void aStreamFasterThanTheWindowLeavesItsTimersAndPaintsTheirTurn() {
    QVERIFY(startSim());
    MemorySettings settings;
    // Every meter (by its index, as characters from '0'), the spectrum and the histogram open.
    settings.SaveSettingValue("Meters", "On", "0678;<=@ABCJKLMOPQR");
    settings.saveBool("Spectrum", "Visible", true);
    settings.saveBool("Stat", "Visible", true);
    CommandLine cl;
    mainwin w(settings, makeIdentity(1),
              std::make_unique<StreamObex>(parseDeviceAddress(address().toStdString())), cl);
    w.show();
    QTest::mouseClick(w.findChild<QPushButton*>("KeyConnect"), Qt::LeftButton);
    QTRY_COMPARE_WITH_TIMEOUT(w.core().sessionState(), SessionState::Ready, 10000);
    QTRY_VERIFY_WITH_TIMEOUT(w.core().packetsReceived() >= 5, 5000);

    // The program's own loop, as it runs (a test's waits give timers their turn of their own accord).
    // A timer that never comes is caught by a thread that ends the loop after a bound.
    QEventLoop loop;
    bool timerCame = false;
    QTimer::singleShot(1500, &loop, [&] {
      timerCame = true;
      loop.quit();
    });
    std::atomic<bool> done{false};
    std::thread watchdog([&] {
      for (int i = 0; i < 200 && !done; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(50));
      if (!done)
        QMetaObject::invokeMethod(
            &loop, [&loop] { loop.quit(); }, Qt::QueuedConnection);
    });
    const int64_t packetsBefore = w.core().packetsReceived();
    const int64_t paintsBefore = w.displayWindow().paints();
    QElapsedTimer clock;
    clock.start();
    loop.exec();
    const double seconds = static_cast<double>(clock.elapsed()) / 1000;
    done = true;
    watchdog.join();
    QVERIFY2(timerCame, "the stream kept the event loop from its timers");
    const int64_t packets = w.core().packetsReceived() - packetsBefore;
    const int64_t paints = w.displayWindow().paints() - paintsBefore;
    const double rate = w.screen()->refreshRate() > 0 ? w.screen()->refreshRate() : 60;
    QVERIFY2(packets > 50, qPrintable(QString::number(packets)));
    // At most a paint a frame of the screen (and one of the resize or state that may come between), while
    // the packets go on at the stream's pace.
    QVERIFY2(paints <= rate * seconds + 3, qPrintable(QString("%1 paints in %2 s").arg(paints).arg(seconds)));
    QVERIFY2(paints < packets, qPrintable(QString("%1 paints, %2 packets").arg(paints).arg(packets)));
  }
};

QTEST_MAIN(DeviceStreamTest)
#include "device_stream_test.moc"
