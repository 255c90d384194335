#include "stat/stat_window.h"

#include <QHBoxLayout>
#include <QMenu>

#include "analysis/analysis_frames.h"
#include "config/settings.h"
#include "core/eng_text.h"
#include "export/packet_files.h"
#include "stat/stat_stage.h"
#include "ui/hot_key_dialog.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Stat";
}  // namespace

Stat::Stat(SettingsStore& settings, StatStage& stage, PacketFiles& files, DeviceContext& main,
           FileDialogs& dialogs, QWidget* parent)
    : AnalysisWindow(settings, main, dialogs, kSection, "SaveStat", parent), stage_(stage), files_(files) {
  setObjectName("Stat");
  setWindowTitle("Statistic");
  auto* controls = new QHBoxLayout;
  samples_ = new QRadioButton("smp", this);
  samples_->setObjectName("TypeAmp_0");
  percentKey_ = new QRadioButton("%", this);
  percentKey_->setObjectName("TypeAmp_1");
  Normir = new QCheckBox("Norm. to max", this);
  Normir->setObjectName("Normir");
  Normir->setToolTip("Normalise amp. scale");
  for (QWidget* w : std::initializer_list<QWidget*>{samples_, percentKey_, Normir}) controls->addWidget(w);
  auto* readouts = new QHBoxLayout;
  peak_ = new QLabel(this);
  peak_->setObjectName("StatPeak");
  LabelLevel = new QLabel(this);
  LabelLevel->setObjectName("LabelLevel");
  LabelQTY = new QLabel(this);
  LabelQTY->setObjectName("LabelQTY");
  for (QLabel* l : {peak_, LabelLevel, LabelQTY}) readouts->addWidget(l, 1);
  buildFrame(controls, readouts);

  QMenu* file = fileMenu();
  addCsvAction([this] { SaveToCSV(); });
  file->addAction("Setup Hot Key", this,
                  [this] { (new HotKey(settings_, this))->SetupDisplay(this, "Statscope"); })
      ->setObjectName("SetupHotKey");
  HotKey::SetKey(this, "Statscope", settings_);

  percent_ = settings_.getInt(kSection, "VertScale") == 1;
  normalize_ = settings_.getInt(kSection, "Normalize") != 0;
  (percent_ ? percentKey_ : samples_)->setChecked(true);
  Normir->setChecked(normalize_);
  restoreGeometry();

  connect(samples_, &QRadioButton::toggled, this, [this](bool) {
    percent_ = percentKey_->isChecked();
    store("VertScale", percent_ ? 1 : 0);
    view_.clearMarkers();
    PlotHistogram();
  });
  connect(Normir, &QCheckBox::clicked, this, [this](bool on) {
    normalize_ = on;
    store("Normalize", on ? 1 : 0);
    stage_.engine().resetHeldMax();
    view_.clearMemory();
    view_.clearMarkers();
    PlotHistogram();
  });
  view_.onChange = [this] { PlotHistogram(); };
  view_.onMemoKey = [this] { stage_.engine().resetHeldMax(); };
  stage_.onBuilt = [this] { acquired(); };
  PlotHistogram();
}

Stat::~Stat() {
  stage_.onBuilt = [] {};
}

PlotFrame Stat::frame() const {
  return histogramFrame(stage_.engine(), normalize_, view_.style().on(StyleKey::Memory), stage_.HaveData());
}

PlotTexts Stat::texts() const {
  return histogramTexts(stage_.engine(), percent_);
}

QString Stat::quantityText(double count) const {
  return QString::fromStdString(histogramQuantity(count, stage_.engine().HistSamples, percent_));
}

void Stat::showCursor(double x, double y) {
  LabelLevel->setText(QString::fromStdString(engineeringText(x, "V")));
  LabelQTY->setText(quantityText(y));
}

void Stat::PlotHistogram() {
  replot();
}

void Stat::showReadouts(const PlotFrame& frame) {
  const HistogramEngine& h = stage_.engine();
  const bool valid = frame.valid;
  const int mode = histogramModeBin(h);
  peak_->setText(valid ? QString::fromStdString(engineeringText(histogramLevel(h, mode), "V")) + "  " +
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
