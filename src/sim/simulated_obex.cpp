#include "sim/simulated_obex.h"

#include <QTimer>
#include <algorithm>
#include <cmath>

namespace zorvik {

namespace {

constexpr char kBootMessage[] = "BOOT";
constexpr char kUnknownHeader[] = "XQZ";

QTimer* makeTimer(QObject& parent, bool singleShot) {
  auto* timer = new QTimer(&parent);
  timer->setSingleShot(singleShot);
  timer->setTimerType(Qt::PreciseTimer);
  return timer;
}

}  // namespace

SimulatedObex::SimulatedObex(SimConfig config)
    : config_(std::move(config)),
      device_(config_),
      generator_(config_),
      builder_(generator_),
      acquisitionTimer_(makeTimer(context(), true)),
      deliveryTimer_(makeTimer(context(), true)),
      searchTimer_(makeTimer(context(), true)),
      periodicTimer_(makeTimer(context(), false)) {
  QObject::connect(acquisitionTimer_, &QTimer::timeout, &context(), [this] { acquire(); });
  QObject::connect(deliveryTimer_, &QTimer::timeout, &context(), [this] { deliverDue(); });
  QObject::connect(searchTimer_, &QTimer::timeout, &context(), [this] {
    session_ = Session::Closed;
    post([](ObexEvents& e) { e.ObexLinkDLL1_NoZorvikFoundEvent(); });
  });
  QObject::connect(periodicTimer_, &QTimer::timeout, &context(), [this] {
    if (repeating()) calibrate();
  });
}

// The timers belong to the base's context object, which outlives this part of the object: stop
// them first so that none can fire into a half-destroyed link.
SimulatedObex::~SimulatedObex() {
  acquisitionTimer_->stop();
  deliveryTimer_->stop();
  searchTimer_->stop();
  periodicTimer_->stop();
}

void SimulatedObex::queueState(std::function<void()> change) {
  const uint64_t generation = sessionGeneration_;
  QMetaObject::invokeMethod(
      &context(),
      [this, generation, change = std::move(change)] {
        if (generation == sessionGeneration_) change();
      },
      Qt::QueuedConnection);
}

void SimulatedObex::OpenSession(bool& ok) {
  if (config_.faults.noPort) {
    ok = false;
    return;
  }
  ok = true;
  if (session_ != Session::Closed) return;  // already open or on the way
  ++sessionGeneration_;
  sessionPackets_ = 0;
  if (config_.faults.noDevice) {
    session_ = Session::Searching;
    searchTimer_->start(kSearchMs);
    return;
  }
  if (config_.faults.boot) {
    // Only the loader answers: the session stands for a firmware load and nothing else.
    session_ = Session::Boot;
    queueState([this] { online_ = true; });
    post([](ObexEvents& e) { e.ObexLinkDLL1_StartSessionMsgEvent(kBootMessage); });
    return;
  }
  session_ = Session::Starting;
  post([message = device_.modelCode() + " ready"](ObexEvents& e) {
    e.ObexLinkDLL1_StartSessionMsgEvent(message);
  });
  queueState([this] {
    session_ = Session::Open;
    online_ = true;
  });
  post([](ObexEvents& e) { e.ObexLinkDLL1_StartSessionEvent(); });
  if (config_.faults.badHeader) {
    post([](ObexEvents& e) { e.ObexLinkDLL1_HeaderEvent(kUnknownHeader, std::string(1, '\0'), false); });
  }
}

void SimulatedObex::CloseSession() {
  if (session_ == Session::Closed) return;
  if (session_ == Session::Searching) {
    // No session stood, so there is none to end.
    searchTimer_->stop();
    ++sessionGeneration_;
    session_ = Session::Closed;
    return;
  }
  endSession();
}

void SimulatedObex::endSession() {
  ++sessionGeneration_;
  session_ = Session::Closed;
  online_ = false;
  repeat_ = false;
  held_ = false;
  singles_ = 0;
  calibrationDue_ = false;
  acquisitionTimer_->stop();
  dropAcquisition();
  periodicTimer_->stop();
  post([](ObexEvents& e) { e.ObexLinkDLL1_EndSessionEvent(); });
}

void SimulatedObex::SendFirmwareSector(const std::string& name, const std::string& data, bool, bool) {
  if ((session_ != Session::Open && session_ != Session::Boot) || name != "W") return;
  // The answer names the sector by its first byte; a sector with no data is refused.
  std::string answer = data.size() >= 2 ? "O" : "E";
  answer += data.empty() ? '\0' : data[0];
  post([answer](ObexEvents& e) { e.ObexLinkDLL1_HeaderEvent("W", answer, false); });
}

void SimulatedObex::SendCommand(const std::string& name, bool, bool) {
  if (name == "F" && (session_ == Session::Open || session_ == Session::Boot)) {
    post(
        [identity = device_.identity()](ObexEvents& e) { e.ObexLinkDLL1_HeaderEvent("F", identity, false); });
    return;
  }
  if (session_ != Session::Open) return;
  if (name == "D") {
    if (repeating()) return;  // the repetition delivers anyway
    ++singles_;
    scheduleAcquisition();
  } else if (name == "C") {
    calibrate();
  }
}

void SimulatedObex::SetRepeatCommand(bool enable, const std::string& name, bool) {
  if (enable) {
    if (session_ != Session::Open || name != "D") return;
    repeat_ = true;
    held_ = false;
    scheduleAcquisition();
    return;
  }
  repeat_ = false;
  held_ = false;
  if (!acquiringSingle_) dropAcquisition();
  if (!acquisitionWanted()) acquisitionTimer_->stop();
}

void SimulatedObex::SetPeriodicCommand(bool enable, const std::string& name, int32_t periodMs) {
  if (!enable || name != "C" || periodMs <= 0) {
    periodicTimer_->stop();
    return;
  }
  periodicTimer_->start(periodMs);
}

void SimulatedObex::StopRepeat(bool resume) {
  held_ = !resume;
  if (held_) {
    if (!acquiringSingle_) dropAcquisition();
    if (!acquisitionWanted()) acquisitionTimer_->stop();
  } else {
    scheduleAcquisition();
  }
}

void SimulatedObex::GetRegister(const std::string& name) {
  if (session_ != Session::Open && session_ != Session::Boot) return;
  // A register the device does not have is answered under its name with no value; the loader has
  // no registers at all.
  std::optional<std::string> bytes = session_ == Session::Open ? device_.registerBytes(name) : std::nullopt;
  post([name, value = std::move(bytes).value_or(std::string())](ObexEvents& e) {
    e.ObexLinkDLL1_HeaderEvent(name, value, false);
  });
}

void SimulatedObex::GetProperty(const std::string& name) {
  if (session_ != Session::Open) return;
  if (std::optional<std::string> bytes = device_.propertyBytes(name)) {
    post(
        [name, value = std::move(*bytes)](ObexEvents& e) { e.ObexLinkDLL1_HeaderEvent(name, value, false); });
  }
}

void SimulatedObex::PutRegister1(const std::string& name, uint8_t value) {
  write(name, value);
}

void SimulatedObex::PutRegister2(const std::string& name, int32_t value) {
  write(name, static_cast<uint32_t>(value) & 0xFFFFu);
}

void SimulatedObex::PutRegister4(const std::string& name, int32_t value) {
  write(name, static_cast<uint32_t>(value));
}

void SimulatedObex::write(const std::string& name, uint32_t bits) {
  if (session_ == Session::Boot) {
    GetRegister(name);  // the loader stores nothing, and says so
    return;
  }
  if (session_ != Session::Open) return;
  const bool known = device_.write(name, bits);
  // The echo carries what the device made of the value, which need not be what was written.
  GetRegister(name);
  if (known) restartAfterWrite(name);
}

void SimulatedObex::ResendLast() {
  if (session_ != Session::Open || !hasLastPacket_) return;
  // A repeat is never streamed, so it is never marked as parallel.
  post([packet = lastPacket_](ObexEvents& e) { e.ObexLinkDLL1_HeaderEvent("D", packet, false); });
}

void SimulatedObex::calibrate() {
  if (acquisitionTimer_->isActive()) {
    acquisitionTimer_->start(std::max(0, acquisitionTimer_->remainingTime()) + kCalibrationMs);
  } else {
    calibrationDue_ = true;
  }
}

void SimulatedObex::scheduleAcquisition() {
  if (!acquisitionWanted() || acquisitionTimer_->isActive() || acquiring_) return;
  int delay = config_.pacingMs();
  if (calibrationDue_) {
    delay += kCalibrationMs;
    calibrationDue_ = false;
  }
  acquisitionTimer_->start(delay);
}

void SimulatedObex::acquire() {
  if (!acquisitionWanted()) return;
  acquiringSingle_ = !repeating();
  if (acquiringSingle_) --singles_;

  const AcquisitionSetup setup = device_.setup();
  const double now = deviceTime_;
  packet_ = builder_.build(setup, now);
  const RecordPlacement& place = builder_.placement();
  plan_.make(setup, place, now, packet_.size(), parallel_);
  decidedMs_ = dueMs(place.decided - now);
  // The device rests between acquisitions for a pacing interval that varies a little, so that
  // an untriggered trace lands at a new phase each time, as it would on the bench.
  const double pause =
      (config_.pacingMs() > 0 ? config_.pacingMs() / 1000.0 : 0.001) * (0.5 + generator_.random().uniform());
  deviceTime_ = std::fmod(place.end + pause, generator_.period());
  if (!std::isfinite(deviceTime_) || deviceTime_ < 0) deviceTime_ = 0;

  acquiring_ = true;
  nextItem_ = 0;
  clock_.start();
  deliverDue();
}

double SimulatedObex::dueMs(double seconds) const {
  if (config_.pacingMs() <= 0 || !(seconds > 0)) return 0;
  // The pacing interval has passed before the acquisition began.
  return std::max(0.0, std::ceil(seconds * 1000.0) - config_.pacingMs());
}

void SimulatedObex::deliverDue() {
  // A timer waits at most this long at a time; a longer wait is taken in several.
  constexpr double kLongestWaitMs = 1 << 30;
  const std::vector<DeliveryPlan::Item>& items = plan_.items();
  while (acquiring_ && nextItem_ < items.size()) {
    const DeliveryPlan::Item& item = items[nextItem_];
    const double wait = dueMs(item.due) - static_cast<double>(clock_.elapsed());
    if (wait > 0) {
      deliveryTimer_->start(static_cast<int>(std::min(wait, kLongestWaitMs)));
      return;
    }
    ++nextItem_;
    if (!item.roll) {
      finishAcquisition();
      return;
    }
    const int32_t total = item.begin == 0 ? static_cast<int32_t>(packet_.size()) : 0;
    post([chunk = packet_.substr(item.begin, item.end - item.begin), total](ObexEvents& e) {
      e.ObexLinkDLL1_rollevent(chunk, total);
    });
  }
}

void SimulatedObex::finishAcquisition() {
  acquiring_ = false;
  ++packetsSent_;
  ++sessionPackets_;
  if (!packet_.empty()) {
    lastPacket_ = packet_;
    hasLastPacket_ = true;
  }
  post([packet = packet_, parallel = plan_.streamed()](ObexEvents& e) {
    e.ObexLinkDLL1_HeaderEvent("D", packet, parallel);
  });
  if (config_.faults.lostAfter && sessionPackets_ >= *config_.faults.lostAfter) {
    endSession();
    return;
  }
  scheduleAcquisition();
}

void SimulatedObex::dropAcquisition() {
  deliveryTimer_->stop();
  acquiring_ = false;
}

void SimulatedObex::restartAfterWrite(const std::string& name) {
  if (!acquiring_) return;
  // A new time base or record layout spoils the record under way; a new trigger setting matters
  // only while the trigger is still awaited.
  const bool layout = name == "MC" || name == "TS" || name == "QS" || name == "M1";
  const bool trigger = name == "T1" || name == "S1" || name == "RT" || name == "TA" || name == "TW" ||
                       name == "TD" || name == "TC";
  if (!layout && !(trigger && static_cast<double>(clock_.elapsed()) < decidedMs_)) return;
  if (acquiringSingle_) ++singles_;
  dropAcquisition();
  scheduleAcquisition();
}

}  // namespace zorvik
