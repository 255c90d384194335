#include "spectrum/spectrum_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "config/settings.h"
#include "core/eng_text.h"
#include "export/csv_text.h"
#include "export/packet_files.h"
#include "measure/main_meter_window.h"
#include "measure/thd_window.h"
#include "spectrum/spectrum_stage.h"
#include "ui/hot_key_dialog.h"
#include "ui/value_plot.h"
#include "ui/window_place_qt.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Spectrum";
const char* const kDbRanges[7] = {"10", "20", "30", "40", "50", "60", "70"};
}  // namespace

Spectrum::Spectrum(SettingsStore& settings, SpectrumStage& stage, PacketFiles& files, QWidget* parent)
    : AnalysisWindow(settings, kSection, parent), stage_(stage), files_(files) {
  setObjectName("Spectrum");
  setWindowTitle("Spectrum");
  auto* column = new QVBoxLayout(this);
  auto* controls = new QHBoxLayout;
  volts_ = new QRadioButton("V", this);
  decibels_ = new QRadioButton("dB", this);
  volts_->setObjectName("TypeAmp_0");
  decibels_->setObjectName("TypeAmp_1");
  DBdiap = new QComboBox(this);
  DBdiap->setObjectName("DBdiap");
  for (const char* r : kDbRanges) DBdiap->addItem(r);
  Normir = new QCheckBox("Norm. to max", this);
  Normir->setObjectName("Normir");
  Normir->setToolTip("Normalise amp. scale");
  DCfreq = new QCheckBox("DC", this);
  DCfreq->setObjectName("DCfreq");
  WindowFunction = new QComboBox(this);
  WindowFunction->setObjectName("WindowFunction");
  for (const char* w : kWindowFunctions) WindowFunction->addItem(w);
  Doubled = new QCheckBox("x2", this);
  Doubled->setObjectName("Doubled");
  Doubled->setToolTip("Doubling saples number");
  Interpolation = new QComboBox(this);
  Interpolation->setObjectName("Interpol1");
  for (const char* i : {"None", "Sin(x)/x", "Lanczos"}) Interpolation->addItem(i);
  auto* menuKey = new QPushButton("File", this);
  auto* menu = new QMenu(menuKey);
  menu->addAction("Save to CSV-file", this, [this] { SaveToCSV(); })->setObjectName("SaveToCSV");
  stage_.loadSettings(settings_);
  mainMeter_ = new mainmeter(settings_, stage_, this);
  thdMeter_ = new THDmeter(settings_, stage_, this);
  for (auto* m : std::initializer_list<QWidget*>{mainMeter_, thdMeter_}) m->hide();
  mainMeter_->onFault = thdMeter_->onFault = [this](const std::string& t) { onFault(t); };
  menu->addAction("Max.freq", this, [this] { toggleMeter(mainMeter_); })->setObjectName("MeterMaxFrq");
  menu->addAction("THD", this, [this] { toggleMeter(thdMeter_); })->setObjectName("MeterTHD");
  menu->addAction("Setup Hot Key", this,
                  [this] { (new HotKey(settings_, this))->SetupDisplay(this, "Spectrumscope"); })
      ->setObjectName("SetupHotKey");
  HotKey::SetKey(this, "Spectrumscope", settings_);
  menuKey->setMenu(menu);
  for (QWidget* w : std::initializer_list<QWidget*>{volts_, decibels_, DBdiap, Normir, DCfreq, WindowFunction,
                                                    Doubled, Interpolation, menuKey})
    controls->addWidget(w);
  controls->addStretch(1);
  column->addLayout(controls);
  display_ = new ValuePlot("SpectrumDisplay", this);
  column->addWidget(display_);
  auto* readouts = new QHBoxLayout;
  OknoSamples = new QLabel(this);
  OknoSamples->setObjectName("OknoSamples");
  OknoSamples->setToolTip("Samples in current acqusion mode");
  peak_ = new QLabel(this);
  peak_->setObjectName("SpectrumPeak");
  LabelFrq = new QLabel(this);
  LabelFrq->setObjectName("LabelFrq");
  LabelAmp = new QLabel(this);
  LabelAmp->setObjectName("LabelAmp");
  for (QLabel* l : {OknoSamples, peak_, LabelFrq, LabelAmp}) readouts->addWidget(l, 1);
  column->addLayout(readouts);
  display_->onCursor = [this](double across, double down) {
    LabelFrq->setText(QString::fromStdString(frequencyText(scale_.FreqLeft + across * scale_.FreqSpan)));
    const double amplitude = scale_.TopAmp - down * (scale_.TopAmp - scale_.BottomAmp);
    LabelAmp->setText(QString::fromStdString(amplitudeText(amplitude, stage_.plot().dB)));
  };
  showSettings();
  const int left = settings_.getInt(kSection, "Left", -1), top = settings_.getInt(kSection, "Top", -1);
  placeOpenedWindow(this, left >= 0 && top >= 0 ? std::optional<QPoint>(QPoint(left, top)) : std::nullopt);

  connect(volts_, &QRadioButton::toggled, this,
          [this](bool) { guarded([this] { stage_.setDb(decibels_->isChecked()); }); });
  connect(DBdiap, &QComboBox::activated, this,
          [this](int i) { guarded([&] { stage_.setDbRangeIndex(i); }); });
  connect(Normir, &QCheckBox::clicked, this, [this](bool on) { guarded([&] { stage_.setNormalize(on); }); });
  connect(DCfreq, &QCheckBox::clicked, this, [this](bool on) { guarded([&] { stage_.setDCfreq(on); }); });
  connect(Doubled, &QCheckBox::clicked, this, [this](bool on) { guarded([&] { stage_.setDoubled(on); }); });
  connect(WindowFunction, &QComboBox::activated, this,
          [this](int i) { guarded([&] { stage_.setWindowFunction(i); }); });
  connect(Interpolation, &QComboBox::activated, this,
          [this](int i) { guarded([&] { stage_.setInterpolation(i); }); });
  stage_.onComputed = [this] {
    PlotSpectrum();
    feedMeters();
  };
  stage_.onPlotChanged = [this] { PlotSpectrum(); };
  stage_.onSettingsMoved = [this] { showSettings(); };
}

Spectrum::~Spectrum() {
  // The meters leave the stage's readers while its hooks still lead here.
  delete mainMeter_;
  delete thdMeter_;
  stage_.onComputed = stage_.onPlotChanged = stage_.onSettingsMoved = [] {};
}

const SpectrumPlotSettings& Spectrum::plotSettings() const {
  return stage_.plot();
}

void Spectrum::showSettings() {
  const SpectrumPlotSettings& p = stage_.plot();
  const SpectrumSettings& s = stage_.settings();
  const QSignalBlocker b1(volts_), b2(decibels_), b3(DBdiap), b4(Normir), b5(DCfreq), b6(Doubled),
      b7(WindowFunction), b8(Interpolation);
  (p.dB ? decibels_ : volts_)->setChecked(true);
  DBdiap->setCurrentIndex(stage_.dbRangeIndex());
  Normir->setChecked(p.normalize);
  DCfreq->setChecked(s.DCfreq);
  Doubled->setChecked(s.Doubled);
  WindowFunction->setCurrentIndex(s.WindowFunction);
  Interpolation->setCurrentIndex(p.interpolation);
}

void Spectrum::toggleMeter(QWidget* meter) {
  guarded([&] {
    meter->setVisible(!meter->isVisible());
    stage_.ComputeSpectrum();
  });
}

void Spectrum::feedMeters() {
  if (!stage_.HaveData()) return;
  if (mainMeter_->isVisible()) mainMeter_->Ind(stage_.engine());
  if (thdMeter_->isVisible()) thdMeter_->Ind(stage_.engine(), stage_.samplePeriod());
}

void Spectrum::PlotSpectrum() {
  SpectrumPlotSettings plot = stage_.plot();
  plot.memo = memoOn();
  const SpectrumEngine& e = stage_.engine();
  const SpectrumScale scale = scale_ = SetVertScale(e, plot);
  const bool valid = stage_.HaveData() && e.ScaleValid;
  // The scale at the corners: dB without its volts. Engineering texts are the program's own UTF-8 (their µ).
  auto amp = [&plot](float v) {
    const std::string t = amplitudeText(v, plot.dB);
    return QString::fromStdString(t.substr(0, t.find(" /")));
  };
  display_->setPicture(
      valid ? spectrumColumns(e, scale, plot, ValuePlot::kWidth, ValuePlot::kHeight) : std::vector<float>{},
      {amp(scale.TopAmp), amp(scale.BottomAmp), QString(),
       QString::fromStdString(frequencyText(scale.FreqLeft + scale.FreqSpan))},
      valid);
  OknoSamples->setText(QString("%1 bins").arg(e.SpecBins));
  const double peakHz = e.SpecBins > 0 ? e.PeakBin * e.MaxFreq / e.SpecBins : 0;
  peak_->setText(valid
                     ? QString::fromStdString(frequencyText(peakHz) + "  " + engineeringText(e.PeakAmp, "V"))
                     : QString());
}

void Spectrum::SaveToCSV() {
  guarded([this] {
    const SpectrumEngine& e = stage_.engine();
    files_.saveCsv([&e] { return spectrumCsvText(e.SpecAmp, e.SpecBins); }, "Last spectrum data saved:");
  });
}

}  // namespace zorvik
