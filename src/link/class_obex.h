#pragma once
#include <QObject>
#include <cstdint>
#include <functional>
#include <string>

#include "link/obex_events.h"

namespace zorvik {

// The device link contract. Operations return at once; answers come back later as events on the
// event loop. Out arguments are references, as the contract passes them.
class ClassOBEX {
 public:
  virtual ~ClassOBEX() = default;

  virtual void PrepareFirmwareLoad() = 0;
  virtual void OpenSession(bool& ok) = 0;
  virtual void CloseSession() = 0;
  virtual void GetLinkName(std::string& name) = 0;
  virtual void GetLinkVersion(std::string& version) = 0;
  virtual void GetOnline(bool& online) = 0;
  virtual void GetUsbSerial(std::string& text) = 0;
  virtual void GetUsbVersion(std::string& text) = 0;
  virtual void GetUsbName(std::string& text) = 0;
  virtual void ShowPortSetup(bool show) = 0;
  virtual void GetPortIsAutomatic(bool& automatic) = 0;
  virtual void SetSettingsName(const std::string& name) = 0;
  virtual void SetParallelTransfer(bool on) = 0;
  virtual void SetFirmwareTimeout(int32_t ms) = 0;
  virtual void SetShowTime(int32_t ms) = 0;
  virtual void SendFirmwareSector(const std::string& name, const std::string& data, bool flagA,
                                  bool flagB) = 0;
  virtual void SendCommand(const std::string& name, bool flagA, bool flagB) = 0;
  virtual void GetSerialActive(bool& active) = 0;
  virtual void SetRepeatCommand(bool enable, const std::string& name, bool flag) = 0;
  virtual void SetPeriodicCommand(bool enable, const std::string& name, int32_t periodMs) = 0;
  virtual void GetRegister(const std::string& name) = 0;
  virtual void GetProperty(const std::string& name) = 0;
  virtual void PutRegister1(const std::string& name, uint8_t value) = 0;
  virtual void PutRegister2(const std::string& name, int32_t value) = 0;
  virtual void PutRegister4(const std::string& name, int32_t value) = 0;
  virtual void ResendLast() = 0;
  virtual void StopRepeat(bool resume) = 0;

  // Where the events go; the link does not own the receiver.
  void setEventSink(ObexEvents* sink) { sink_ = sink; }

 protected:
  // Queues an event on the event loop. Dropped if the link is gone or no receiver is set by then.
  void post(std::function<void(ObexEvents&)> event) {
    QMetaObject::invokeMethod(
        &context_,
        [this, event = std::move(event)] {
          if (sink_) event(*sink_);
        },
        Qt::QueuedConnection);
  }
  QObject& context() { return context_; }
  // For a link that wraps another one: the inner link has queued the event already.
  ObexEvents* eventSink() const { return sink_; }

 private:
  QObject context_;
  ObexEvents* sink_ = nullptr;
};

}  // namespace zorvik
