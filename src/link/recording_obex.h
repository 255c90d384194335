#pragma once
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "link/class_obex.h"

namespace zorvik {

// Passes every call on to another link and notes the property/register requests and register writes.
class RecordingObex : public ClassOBEX, private ObexEvents {
 public:
  explicit RecordingObex(ClassOBEX& inner);
  ~RecordingObex() override;

  std::vector<std::string> requests;                    // "VNM", "TS", ... in order
  std::vector<std::pair<std::string, int32_t>> writes;  // register writes in order
  int rollChunks = 0;
  long long rollBytes = 0;
  // Called for every "D" header, before (handled false) and after (handled true) the program took it.
  std::function<void(const std::string& packet, bool parallel, bool handled)> onData;

  void PrepareFirmwareLoad() override { inner_.PrepareFirmwareLoad(); }
  void OpenSession(bool& ok) override { inner_.OpenSession(ok); }
  void CloseSession() override { inner_.CloseSession(); }
  void GetLinkName(std::string& name) override { inner_.GetLinkName(name); }
  void GetLinkVersion(std::string& version) override { inner_.GetLinkVersion(version); }
  void GetOnline(bool& online) override { inner_.GetOnline(online); }
  void GetUsbSerial(std::string& text) override { inner_.GetUsbSerial(text); }
  void GetUsbVersion(std::string& text) override { inner_.GetUsbVersion(text); }
  void GetUsbName(std::string& text) override { inner_.GetUsbName(text); }
  void ShowPortSetup(bool show) override { inner_.ShowPortSetup(show); }
  void GetPortIsAutomatic(bool& automatic) override { inner_.GetPortIsAutomatic(automatic); }
  void SetSettingsName(const std::string& name) override { inner_.SetSettingsName(name); }
  void SetParallelTransfer(bool on) override { inner_.SetParallelTransfer(on); }
  void SetFirmwareTimeout(int32_t ms) override { inner_.SetFirmwareTimeout(ms); }
  void SetShowTime(int32_t ms) override { inner_.SetShowTime(ms); }
  void SendFirmwareSector(const std::string& name, const std::string& data, bool a, bool b) override {
    inner_.SendFirmwareSector(name, data, a, b);
  }
  void SendCommand(const std::string& name, bool a, bool b) override { inner_.SendCommand(name, a, b); }
  void GetSerialActive(bool& active) override { inner_.GetSerialActive(active); }
  void SetRepeatCommand(bool enable, const std::string& name, bool flag) override {
    inner_.SetRepeatCommand(enable, name, flag);
  }
  void SetPeriodicCommand(bool enable, const std::string& name, int32_t periodMs) override {
    inner_.SetPeriodicCommand(enable, name, periodMs);
  }
  void GetRegister(const std::string& name) override;
  void GetProperty(const std::string& name) override;
  void PutRegister1(const std::string& name, uint8_t value) override;
  void PutRegister2(const std::string& name, int32_t value) override;
  void PutRegister4(const std::string& name, int32_t value) override;
  void ResendLast() override { inner_.ResendLast(); }
  void StopRepeat(bool resume) override { inner_.StopRepeat(resume); }

 private:
  // Events of the inner link are handed on as they come (they are already queued by it).
  void ObexLinkDLL1_NoZorvikFoundEvent() override;
  void ObexLinkDLL1_StartSessionMsgEvent(const std::string& message) override;
  void ObexLinkDLL1_StartSessionEvent() override;
  void ObexLinkDLL1_EndSessionEvent() override;
  void ObexLinkDLL1_HeaderEvent(const std::string& name, const std::string& value, bool parallel) override;
  void ObexLinkDLL1_rollevent(const std::string& chunk, int32_t total) override;
  ObexEvents* target();

  ClassOBEX& inner_;
};

}  // namespace zorvik
