#pragma once
#include <string>
#include <vector>

#include "link/class_obex.h"

namespace zorvik::test {

// A link that answers nothing by itself: the test decides which events arrive.
class FakeObex : public ClassOBEX {
 public:
  bool online = false;
  bool openOk = true;
  bool portAutomatic = false;
  std::vector<std::string> calls;

  void queueHeader(const std::string& name, const std::string& value, bool parallel = false) {
    post([=](ObexEvents& e) { e.ObexLinkDLL1_HeaderEvent(name, value, parallel); });
  }
  void queueStart() {
    post([this](ObexEvents& e) {
      online = true;
      e.ObexLinkDLL1_StartSessionEvent();
    });
  }
  void queueMessage(const std::string& m) {
    post([=](ObexEvents& e) { e.ObexLinkDLL1_StartSessionMsgEvent(m); });
  }
  void queueEnd() {
    post([this](ObexEvents& e) {
      online = false;
      e.ObexLinkDLL1_EndSessionEvent();
    });
  }
  void queueNoDevice() {
    post([](ObexEvents& e) { e.ObexLinkDLL1_NoZorvikFoundEvent(); });
  }

  void PrepareFirmwareLoad() override { calls.push_back("PrepareFirmwareLoad"); }
  void OpenSession(bool& ok) override {
    calls.push_back("OpenSession");
    ok = openOk;
  }
  void CloseSession() override {
    calls.push_back("CloseSession");
    queueEnd();
  }
  void GetLinkName(std::string& n) override { n = "fake"; }
  void GetLinkVersion(std::string& v) override { v = "1"; }
  void GetOnline(bool& o) override { o = online; }
  void GetUsbSerial(std::string& t) override { t = "S1"; }
  void GetUsbVersion(std::string& t) override { t = "V1"; }
  void GetUsbName(std::string& t) override { t = "N1"; }
  void ShowPortSetup(bool) override { calls.push_back("ShowPortSetup"); }
  void GetPortIsAutomatic(bool& a) override { a = portAutomatic; }
  void SetSettingsName(const std::string& n) override { calls.push_back("SetSettingsName " + n); }
  void SetParallelTransfer(bool) override {}
  void SetFirmwareTimeout(int32_t) override {}
  void SetShowTime(int32_t) override {}
  void SendFirmwareSector(const std::string&, const std::string&, bool, bool) override {}
  void SendCommand(const std::string& n, bool, bool) override { calls.push_back("SendCommand " + n); }
  void GetSerialActive(bool& a) override { a = false; }
  void SetRepeatCommand(bool en, const std::string& n, bool) override {
    calls.push_back(std::string("SetRepeatCommand ") + (en ? "on " : "off ") + n);
  }
  void SetPeriodicCommand(bool en, const std::string& n, int32_t ms) override {
    calls.push_back(std::string("SetPeriodicCommand ") + (en ? "on " : "off ") + n + " " +
                    std::to_string(ms));
  }
  void GetRegister(const std::string& n) override { calls.push_back("GetRegister " + n); }
  void GetProperty(const std::string& n) override { calls.push_back("GetProperty " + n); }
  void PutRegister1(const std::string& n, uint8_t v) override {
    calls.push_back("Put1 " + n + "=" + std::to_string(v));
  }
  void PutRegister2(const std::string& n, int32_t v) override {
    calls.push_back("Put2 " + n + "=" + std::to_string(v));
  }
  void PutRegister4(const std::string& n, int32_t v) override {
    calls.push_back("Put4 " + n + "=" + std::to_string(v));
  }
  void ResendLast() override {}
  void StopRepeat(bool) override {}
};

}  // namespace zorvik::test
