#pragma once
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <array>
#include <string>

namespace zorvik {

class SettingsStore;

// HotKey: asks for a window's activation key, stores it and gives the window the key. The desktop has
// no system-wide window keys here, so the key activates the window while the program has the focus.
class HotKey : public QDialog {
  Q_OBJECT
 public:
  HotKey(SettingsStore& settings, QWidget* parent = nullptr);

  // The stored key of the window, given to it when it names one.
  static void SetKey(QWidget* window, const std::string& name, SettingsStore& settings);
  // The dialog for the window's key.
  void SetupDisplay(QWidget* window, const std::string& name);
  void KeySET_Click();

 private:
  SettingsStore& settings_;
  QWidget* window_ = nullptr;
  std::string name_;
  QLabel* HotKeyName = nullptr;
  std::array<QRadioButton*, 3> FirstKeyOption{};  // Shift (1), Ctl (2), Alt (4)
  QLineEdit* SymbolHotKey = nullptr;
};

}  // namespace zorvik
