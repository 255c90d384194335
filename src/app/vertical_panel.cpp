#include "app/vertical_panel.h"

#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "control/channel_control.h"

namespace zorvik {

VerticalPanel::VerticalPanel(ChannelControl& channel, QWidget* parent) : QWidget(parent), channel_(channel) {
  setObjectName("VerticalPanel");
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(new QLabel("CH1"));

  VoltDiv1 = new QComboBox;
  VoltDiv1->setObjectName("VoltDiv1");
  VoltDiv1->setToolTip("Channel sensitivity");
  for (int i = kVoltDivFirst; i <= kVoltDivLast; ++i)
    VoltDiv1->addItem(QString::fromStdString(voltDivText(i)));
  connect(VoltDiv1, &QComboBox::activated, this,
          [this](int index) { channel_.scrollCH1_Change(index + kVoltDivFirst); });
  column->addWidget(VoltDiv1);

  scrollCH1 = new QScrollBar(Qt::Horizontal);
  scrollCH1->setObjectName("scrollCH1");
  scrollCH1->setToolTip("Channel sensitivity");
  scrollCH1->setRange(kVoltDivFirst, kVoltDivLast);
  scrollCH1->setPageStep(1);
  connect(scrollCH1, &QScrollBar::valueChanged, this, [this](int v) { channel_.scrollCH1_Change(v); });
  column->addWidget(scrollCH1);

  auto* offsetRow = new QGridLayout;
  VScroll1 = new QScrollBar(Qt::Vertical);
  VScroll1->setObjectName("VScroll1");
  VScroll1->setToolTip("offset level in oscilloscope");
  VScroll1->setRange(kVScroll1Min, kVScroll1Max);
  VScroll1->setInvertedAppearance(true);  // up is a higher offset
  VScroll1->setMinimumHeight(120);
  // While dragged only the display follows; the register is written when the value is set.
  connect(VScroll1, &QScrollBar::sliderMoved, this, [this](int v) { channel_.VScroll1_Scroll(v); });
  connect(VScroll1, &QScrollBar::sliderReleased, this,
          [this] { channel_.VScroll1_Change(VScroll1->value()); });
  connect(VScroll1, &QScrollBar::valueChanged, this, [this](int v) {
    if (!VScroll1->isSliderDown()) channel_.VScroll1_Change(v);
  });
  offsetRow->addWidget(VScroll1, 0, 0, 3, 1);
  HardwShift1 = new QCheckBox("Offset");
  HardwShift1->setObjectName("HardwShift1");
  connect(HardwShift1, &QCheckBox::clicked, this, [this](bool on) { channel_.HardwShift1_Click(on); });
  offsetRow->addWidget(HardwShift1, 0, 1);
  KeyNulOffset1 = new QPushButton("0V");
  KeyNulOffset1->setObjectName("KeyNulOffset1");
  KeyNulOffset1->setToolTip("Set CH1 offset = 0V");
  connect(KeyNulOffset1, &QPushButton::clicked, this, [this] { channel_.KeyNulOffset1_Click(); });
  offsetRow->addWidget(KeyNulOffset1, 1, 1);
  column->addLayout(offsetRow);

  auto* coupling = new QGridLayout;
  OpenClose1 = check("OpenClose1", "DC", "AC/DC coupling mode");
  connect(OpenClose1, &QCheckBox::clicked, this, [this](bool on) { channel_.OpenClose1_Click(on); });
  Ground1 = check("Ground1", "GND", nullptr);
  connect(Ground1, &QCheckBox::clicked, this, [this](bool on) { channel_.Ground1_Click(on); });
  FilterH1 = check("FilterH1", "3MHz", "Bandwidth limit to 3MHz");
  connect(FilterH1, &QCheckBox::clicked, this, [this](bool on) { channel_.FilterH1_Click(on); });
  FilterL1 = check("FilterL1", "3kHz", "Bandwidth limit to 3kHz (up to 200mV/div)");
  connect(FilterL1, &QCheckBox::clicked, this, [this](bool on) { channel_.FilterL1_Click(on); });
  coupling->addWidget(OpenClose1, 0, 0);
  coupling->addWidget(Ground1, 0, 1);
  coupling->addWidget(FilterH1, 1, 0);
  coupling->addWidget(FilterL1, 1, 1);
  column->addLayout(coupling);

  Average1 = check("Average1", "Average", nullptr);
  connect(Average1, &QCheckBox::clicked, this, [this](bool on) { channel_.Average1_Click(on); });
  Peak1 = check("Peak1", "Peak", nullptr);
  connect(Peak1, &QCheckBox::clicked, this, [this](bool on) { channel_.Peak1_Click(on); });
  HiRes1 = check("HiRes1", "HiRes", nullptr);
  connect(HiRes1, &QCheckBox::clicked, this, [this](bool on) { channel_.HiRes1_Click(on); });
  column->addWidget(Average1);
  column->addWidget(Peak1);
  column->addWidget(HiRes1);
  column->addStretch(1);

  channel_.onChange.add([panel = QPointer<VerticalPanel>(this)] {
    if (panel) panel->refresh();
  });
  refresh();
}

QCheckBox* VerticalPanel::check(const char* name, const char* caption, const char* toolTip) {
  auto* box = new QCheckBox(caption);
  box->setObjectName(name);
  if (toolTip) box->setToolTip(toolTip);
  return box;
}

void VerticalPanel::refresh() {
  const ChannelModel& m = channel_.model();
  QSignalBlocker b1(VoltDiv1), b2(scrollCH1), b3(VScroll1);
  bool listed = m.scrollCH1 >= kVoltDivFirst && m.scrollCH1 <= kVoltDivLast;
  VoltDiv1->setCurrentIndex(m.voltDivMarked && listed ? m.scrollCH1 - kVoltDivFirst : -1);
  if (listed) scrollCH1->setValue(m.scrollCH1);
  if (!VScroll1->isSliderDown()) VScroll1->setValue(m.VScroll1);
  VScroll1->setPageStep(m.VScroll1LargeStep);
  VScroll1->setEnabled(m.HardwShift1);
  HardwShift1->setChecked(m.HardwShift1);
  HardwShift1->setToolTip(QString::fromStdString(m.hardwShiftToolTip));
  OpenClose1->setChecked(m.OpenClose1);
  Ground1->setChecked(m.Ground1);
  FilterH1->setChecked(m.FilterH1);
  FilterL1->setChecked(m.FilterL1);
  Average1->setChecked(m.Average1);
  Peak1->setChecked(m.Peak1);
  HiRes1->setChecked(m.HiRes1);
}

}  // namespace zorvik
