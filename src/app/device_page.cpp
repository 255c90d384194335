#include "app/device_page.h"

#include <QFormLayout>

#include "core/latin1_text.h"
#include "link/main_state.h"

namespace zorvik {

namespace {
struct Row {
  const char* control;
  const char* caption;
  const char* tip;
};
const Row kRows[] = {
    {"Property_VNM", "Model:", ""},
    {"Property_VSN", "Serial number:", ""},
    {"Property_VHW", "Hardware version:", ""},
    {"Property_VSW", "Firmware version:", ""},
    {"USBname", "USB Name:", "USB Name"},
    {"USBserial", "USB Serial Number:", "USB Serial Number"},
    {"USBversion", "USB version:", ""},
    {"DevicePage.ClockMCUmax", "Clock period max, ns:", ""},
    {"DevicePage.ClockMCUmin", "Clock period min, ns:", ""},
    {"DevicePage.ClockMCUdef", "Safe:", ""},
    {"Property_TOl", "Real sampling, clocks:", "min sampling period (in clocks) for real sampling"},
    {"Property_TMl", "RIS min, clocks:", "min sampling period (in clocks) for RIS mode"},
    {"Property_TMh", "RIS max, clocks:", "max sampling period (in clocks) for RIS mode"},
    {"Property_TPl", "Roll min, clocks:", "min sampling period (in clocks) for Roll mode"},
    {"FrameFS", "Fast sampling:", "Fast sampling"},
};
}  // namespace

DevicePage::DevicePage(QWidget* parent) : KeptPage(parent) {
  setWindowTitle("Device properties");
  setObjectName("DevicePage");
  auto* form = new QFormLayout(this);
  for (const Row& r : kRows) {
    auto* label = new QLabel("-");
    label->setObjectName(r.control);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (*r.tip) label->setToolTip(r.tip);
    form->addRow(r.caption, label);
    fields_[r.control] = label;
  }
}

void DevicePage::refresh(const MainState& state) {
  for (auto& [name, label] : fields_) {
    auto it = state.fields.find(name);
    const std::string& text = it == state.fields.end() ? std::string() : it->second;
    QString t = text.empty() ? QString("-") : latin1Text(text);
    if (label->text() != t) label->setText(t);
  }
}

}  // namespace zorvik
