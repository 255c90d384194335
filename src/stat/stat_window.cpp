#include "stat/stat_window.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include "config/settings.h"
#include "core/eng_text.h"
#include "export/packet_files.h"
#include "spectrum/plot_columns.h"
#include "stat/stat_stage.h"
#include "ui/hot_key_dialog.h"
#include "ui/value_plot.h"
#include "ui/window_place_qt.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Stat";
}  // namespace

Stat::Stat(SettingsStore& settings, StatStage& stage, PacketFiles& files, QWidget* parent)
    : AnalysisWindow(settings, kSection, parent), stage_(stage), files_(files) {
  setObjectName("Stat");
  setWindowTitle("Statistic");
  auto* column = new QVBoxLayout(this);
  auto* controls = new QHBoxLayout;
  samples_ = new QRadioButton("smp", this);
  samples_->setObjectName("TypeAmp_0");
  percentKey_ = new QRadioButton("%", this);
  percentKey_->setObjectName("TypeAmp_1");
  Normir = new QCheckBox("Norm. to max", this);
  Normir->setObjectName("Normir");
  Normir->setToolTip("Normalise amp. scale");
  Interpolation = new QComboBox(this);
  Interpolation->setObjectName("Interpol1");
  for (const char* i : {"None", "Sin(x)/x", "Lanczos"}) Interpolation->addItem(i);
  auto* menuKey = new QPushButton("File", this);
  auto* menu = new QMenu(menuKey);
  menu->addAction("Save to CSV-file", this, [this] { SaveToCSV(); })->setObjectName("SaveToCSV");
  menu->addAction("Setup Hot Key", this,
                  [this] { (new HotKey(settings_, this))->SetupDisplay(this, "Statscope"); })
      ->setObjectName("SetupHotKey");
  HotKey::SetKey(this, "Statscope", settings_);
  menuKey->setMenu(menu);
  for (QWidget* w : std::initializer_list<QWidget*>{samples_, percentKey_, Normir, Interpolation, menuKey})
    controls->addWidget(w);
  controls->addStretch(1);
  column->addLayout(controls);
  display_ = new ValuePlot("StatWin", this);
  column->addWidget(display_);
  auto* readouts = new QHBoxLayout;
  peak_ = new QLabel(this);
  peak_->setObjectName("StatPeak");
  LabelLevel = new QLabel(this);
  LabelLevel->setObjectName("LabelLevel");
  LabelQTY = new QLabel(this);
  LabelQTY->setObjectName("LabelQTY");
  for (QLabel* l : {peak_, LabelLevel, LabelQTY}) readouts->addWidget(l, 1);
  column->addLayout(readouts);

  percent_ = settings_.getInt(kSection, "VertScale") == 1;
  normalize_ = settings_.getInt(kSection, "Normalize") != 0;
  interpolation_ = std::clamp(settings_.getInt(kSection, "Interpolation1"), 0, 2);
  interpolationPoints_ = std::clamp(settings_.getInt(kSection, "InterpolationPoints1"), 1, 8);
  (percent_ ? percentKey_ : samples_)->setChecked(true);
  Normir->setChecked(normalize_);
  Interpolation->setCurrentIndex(interpolation_);
  const int left = settings_.getInt(kSection, "Left", -1), top = settings_.getInt(kSection, "Top", -1);
  placeOpenedWindow(this, left >= 0 && top >= 0 ? std::optional<QPoint>(QPoint(left, top)) : std::nullopt);

  connect(samples_, &QRadioButton::toggled, this, [this](bool) {
    percent_ = percentKey_->isChecked();
    store("VertScale", percent_ ? 1 : 0);
    PlotHistogram();
  });
  connect(Normir, &QCheckBox::clicked, this, [this](bool on) {
    normalize_ = on;
    store("Normalize", on ? 1 : 0);
    stage_.engine().resetHeldMax();
    PlotHistogram();
  });
  connect(Interpolation, &QComboBox::activated, this, [this](int i) {
    interpolation_ = i;
    store("Interpolation1", i);
    PlotHistogram();
  });
  display_->onCursor = [this](double across, double down) {
    const HistogramEngine& h = stage_.engine();
    const double level = h.LevelLow + across * (h.LevelHigh - h.LevelLow);
    LabelLevel->setText(QString::fromStdString(engineeringText(level, "V")));
    LabelQTY->setText(quantityText(top_ * (1 - down)));
  };
  stage_.onBuilt = [this] { PlotHistogram(); };
}

Stat::~Stat() {
  stage_.onBuilt = [] {};
}

QString Stat::quantityText(double count) const {
  return QString::fromStdString(histogramQuantity(count, stage_.engine().HistSamples, percent_));
}

void Stat::PlotHistogram() {
  const HistogramEngine& h = stage_.engine();
  const double top = top_ = histogramTop(h, normalize_, memoOn());
  const bool valid = stage_.HaveData() && h.ScaleValid && top > 0;
  std::vector<float> rows;
  if (valid) {
    const std::vector<float> counts(h.HistCount.begin(), h.HistCount.end());
    const double span = h.LevelHigh - h.LevelLow;
    rows = plotColumns(counts, HistogramEngine::HistBins, {span / HistogramEngine::HistBins, span, top, 0},
                       false, interpolation_, interpolationPoints_, ValuePlot::kWidth, ValuePlot::kHeight);
  }
  // Engineering texts are the program's own UTF-8 (their µ), not device bytes.
  const QString low = QString::fromStdString(engineeringText(h.LevelLow, "V"));
  const QString high = QString::fromStdString(engineeringText(h.LevelHigh, "V"));
  display_->setPicture(std::move(rows), {quantityText(top), quantityText(0), low, high}, valid);
  const int mode = histogramModeBin(h);
  const double modeLevel = histogramLevel(h, mode);
  peak_->setText(valid ? QString::fromStdString(engineeringText(modeLevel, "V")) + "  " +
                             quantityText(h.HistCount[static_cast<size_t>(mode)])
                       : QString());
}

void Stat::SaveToCSV() {
  guarded([this] {
    const HistogramEngine& h = stage_.engine();
    files_.saveCsv([&h] { return histogramCsvText(h); }, "Last hystogramm data saved:");
  });
}

}  // namespace zorvik
