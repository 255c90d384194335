#include "measure/main_meter_window.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QToolButton>
#include <cmath>
#include <vector>

#include "config/settings.h"
#include "measure/main_meter.h"
#include "measure/meter_text.h"
#include "spectrum/spectrum_engine.h"
#include "spectrum/spectrum_stage.h"
#include "ui/window_place_qt.h"

namespace zorvik {

namespace {
const char* const kNames[4] = {"", "DB", "Per", "Frq"};
// The reset keys of each row; the level row has two.
const std::vector<const char*> kResetKeys[4] = {
    {"KeyResetACV"}, {"KeyResetDBV", "KeyResetDB"}, {"KeyResetPer"}, {"KeyResetFrq"}};
}  // namespace

mainmeter::mainmeter(SettingsStore& settings, SpectrumStage& stage, QWidget* parent)
    : SpectrumReaderWindow(stage, SpectrumStage::Reader::MainMeter, parent), settings_(settings) {
  setObjectName("mainmeter");
  setWindowTitle("Max.freq");
  auto* grid = new QGridLayout(this);
  const char* heads[4] = {"current", "min", "max", "average"};
  for (int c = 0; c < 4; ++c) grid->addWidget(new QLabel(heads[c], this), 0, c);
  const char* kinds[4] = {"CurVal", "MinVal", "MaxVal", "AvgVal"};
  for (int g = 0; g < kGroups; ++g) {
    for (int c = 0; c < 4; ++c) {
      auto* l = new QLabel(this);
      l->setObjectName(QString(kinds[c]) + kNames[g]);
      l->setMinimumWidth(90);
      if (c == 0) {
        QFont f = l->font();
        f.setBold(true);
        l->setFont(f);
      }
      grid->addWidget(l, g + 1, c);
      labels_[static_cast<size_t>(g)][static_cast<size_t>(c)] = l;
    }
    int column = 4;
    for (const char* name : kResetKeys[g]) {
      auto* reset = new QToolButton(this);
      reset->setObjectName(name);
      reset->setText("R");
      connect(reset, &QToolButton::clicked, this, [this, g] {
        stats_[static_cast<size_t>(g)].reset();
        for (QLabel* l : labels_[static_cast<size_t>(g)]) l->clear();
      });
      grid->addWidget(reset, g + 1, column++);
    }
  }
  MinFreq = new QLineEdit(this);
  MinFreq->setObjectName("MinFreq");
  MaxFreq = new QLineEdit(this);
  MaxFreq->setObjectName("MaxFreq");
  SinXxInterpolation = new QCheckBox("Sin(x)/x", this);
  SinXxInterpolation->setObjectName("SinXxInterpolation");
  SinXxInterpolation->setChecked(stage_.mainMeterSinxx());
  connect(SinXxInterpolation, &QCheckBox::clicked, this, [this](bool on) {
    try {
      stage_.setMainMeterSinxx(on);
    } catch (const std::exception& e) {
      onFault(e.what());
    }
  });
  grid->addWidget(new QLabel("band, kHz:", this), kGroups + 1, 0);
  grid->addWidget(MinFreq, kGroups + 1, 1);
  grid->addWidget(MaxFreq, kGroups + 1, 2);
  grid->addWidget(SinXxInterpolation, kGroups + 1, 3);
  const int left = settings_.getInt("Meters Positions", "MainComp Left", -1);
  const int top = settings_.getInt("Meters Positions", "MainComp Top", -1);
  placeOpenedWindow(this, left >= 0 && top >= 0 ? std::optional<QPoint>(QPoint(left, top)) : std::nullopt);
  clock_.start();
}

QString mainmeter::text(Group g, float value) const {
  switch (g) {
    case Amplitude:
      return QString::fromStdString(meterEngineeringText(value, 0, "V", true, MeterDigits::Four));
    case Level:  // sign, two digits at least, one decimal: "-06.0dBV"
      return QString::fromStdString(formatPicture(value, "00.0") + "dBV");
    case Period:
      return QString::fromStdString(meterEngineeringText(value, 0, "s", true, MeterDigits::Four));
    default:
      return QString::fromStdString(meterEngineeringText(value, 0, "Hz", true, MeterDigits::Four));
  }
}

void mainmeter::show(Group g, bool all) {
  const SlowStats& s = stats_[static_cast<size_t>(g)];
  auto& l = labels_[static_cast<size_t>(g)];
  if (all) l[0]->setText(text(g, s.cur));
  l[1]->setText(text(g, s.min));
  l[2]->setText(text(g, s.max));
  l[3]->setText(text(g, s.avg));
}

void mainmeter::Ind(const SpectrumEngine& e) {
  const MainMeterReading r =
      readMainMeter(e, MinFreq->text().toStdString(), MaxFreq->text().toStdString(), sinxx());
  if (MinFreq->text().toStdString() != r.minText) MinFreq->setText(QString::fromStdString(r.minText));
  if (MaxFreq->text().toStdString() != r.maxText) MaxFreq->setText(QString::fromStdString(r.maxText));
  if (!r.signal) {
    for (auto& group : labels_) group[0]->setText("No signal");
    for (SlowStats& st : stats_) st.fresh = true;  // the next reading replaces the text
    return;
  }
  const uint32_t now = static_cast<uint32_t>(clock_.elapsed());
  const float level = static_cast<float>(std::log(r.amplitude) * 8.68588924407959);
  const float frequency = static_cast<float>(r.frequency);
  const float values[kGroups] = {r.amplitude, level, frequency > 0 ? 1 / frequency : 0, frequency};
  for (int g = 0; g < kGroups; ++g)
    show(static_cast<Group>(g), stats_[static_cast<size_t>(g)].add(values[g], now));
}

void mainmeter::closeEvent(QCloseEvent* event) {
  try {
    settings_.saveInt("Meters Positions", "MainComp Left", x());
    settings_.saveInt("Meters Positions", "MainComp Top", y());
  } catch (const std::exception& e) {
    onFault(e.what());
  }
  event->accept();
}

}  // namespace zorvik
