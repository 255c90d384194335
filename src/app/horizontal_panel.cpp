#include "app/horizontal_panel.h"

#include <QGridLayout>
#include <QLabel>
#include <QPointer>
#include <QSignalBlocker>
#include <QStandardItemModel>
#include <algorithm>

#include "control/timebase_control.h"

namespace zorvik {

HorizontalPanel::HorizontalPanel(TimebaseControl& timebase, QWidget* parent)
    : QWidget(parent), timebase_(timebase) {
  setObjectName("HorizontalPanel");
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);

  TimeDiv = new QComboBox;
  TimeDiv->setObjectName("TimeDiv");
  for (int i = kTimeDivFirst; i <= kTimeDivLast; ++i)
    TimeDiv->addItem(QString::fromStdString(timeDivText(i)));
  connect(TimeDiv, &QComboBox::activated, this,
          [this](int index) { timebase_.ScrollTimeDiv_Change(index + kTimeDivFirst); });
  ScrollTimeDiv = new QScrollBar(Qt::Horizontal);
  ScrollTimeDiv->setObjectName("ScrollTimeDiv");
  ScrollTimeDiv->setRange(kTimeDivFirst, kTimeDivLast);
  ScrollTimeDiv->setPageStep(1);
  ScrollTimeDiv->setMinimumWidth(120);
  connect(ScrollTimeDiv, &QScrollBar::valueChanged, this,
          [this](int v) { timebase_.ScrollTimeDiv_Change(v); });
  grid->addWidget(new QLabel("Time/div"), 0, 0);
  grid->addWidget(TimeDiv, 0, 1);
  grid->addWidget(ScrollTimeDiv, 0, 2);

  EnableRIS = new QCheckBox("RIS");
  EnableRIS->setObjectName("EnableRIS");
  EnableRIS->setToolTip("Enable RIS (Stroboscope)");
  connect(EnableRIS, &QCheckBox::clicked, this, [this](bool on) { timebase_.EnableRIS_Click(on); });
  grid->addWidget(EnableRIS, 0, 3);

  HScrollCenter = new QScrollBar(Qt::Horizontal);
  HScrollCenter->setObjectName("HScrollCenter");
  HScrollCenter->setMinimumWidth(120);
  // A drag writes once, when it ends.
  connect(HScrollCenter, &QScrollBar::sliderReleased, this,
          [this] { timebase_.HScrollCenter_Change(HScrollCenter->value()); });
  connect(HScrollCenter, &QScrollBar::valueChanged, this, [this](int v) {
    if (!HScrollCenter->isSliderDown()) timebase_.HScrollCenter_Change(v);
  });
  grid->addWidget(new QLabel("Presamples"), 1, 0);
  grid->addWidget(HScrollCenter, 1, 1, 1, 2);
  KeepPropPresamp = new QCheckBox("Keep proportionally");
  KeepPropPresamp->setObjectName("KeepPropPresamp");
  KeepPropPresamp->setToolTip("Keep proportionally");
  connect(KeepPropPresamp, &QCheckBox::clicked, this,
          [this](bool on) { timebase_.KeepPropPresamp_Click(on); });
  grid->addWidget(KeepPropPresamp, 1, 3);

  SampleMemoDepth = new QComboBox;
  SampleMemoDepth->setObjectName("SampleMemoDepth");
  SampleMemoDepth->setToolTip(
      "record length: from one sample for 2 screen points to 4 sample for one screen point");
  for (const char* entry : kMemoDepthEntries) SampleMemoDepth->addItem(entry);
  connect(SampleMemoDepth, &QComboBox::activated, this,
          [this](int index) { timebase_.SampleMemoDepth_Click(index); });
  grid->addWidget(new QLabel("Memory"), 2, 0);
  grid->addWidget(SampleMemoDepth, 2, 1);
  RealtmDraw = new QCheckBox("Realtime");
  RealtmDraw->setObjectName("RealtmDraw");
  RealtmDraw->setToolTip("Realtime sample transmit");
  connect(RealtmDraw, &QCheckBox::clicked, this, [this](bool on) { timebase_.RealtmDraw_Click(on); });
  grid->addWidget(RealtmDraw, 2, 3);
  grid->setColumnStretch(2, 1);

  timebase_.onChange.add([panel = QPointer<HorizontalPanel>(this)] {
    if (panel) panel->refresh();
  });
  refresh();
}

void HorizontalPanel::refresh() {
  const TimebaseModel& m = timebase_.model();
  QSignalBlocker b1(TimeDiv), b2(ScrollTimeDiv), b3(HScrollCenter), b4(SampleMemoDepth);
  if (auto* items = qobject_cast<QStandardItemModel*>(TimeDiv->model())) {
    for (int i = kTimeDivFirst; i < kTimeDivRealTime; ++i)
      if (QStandardItem* item = items->item(i - kTimeDivFirst)) item->setEnabled(m.fastEntriesEnabled);
  }
  TimeDiv->setCurrentIndex(m.timeDivMarked ? m.TimeDiv - kTimeDivFirst : -1);
  ScrollTimeDiv->setValue(m.ScrollTimeDiv);
  EnableRIS->setChecked(m.EnableRIS);
  if (!HScrollCenter->isSliderDown()) {
    HScrollCenter->setRange(0, m.HScrollCenterMax);
    HScrollCenter->setPageStep(std::max(1, m.HScrollCenterMax / 10));
    HScrollCenter->setValue(m.HScrollCenterValue);
  }
  HScrollCenter->setEnabled(m.HScrollCenterEnabled);
  HScrollCenter->setToolTip(QString::fromStdString(m.HScrollCenterToolTip));
  RealtmDraw->setChecked(m.RealtmDraw);
  SampleMemoDepth->setCurrentIndex(m.SampleMemoDepth);
  KeepPropPresamp->setChecked(m.KeepPropPresamp);
}

}  // namespace zorvik
