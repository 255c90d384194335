#include "app/trigger_panel.h"

#include <QFormLayout>
#include <QSignalBlocker>

#include "control/trigger_control.h"

namespace zorvik {

TriggerPanel::TriggerPanel(TriggerControl& trigger, std::function<void()> openDelayPage, QWidget* parent)
    : QWidget(parent), trigger_(trigger) {
  auto* form = new QFormLayout(this);
  form->setContentsMargins(0, 0, 0, 0);
  ScrollTrigCH1 = new QSlider(Qt::Horizontal);
  ScrollTrigCH1->setObjectName("ScrollTrigCH1");
  ScrollTrigCH1->setRange(0, 255);
  ScrollTrigCH1->setToolTip("Trigger level");
  connect(ScrollTrigCH1, &QSlider::valueChanged, this, [this](int v) { trigger_.setLevel(v); });
  TrigPolar1 = new QPushButton;
  TrigPolar1->setObjectName("TrigPolar1");
  TrigPolar1->setToolTip("Trigger polarity");
  connect(TrigPolar1, &QPushButton::clicked, this, [this] { trigger_.TrigPolar1_Click(); });
  TrigFilter1 = new QComboBox;
  TrigFilter1->setObjectName("TrigFilter1");
  TrigFilter1->setToolTip("Trigger speed");
  TrigFilter1->addItems({"Fastest", "Fast", "Slow", "Slowest"});
  connect(TrigFilter1, &QComboBox::activated, this, [this](int i) { trigger_.setSpeed(i); });
  AutoTrig1 = new QCheckBox("Auto level");
  AutoTrig1->setObjectName("AutoTrig1");
  AutoTrig1->setToolTip("Auto trigger level setup");
  connect(AutoTrig1, &QCheckBox::clicked, this, [this](bool on) { trigger_.setAutoTrig(on); });
  KeyDelay = new QPushButton("Delay");
  KeyDelay->setObjectName("KeyDelay");
  KeyDelay->setCheckable(true);
  connect(KeyDelay, &QPushButton::clicked, this, [this, openDelayPage] {
    openDelayPage();
    refresh();
  });
  form->addRow("Level", ScrollTrigCH1);
  form->addRow("Edge", TrigPolar1);
  form->addRow("Speed", TrigFilter1);
  form->addRow(AutoTrig1);
  form->addRow(KeyDelay);
  refresh();
}

void TriggerPanel::refresh() {
  const TriggerModel& m = trigger_.model();
  QSignalBlocker b1(ScrollTrigCH1), b2(TrigFilter1), b3(AutoTrig1);
  ScrollTrigCH1->setValue(m.level);
  TrigPolar1->setText(QString::fromStdString(m.TrigPolar1));
  TrigFilter1->setCurrentIndex(m.speed);
  AutoTrig1->setChecked(m.AutoTrig1);
  KeyDelay->setChecked(m.delayOn);
  KeyDelay->setToolTip(QString::fromStdString(m.keyDelayToolTip));
}

}  // namespace zorvik
