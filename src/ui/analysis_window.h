#pragma once
#include <QWidget>
#include <exception>
#include <functional>
#include <string>

namespace zorvik {

class SettingsStore;

// The frame the spectrum and histogram windows share: their section of the settings, a store whose
// failure becomes the owner's box, the place and size kept at closing, and the owner's hooks.
class AnalysisWindow : public QWidget {
  Q_OBJECT
 public:
  AnalysisWindow(SettingsStore& settings, const char* section, QWidget* parent);

  std::function<void(const std::string&)> onFault = [](const std::string&) {};
  std::function<void()> onClosed = [] {};
  std::function<bool()> memoOn = [] { return false; };  // the main display's MemoKey1

 protected:
  void store(const char* name, long long value);
  // An action whose fault becomes the owner's box.
  template <typename F>
  void guarded(F&& action) {
    try {
      action();
    } catch (const std::exception& e) {
      onFault(e.what());
    }
  }
  void closeEvent(QCloseEvent* event) override;

  SettingsStore& settings_;

 private:
  const char* section_;
};

}  // namespace zorvik
