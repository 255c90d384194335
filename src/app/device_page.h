#pragma once
#include <QLabel>
#include <map>
#include <string>

#include "ui/kept_page.h"

namespace zorvik {

struct MainState;

// "Device properties": the instrument's numbers as the session start fills them in.
class DevicePage : public KeptPage {
  Q_OBJECT
 public:
  explicit DevicePage(QWidget* parent = nullptr);
  void refresh(const MainState& state);

 private:
  std::map<std::string, QLabel*> fields_;
};

}  // namespace zorvik
