#pragma once
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <functional>
#include <map>
#include <string>

#include "ui/kept_page.h"

namespace zorvik {

class SettingsStore;
struct MainState;

// A page of the Device menu: read-outs that the header events fill and inputs with a key that hands the
// typed value to the instrument. Its place is kept under "Startup Position"; its close box only hides
// it, so that its read-outs stay with the header events.
class DeviceSettingPage : public KeptPage {
  Q_OBJECT
 public:
  DeviceSettingPage(SettingsStore& settings, const char* object, const char* title, const char* positionKey,
                    QWidget* parent = nullptr);

  QFormLayout* form() { return form_; }
  // A read-out of a field of the main state.
  void readOut(const char* field, const char* object, const char* caption, const char* tip = "");
  // An input showing a field (none when empty), and its key: `apply` gets the text when the key is
  // pressed. `unit` stands between the two.
  QLineEdit* input(const char* field, const char* object, const char* caption, const char* tip,
                   const char* keyObject, const char* keyTip, std::function<void(const QString&)> apply,
                   QWidget* unit = nullptr);

  // The fields again; an input that has the focus keeps what is being typed.
  void refresh(const MainState& state);
  // Runs after refresh: the page's own read-outs.
  std::function<void(const MainState&)> onRefresh;
  // A fault of a key becomes a box through the owner.
  std::function<void(const std::string&)> onFault = [](const std::string&) {};
  // Keys that talk to the instrument only work online.
  void setOnline(bool online);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  SettingsStore& settings_;
  std::string positionKey_;
  QFormLayout* form_ = nullptr;
  std::map<std::string, QLabel*> readOuts_;
  std::map<std::string, QLineEdit*> inputs_;
  std::vector<QPushButton*> keys_;
};

}  // namespace zorvik
