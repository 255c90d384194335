#pragma once
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <array>
#include <string>

namespace zorvik {

class HotKeyTable;
class MessageSink;
class SettingsStore;
struct HotKeyValue;

// HotKey: asks for a window's activation key, stores it and gives the window the key. The desktop has
// no system-wide window keys here, so the key activates the window while the program has the focus, and
// a key is held by one of the program's windows at a time.
class HotKey : public QDialog {
  Q_OBJECT
 public:
  HotKey(SettingsStore& settings, QWidget* parent = nullptr);

  // The keys the program's windows hold.
  static HotKeyTable& table();

  // The stored key of the window, given to it when it names one. When another window holds it the user
  // is asked to set up another (the boxes go to `messages`, or to the window's own boxes without one).
  static void SetKey(QWidget* window, const std::string& name, SettingsStore& settings,
                     MessageSink* messages = nullptr);
  // Where the dialog's boxes go; without it, to boxes of its own.
  void setMessages(MessageSink* messages) { messages_ = messages; }
  // The dialog for the window's key.
  void SetupDisplay(QWidget* window, const std::string& name);
  void KeySET_Click();

 private:
  static void bindShortcut(QWidget* window, const std::string& name, const HotKeyValue& key);

  SettingsStore& settings_;
  MessageSink* messages_ = nullptr;
  QWidget* window_ = nullptr;
  std::string name_;
  QLabel* HotKeyName = nullptr;
  std::array<QRadioButton*, 3> FirstKeyOption{};  // Shift (1), Ctl (2), Alt (4)
  QLineEdit* SymbolHotKey = nullptr;
};

}  // namespace zorvik
