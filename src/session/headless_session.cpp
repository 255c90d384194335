#include "session/headless_session.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QThread>

#include "link/stream_obex.h"
#include "session/link_choice.h"
#include "signal/packet.h"

namespace zorvik {

HeadlessSession::HeadlessSession(SettingsStore& settings, const std::vector<std::string>& simOptions,
                                 int cpuMHz)
    : HeadlessSession(settings, simOptions, std::string(), cpuMHz) {}

HeadlessSession::HeadlessSession(SettingsStore& settings, const std::vector<std::string>& simOptions,
                                 const std::string& device, int cpuMHz) {
  device_ = makeLink(simOptions, device);
  if (StreamObex* stream = streamLink(device_.get())) {
    stream->onStreamError = [this](const std::string& error) {
      linkError_ = error;
      sink_.show(BoxKind::Critical, main().identity().InstanceTitle, error, "");
    };
  }
  auto recorder = std::make_unique<RecordingObex>(*device_);
  recorder_ = recorder.get();
  session_ = std::make_unique<ScopeSession>(settings, makeIdentity(1), std::move(recorder),
                                            SessionFrontEnd{*this, sink_, dialogs_, nullptr}, cpuMHz);
  recorder_->onData = [this](const std::string& packet, bool parallel, bool handled) {
    dataHeader(packet, parallel, handled);
  };
}

HeadlessSession::~HeadlessSession() {
  recorder_->onData = nullptr;
  session_.reset();
}

bool HeadlessSession::spinUntil(const std::function<bool()>& done, int timeoutMs) {
  QElapsedTimer t;
  t.start();
  while (!done()) {
    if (t.elapsed() > timeoutMs) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    QThread::msleep(1);
  }
  return true;
}

void HeadlessSession::dataHeader(const std::string& packet, bool parallel, bool handled) {
  constexpr size_t kNotKept = static_cast<size_t>(-1);
  if (!handled) {
    // Counted and stopped as the header comes in, before the program takes it: taking a streamed packet
    // may wait its show time, and the next one arrives inside that wait.
    if (!packet.empty()) ++packetsTaken_;
    if (wanted_ > 0 && taken() >= wanted_) recorder_->SetRepeatCommand(false, "", false);
    const bool kept = log_.size() < SessionResult::kMaxPacketLog;
    open_.push_back(kept ? log_.size() : kNotKept);
    if (kept)
      log_.push_back({packet.size(), !packet.empty() && decodePacket(packet).triggered, parallel, {}});
    return;
  }
  ++dataHeaders_;
  if (open_.empty()) return;
  const size_t entry = open_.back();
  open_.pop_back();
  if (entry < log_.size()) log_[entry].statusText = main().state().modeText;
}

SessionResult HeadlessSession::run(const SessionOptions& options) {
  SessionResult r;
  const int timeoutMs = static_cast<int>(options.timeoutSeconds * 1000);
  QElapsedTimer clock;
  clock.start();
  auto left = [&] { return std::max<int>(0, timeoutMs - static_cast<int>(clock.elapsed())); };

  // Serial runs start by themselves once the session is ready; single ones wait for Start.
  run().WorkMode_Click(!options.single);
  firstPacket_ = packetsTaken_;
  wanted_ = options.single ? 0 : options.packets;
  main().KeyConnect_Click();
  r.readyReached = spinUntil(
      [&] {
        return main().sessionState() == SessionState::Ready ||
               main().sessionState() == SessionState::NoSession;
      },
      left());
  r.readyReached = r.readyReached && main().sessionState() == SessionState::Ready;
  auto pressKeys = [&] {
    for (const auto& k : options.keys) {
      session_->keys().press(k == "Comma" ? std::string(",") : k, clock.elapsed());
      QCoreApplication::processEvents();
    }
  };
  if (!r.readyReached) {
    r.error = "the session did not reach Ready (state " +
              std::string(sessionStateName(main().sessionState())) + ")";
    // The keys still go in, so that what they do (or may not do) before Ready shows.
    pressKeys();
    spinUntil([] { return false; }, 50);
  } else {
    pressKeys();
    // Counted here, not by PacketCount: the display's persistence zeroes that when it starts again.
    if (options.single) {
      for (int i = 0; i < options.packets && main().Online(); ++i) {
        // The answer is one "D", empty when Norm saw no trigger.
        const uint64_t answers = dataHeaders_;
        run().KeyStart_Click();
        spinUntil([&] { return dataHeaders_ > answers || !main().Online(); }, left());
      }
    } else {
      // Keys may have turned the serial run into a single acquisition: then it is over once that one is.
      auto singleOver = [&] {
        const std::string& mode = main().state().modeText;
        return !run().model().WorkMode && mode != "Started" && mode != "Progress";
      };
      spinUntil([&] { return taken() >= options.packets || !main().Online() || singleOver(); }, left());
      recorder_->SetRepeatCommand(false, "", false);
    }
    wanted_ = 0;
    r.packets = taken();
    if (r.packets < options.packets)
      r.error =
          "only " + std::to_string(r.packets) + " of " + std::to_string(options.packets) + " packets arrived";
  }
  r.device = main().cache();
  r.statusText = main().state().modeText;
  r.noTriggerVisible = main().state().noTriggerVisible;
  r.packetLog = log_;
  r.linkError = linkError_;
  if (main().Online()) {
    recorder_->CloseSession();
    spinUntil([&] { return main().state().connectVisible; }, 3000);
  }
  return r;
}

}  // namespace zorvik
