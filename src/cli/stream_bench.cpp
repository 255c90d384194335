#include "cli/stream_bench.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <cmath>

#include "core/fault.h"
#include "link/stream_obex.h"

namespace zorvik {

namespace {

constexpr int kWarmUp = 100;
constexpr int kStartMs = 10000;
constexpr int kStallMs = 5000;  // the longest gap between two packets before the run is given up

class PacketCounter : public ObexEvents {
 public:
  bool started = false, ended = false, noDevice = false;
  uint64_t packets = 0, bytes = 0;
  size_t lastLength = 0;

  void ObexLinkDLL1_NoZorvikFoundEvent() override { noDevice = true; }
  void ObexLinkDLL1_StartSessionMsgEvent(const std::string&) override {}
  void ObexLinkDLL1_StartSessionEvent() override { started = true; }
  void ObexLinkDLL1_EndSessionEvent() override { ended = true; }
  void ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value, bool) override {
    if (name != "D") return;
    ++packets;
    bytes += value.size();
    lastLength = value.size();
  }
  void ObexLinkDLL1_rollevent(const std::string&, int32_t) override {}
};

// Turns the event loop until `done` holds; false when `limitMs` passes first.
template <typename Done>
bool turnUntil(Done done, int limitMs) {
  QElapsedTimer clock;
  clock.start();
  while (!done()) {
    if (clock.elapsed() > limitMs) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
  }
  return true;
}

}  // namespace

QJsonObject benchStream(const std::string& device, int packets, int samples) {
  StreamObex link(parseDeviceAddress(device));
  PacketCounter counter;
  link.setEventSink(&counter);
  bool ok = false;
  link.OpenSession(ok);
  if (!turnUntil([&] { return counter.started || counter.ended || counter.noDevice; }, kStartMs) ||
      !counter.started)
    throw Fault("no session with the instrument at " + device);

  // Records of `samples` 8-bit samples, 100 ns apart (about one period of the default signal), an
  // eighth of them presamples, in Auto: the acquisition the simulator's own benchmark times.
  link.PutRegister1("M1", 0);
  link.PutRegister2("MC", 1000);
  link.PutRegister4("TS", 10 * 256);
  link.PutRegister2("QS", samples);
  link.PutRegister2("TC", samples / 8);
  link.PutRegister1("RT", 0);
  link.SetRepeatCommand(true, "D", false);

  auto stalled = [&](uint64_t until) {
    uint64_t seen = counter.packets;
    while (counter.packets < until) {
      if (!turnUntil([&] { return counter.packets > seen || counter.ended; }, kStallMs) || counter.ended)
        return true;
      seen = counter.packets;
    }
    return false;
  };
  if (stalled(kWarmUp))
    throw Fault("the instrument at " + device + " stopped after " + std::to_string(counter.packets) +
                " packets");
  const uint64_t first = counter.packets, firstBytes = counter.bytes;
  QElapsedTimer clock;
  clock.start();
  const bool stopped = stalled(first + static_cast<uint64_t>(packets));
  const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
  if (stopped)
    throw Fault("the instrument at " + device + " stopped after " + std::to_string(counter.packets) +
                " packets");
  const uint64_t taken = counter.packets - first, bytes = counter.bytes - firstBytes;
  link.SetRepeatCommand(false, "", false);
  link.CloseSession();
  turnUntil([&] { return counter.ended; }, 3000);

  auto round1 = [](double v) { return std::round(v * 10) / 10; };
  QJsonObject o;
  o["source"] = QString::fromStdString(device);
  o["packets"] = static_cast<double>(taken);
  o["packet_bytes"] = static_cast<double>(counter.lastLength);
  o["seconds"] = std::round(seconds * 1000) / 1000;
  o["packets_per_s"] = round1(static_cast<double>(taken) / seconds);
  o["megabytes_per_s"] = round1(static_cast<double>(bytes) / seconds / 1e6);
  return o;
}

}  // namespace zorvik
