#include "measure/thd_window.h"

#include <QCloseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "config/settings.h"
#include "config/text_number.h"
#include "core/eng_text.h"
#include "measure/meter_text.h"
#include "measure/thd.h"
#include "spectrum/spectrum_engine.h"
#include "spectrum/spectrum_stage.h"
#include "ui/window_place_qt.h"

namespace zorvik {

THDmeter::THDmeter(SettingsStore& settings, SpectrumStage& stage, QWidget* parent)
    : SpectrumReaderWindow(stage, SpectrumStage::Reader::Thd, parent), settings_(settings) {
  setObjectName("THDmeter");
  setWindowTitle("THD");
  auto* column = new QVBoxLayout(this);
  auto* frame = new QGroupBox("THD", this);
  frame->setObjectName("FrameTHD");
  auto* grid = new QGridLayout(frame);
  CurVal = new QLabel(frame);
  CurVal->setObjectName("CurVal");
  QFont big = CurVal->font();
  big.setPointSize(big.pointSize() * 2);
  big.setBold(true);
  CurVal->setFont(big);
  MinVal = new QLabel(frame);
  MinVal->setObjectName("MinVal");
  MaxVal = new QLabel(frame);
  MaxVal->setObjectName("MaxVal");
  AvgVal = new QLabel(frame);
  AvgVal->setObjectName("AvgVal");
  auto* resetKey = new QPushButton("Reset", frame);
  resetKey->setObjectName("KeyReset");
  connect(resetKey, &QPushButton::clicked, this, [this] { reset(); });
  MaxHarm = new QLineEdit("10", frame);
  MaxHarm->setObjectName("MaxHarm");
  PowerMode = new QCheckBox("Power", frame);
  PowerMode->setObjectName("PowerMode");
  PowerMode->setToolTip("THD calculation method (instead of amplitude)");
  HarmList = new QCheckBox("List", frame);
  HarmList->setObjectName("HarmList");
  grid->addWidget(CurVal, 0, 0, 1, 3);
  grid->addWidget(resetKey, 0, 3);
  grid->addWidget(MinVal, 1, 0);
  grid->addWidget(AvgVal, 1, 1);
  grid->addWidget(MaxVal, 1, 2);
  grid->addWidget(new QLabel("harmonics:", frame), 2, 0);
  grid->addWidget(MaxHarm, 2, 1);
  grid->addWidget(PowerMode, 2, 2);
  grid->addWidget(HarmList, 2, 3);
  column->addWidget(frame);
  FrameList = new QGroupBox("Harmonics", this);
  FrameList->setObjectName("FrameList");
  list_ = new QGridLayout(FrameList);
  FrameList->setVisible(false);
  column->addWidget(FrameList);
  connect(HarmList, &QCheckBox::toggled, this, [this](bool on) {
    FrameList->setVisible(on);
    adjustSize();
  });
  const int left = settings_.getInt("Meters Positions", "THD Left", -1);
  const int top = settings_.getInt("Meters Positions", "THD Top", -1);
  placeOpenedWindow(this, left >= 0 && top >= 0 ? std::optional<QPoint>(QPoint(left, top)) : std::nullopt);
  clock_.start();
  reset();
}

void THDmeter::reset() {
  stats_.reset();
  for (QLabel* l : {CurVal, MinVal, MaxVal, AvgVal}) l->clear();
}

QString THDmeter::percent(float v) const {
  return QString::fromStdString(formatPicture(v, "00.0") + "%");
}

void THDmeter::Ind(const SpectrumEngine& e, float samplePeriod) {
  if (e.PeakBin == 0 || e.PeakAmp == 0) return;
  const int typed = static_cast<int>(textToNumber(MaxHarm->text().toStdString(), 0));
  const int h = harmonicsLimit(typed);
  if (h != typed) MaxHarm->setText(QString::number(h));
  const ThdResult r = computeThd(e, samplePeriod, h, PowerMode->isChecked());
  if (!r.valid) return;
  if (HarmList->isChecked()) {
    if (rows_.size() != r.lines.size()) {
      for (auto& row : rows_)
        for (QLabel* l : row) delete l;
      rows_.clear();
      for (size_t i = 0; i < r.lines.size(); ++i) {
        std::array<QLabel*, 3> row{new QLabel(FrameList), new QLabel(FrameList), new QLabel(FrameList)};
        for (int c = 0; c < 3; ++c) {
          list_->addWidget(row[static_cast<size_t>(c)], static_cast<int>(i), c);
          row[static_cast<size_t>(c)]->show();
        }
        rows_.push_back(row);
      }
      adjustSize();
    }
    for (size_t i = 0; i < r.lines.size(); ++i) {
      rows_[i][0]->setText(QString::number(r.lines[i].number));
      rows_[i][1]->setText(QString::fromStdString(engineeringText(r.lines[i].freq, "Hz")));
      rows_[i][2]->setText(QString::fromStdString(engineeringText(r.lines[i].amplitude, "V")));
    }
  }
  const float before = stats_.cur;
  const bool fresh = stats_.fresh;
  stats_.add(r.value, static_cast<uint32_t>(clock_.elapsed()));
  if (fresh || stats_.cur != before) CurVal->setText(percent(stats_.cur));
  MinVal->setText(percent(stats_.min));
  MaxVal->setText(percent(stats_.max));
  AvgVal->setText(percent(stats_.avg));
}

void THDmeter::closeEvent(QCloseEvent* event) {
  try {
    settings_.saveInt("Meters Positions", "THD Left", x());
    settings_.saveInt("Meters Positions", "THD Top", y());
  } catch (const std::exception& e) {
    onFault(e.what());
  }
  event->accept();
}

}  // namespace zorvik
