#pragma once
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "link/class_obex.h"

namespace zorvik {

// A link that stands online, notes every register write and answers nothing: the rule's writes can be
// watched without a device moving the cache behind them.
class SilentObex : public ClassOBEX {
 public:
  bool online = true;
  bool serialActive = false;
  std::vector<std::pair<std::string, int32_t>> writes;  // in order
  std::vector<std::string> requests;                    // GetProperty and GetRegister names
  std::vector<std::string> commands;                    // SendCommand names

  void PrepareFirmwareLoad() override {}
  void OpenSession(bool& ok) override { ok = true; }
  void CloseSession() override {}
  void GetLinkName(std::string& name) override { name = "silent"; }
  void GetLinkVersion(std::string& version) override { version = "1"; }
  void GetOnline(bool& o) override { o = online; }
  void GetUsbSerial(std::string& text) override { text.clear(); }
  void GetUsbVersion(std::string& text) override { text.clear(); }
  void GetUsbName(std::string& text) override { text.clear(); }
  void ShowPortSetup(bool) override {}
  void GetPortIsAutomatic(bool& automatic) override { automatic = true; }
  void SetSettingsName(const std::string&) override {}
  void SetParallelTransfer(bool) override {}
  void SetFirmwareTimeout(int32_t) override {}
  void SetShowTime(int32_t) override {}
  void SendFirmwareSector(const std::string&, const std::string&, bool, bool) override {}
  void SendCommand(const std::string& name, bool, bool) override { commands.push_back(name); }
  void GetSerialActive(bool& active) override { active = serialActive; }
  void SetRepeatCommand(bool, const std::string&, bool) override {}
  void SetPeriodicCommand(bool, const std::string&, int32_t) override {}
  void GetRegister(const std::string& name) override { requests.push_back(name); }
  void GetProperty(const std::string& name) override { requests.push_back(name); }
  void PutRegister1(const std::string& name, uint8_t value) override { writes.emplace_back(name, value); }
  void PutRegister2(const std::string& name, int32_t value) override { writes.emplace_back(name, value); }
  void PutRegister4(const std::string& name, int32_t value) override { writes.emplace_back(name, value); }
  void ResendLast() override {}
  void StopRepeat(bool) override {}
};

}  // namespace zorvik
