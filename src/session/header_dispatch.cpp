// The header table: every name the device reports, its decoding and what runs next.
#include <cstdio>

#include "session/main_controller.h"
#include "signal/header_value.h"

namespace zorvik {

namespace {

// The general number text: up to 15 significant digits, no trailing zeros.
std::string generalText(double v) {
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.15g", v);
  return buf;
}

std::string fixed2(double v) {
  char buf[40];
  std::snprintf(buf, sizeof buf, "%.2f", v);
  return buf;
}

std::string fastSamplingList(int32_t tov) {
  std::string out;
  for (int n = 0; n < 32; ++n) {
    if (!(static_cast<uint32_t>(tov) & (1u << n))) continue;
    if (!out.empty()) out += ", ";
    out += n == 0 ? std::string("1/2") : std::to_string(n);
  }
  return out.empty() ? out : out + " clk/sample";
}

template <typename T, typename F>
bool store(T& target, const std::string& value, F fit) {
  auto v = fit(value);
  if (!v) return false;
  target = static_cast<T>(*v);
  return true;
}

}  // namespace

void MainController::ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value,
                                              bool parallel) {
  // Data first: a packet costs one comparison before it reaches the parser.
  if (name == "D") {
    dataHeader(value, parallel);
    return;
  }
  if (name == "VHW" || name == "VSW" || name == "VNM" || name == "VSN") {
    std::string& target = name == "VHW"   ? cache_.VHW
                          : name == "VSW" ? cache_.VSW
                          : name == "VNM" ? cache_.VNM
                                          : cache_.VSN;
    target = value;
    setField("Property_" + name, value);
    if (name == "VSN" && link_) {
      std::string usbName, usbSerial, usbVersion;
      link_->GetUsbName(usbName);
      link_->GetUsbSerial(usbSerial);
      link_->GetUsbVersion(usbVersion);
      setField("USBname", usbName);
      setField("USBserial", usbSerial);
      setField("USBversion", usbVersion);
    }
    return;
  }
  if (name == "MCd" || name == "MCl" || name == "MCh" || name == "TOv" || name == "TOl" || name == "TMl" ||
      name == "TMh" || name == "TPl") {
    limitHeader(name, value);
    return;
  }
  if (name == "TCh" || name == "QSh") {
    int32_t v = 0;
    if (!store(v, value, fit32)) return;
    int row = cache_.limitRow(), col = cache_.limitColumn();
    if (name == "TCh") {
      cache_.TCh = v;
      cache_.TChTable[row][col] = v;
      registers_.presampleLimitStep();
    } else {
      cache_.QSh = v;
      cache_.QShTable[row][col] = v;
      registers_.sampleLimitStep();
    }
    return;
  }
  if (name == "P1h" || name == "P1l") {
    int16_t v = 0;
    if (!store(v, value, fitSigned16)) return;
    bool high = name == "P1h";
    (high ? cache_.P1h : cache_.P1l) = v;
    registers_.offsetRangeUpdate();
    if (voltDivPosition_ >= 0 && voltDivPosition_ < kVoltDivPositions) {
      (high ? cache_.P1hTable : cache_.P1lTable)[voltDivPosition_] = v;
      (high ? cache_.P1hValid : cache_.P1lValid)[voltDivPosition_] = true;
    }
    return;
  }
  if (name == "D1m") {
    store(cache_.D1m, value, fit32);
    return;
  }
  if (registerHeader(name, value)) return;
  if (name == "C") {
    messages_.show(BoxKind::InfoBox, identity_.InstanceTitle, value, identity_.InstanceTitle);
    return;
  }
  if (name == "F" || name == "W") {
    registers_.firmwareHeader(name, value);
    return;
  }
  if (name == "G1" || name == "G2") {
    if (store(name == "G1" ? cache_.G1 : cache_.G2, value, fitByte)) registers_.devDispHeader(name);
    return;
  }
  if (name == "Gs" || name == "Lt" || name == "L1" || name == "L2") {
    int32_t& t = name == "Gs" ? cache_.Gs : name == "Lt" ? cache_.Lt : name == "L1" ? cache_.L1 : cache_.L2;
    if (store(t, value, fit32)) registers_.devDispHeader(name);
    return;
  }
  if (name == "L_B") {
    if (value == std::string(1, static_cast<char>(0xFF)))
      messages_.show(BoxKind::Critical, "Zorvik", "Device firmware error");
    return;
  }
  if (name == "RIS") {
    risDiagnostic(value);
    return;
  }
  messages_.show(BoxKind::Information, "OBEX reseiving error", "Unknown header identifier=" + name);
}

void MainController::dataHeader(const std::string& value, bool parallel) {
  if (value.empty()) {
    // No trigger came: the screen, the persistence store and the packet count start again.
    state_.modeColor = kColorRed;
    view_.clearDisplay();
    onNoTrigger();
    state_.noTriggerVisible = noTriggerMsg_;
    if (state_.modeText == "Started") state_.modeText = "Stopped";
    changed();
    return;
  }
  ++packetCount_;
  ++packetsReceived_;
  if (!parallel) {
    ProcessPacket(value);
  } else if (showTimeMs_ > 0 && !inShowWait_) {
    // The wait runs the event loop: a packet that arrives inside it is kept but not drawn, so a fast
    // stream can't nest the waits without end.
    ProcessPacket(value);
    inShowWait_ = true;
    Wait(showTimeMs_);
    inShowWait_ = false;
  }
  lastPacket_ = value;
}

void MainController::limitHeader(const std::string& name, const std::string& value) {
  int32_t v = 0;
  if (!store(v, value, fit32)) return;
  auto flag = [&](int index) {
    limitFlags_[index] = true;
    checkSetup();
  };
  if (name == "MCd") {
    cache_.MCd = v;
    if (v >= 101) {
      setField("DeviceClockPage.ClockMCUdef", std::to_string(100000 / v));
      setField("DevicePage.ClockMCUdef", generalText(v / 100.0));
    }
  } else if (name == "MCl" || name == "MCh") {
    bool low = name == "MCl";
    (low ? cache_.MCl : cache_.MCh) = v;
    if (v > 100) {
      setField(low ? "DeviceClockPage.ClockMCUmax" : "DeviceClockPage.ClockMCUmin",
               std::to_string(100000 / v));
      setField(low ? "DevicePage.ClockMCUmax" : "DevicePage.ClockMCUmin", generalText(v / 100.0));
    }
    flag(low ? 2 : 3);
  } else if (name == "TOv") {
    cache_.TOv = v;
    setField("FrameFS", fastSamplingList(v));
    flag(0);
  } else if (name == "TPl") {
    cache_.TPl = v;
    setField("Property_TPl", std::to_string(v / 256));
    flag(6);
  } else {
    int32_t& t = name == "TOl" ? cache_.TOl : name == "TMl" ? cache_.TMl : cache_.TMh;
    t = v;
    setField("Property_" + name, fixed2(v / 256.0));
    flag(name == "TOl" ? 1 : name == "TMl" ? 4 : 5);
  }
}

// Registers echoed by the device; false when the name is not one of them.
bool MainController::registerHeader(const std::string& name, const std::string& value) {
  if (name == "MC") {
    if (!store(cache_.MC, value, fit32)) return true;
    replotNeeded_ = true;
    if (cache_.MC > 9) {
      setField("ClockPeriodMCUcur", std::to_string(static_cast<int64_t>(cache_.MC) * 10));
      setField("ClockMCUcur", std::to_string(100000 / cache_.MC));
    }
    registers_.echo("MC");
    if (timeoutsWaitForClock_) {
      // The time-outs are counts of this clock: written before it was set they would run too long.
      timeoutsWaitForClock_ = false;
      registers_.write("TA");
      registers_.write("TW");
    }
  } else if (name == "TS") {
    if (!store(cache_.TS, value, fit32)) return true;
    replotNeeded_ = true;
    int32_t ts = cache_.TS;
    setField("ClockPerSampleCur",
             ts >= 255 ? std::to_string(ts / 256) : generalText(ts / 256.0).substr(0, 5));
    registers_.echo("TS");
  } else if (name == "RS") {
    if (!store(cache_.RS, value, fitByte)) return true;
    replotNeeded_ = true;
    registers_.echo("RS");
  } else if (name == "AP") {
    if (store(cache_.AP, value, fitByte)) registers_.echo("AP");
  } else if (name == "AR") {
    if (store(cache_.AR, value, fitByte)) registers_.echo("AR");
  } else if (name == "RT") {
    if (store(cache_.RT, value, fitByte)) registers_.echo("RT");
  } else if (name == "QS") {
    if (!store(cache_.QS, value, fit32)) return true;
    replotNeeded_ = true;
    registers_.echo("QS");
  } else if (name == "TD") {
    if (!store(cache_.TD, value, fit32)) return true;
    replotNeeded_ = true;
    registers_.echo("TD");
  } else if (name == "TC") {
    if (!store(cache_.TC, value, fit32)) return true;
    replotNeeded_ = true;
    registers_.echo("TC");
  } else if (name == "TA" || name == "TW") {
    if (store(name == "TA" ? cache_.TA : cache_.TW, value, fit32)) registers_.echo(name);
  } else if (name == "O1") {
    if (!store(cache_.O1, value, fitByte)) return true;
    replotNeeded_ = true;
    registers_.echo("O1");
  } else if (name == "V1") {
    if (!store(cache_.V1, value, fit32)) return true;
    replotNeeded_ = true;
    registers_.echo("V1");
    setField("Vdiv1cur", std::to_string(cache_.V1));
  } else if (name == "P1") {
    if (!store(cache_.P1, value, fitSigned16)) return true;
    replotNeeded_ = true;
    registers_.echo("P1");
    setField("Offs1cur", std::to_string(cache_.P1));
  } else if (name == "M1") {
    if (!store(cache_.M1, value, fitByte)) return true;
    replotNeeded_ = true;
    registers_.echo("M1");
    setField("OknoBytesPerSample", (cache_.M1 & 1) ? "2" : "1");
  } else if (name == "T1") {
    if (!store(cache_.T1, value, fitByte)) return true;
    replotNeeded_ = true;
    registers_.echo("T1");
  } else if (name == "S1") {
    if (!store(cache_.S1, value, fitByte)) return true;
    replotNeeded_ = true;
    registers_.echo("S1");
  } else {
    return false;
  }
  return true;
}

void MainController::risDiagnostic(const std::string& value) {
  if (value.size() < 4) return;
  auto byte = [&](size_t i) { return static_cast<int>(static_cast<unsigned char>(value[i])); };
  int a = byte(2) * 256 + byte(3);
  int b = byte(0) * 256 + byte(1);
  view_.drawRisLine(a / 8 - 64, b / 8 - 64, risRow_);
  state_.caption = std::to_string(a) + "  " + std::to_string(b) + "     " + std::to_string(b - a);
  changed();
  risRow_ += 2;
  if (risRow_ >= view_.acquisitionWidth()) {
    view_.clearDisplay();
    risRow_ = 0;
  }
}

void MainController::ObexLinkDLL1_rollevent(const std::string& chunk, int32_t total) {
  roll_->rollevent(chunk, total);
}

}  // namespace zorvik
