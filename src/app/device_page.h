#pragma once
#include <QDialog>
#include <QLabel>
#include <map>
#include <string>

namespace zorvik {

struct MainState;

// "Device properties": the instrument's numbers as the session start fills them in.
class DevicePage : public QDialog {
  Q_OBJECT
 public:
  explicit DevicePage(QWidget* parent = nullptr);
  void refresh(const MainState& state);
  // A close by its close box only hides the page, so that its read-outs stay with the header events.
  void closeEvent(QCloseEvent* event) override;

 private:
  std::map<std::string, QLabel*> fields_;
};

}  // namespace zorvik
