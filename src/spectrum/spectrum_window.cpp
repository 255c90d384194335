#include "spectrum/spectrum_window.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "ui/hot_key_dialog.h"
#include "measure/main_meter_window.h"
#include "measure/thd_window.h"
#include "ui/value_plot.h"
#include "config/settings.h"
#include "export/csv_text.h"
#include "export/packet_files.h"
#include "core/eng_text.h"
#include "spectrum/spectrum_stage.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Spectrum";
const int kDbRanges[7] = {10, 20, 30, 40, 50, 60, 70};
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
  for (int r : kDbRanges) DBdiap->addItem(QString::number(r));
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
  mainMeter_ = new mainmeter(settings_, this);
  thdMeter_ = new THDmeter(settings_, this);
  for (auto* m : std::initializer_list<QWidget*>{mainMeter_, thdMeter_}) m->hide();
  mainMeter_->rectangularWindow = thdMeter_->rectangularWindow = [this] { return stage_.settings.WindowFunction == 0; };
  mainMeter_->useHamming = thdMeter_->useHamming = [this] { useHamming(); };
  mainMeter_->onFault = thdMeter_->onFault = [this](const std::string& t) { onFault(t); };
  menu->addAction("Max.freq", this, [this] { toggleMeter(mainMeter_); })->setObjectName("MeterMaxFrq");
  menu->addAction("THD", this, [this] { toggleMeter(thdMeter_); })->setObjectName("MeterTHD");
  menu->addAction("Setup Hot Key", this, [this] { (new HotKey(settings_, this))->SetupDisplay(this, "Spectrumscope"); })
      ->setObjectName("SetupHotKey");
  HotKey::SetKey(this, "Spectrumscope", settings_);
  menuKey->setMenu(menu);
  for (QWidget* w : std::initializer_list<QWidget*>{volts_, decibels_, DBdiap, Normir, DCfreq, WindowFunction, Doubled,
                                                    Interpolation, menuKey})
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
    LabelAmp->setText(QString::fromStdString(amplitudeText(amplitude, plot_.dB)));
  };
  loadSettings();

  connect(volts_, &QRadioButton::toggled, this, [this](bool) {
    plot_.dB = decibels_->isChecked();
    store("VertScale", plot_.dB ? 1 : 0);
    PlotSpectrum();
  });
  connect(DBdiap, &QComboBox::activated, this, [this](int i) {
    plot_.dBRange = kDbRanges[std::clamp(i, 0, 6)];
    store("DBdiap", i);
    PlotSpectrum();
  });
  connect(Normir, &QCheckBox::clicked, this, [this](bool on) {
    plot_.normalize = on;
    store("Normalize", on ? 1 : 0);
    computationChanged();
  });
  connect(DCfreq, &QCheckBox::clicked, this, [this](bool on) {
    stage_.settings.DCfreq = on;
    store("DC", on ? 1 : 0);
    computationChanged();
  });
  connect(Doubled, &QCheckBox::clicked, this, [this](bool on) {
    stage_.settings.Doubled = on;
    store("Double", on ? 1 : 0);
    computationChanged();
  });
  connect(WindowFunction, &QComboBox::activated, this, [this](int i) {
    stage_.settings.WindowFunction = i;
    store("Window function", i);
    computationChanged();
  });
  connect(Interpolation, &QComboBox::activated, this, [this](int i) {
    plot_.interpolation = i;
    store("Interpolation1", i);
    updateRefine();
    stage_.ComputeSpectrum();
  });
  updateRefine();
  stage_.onComputed = [this] {
    PlotSpectrum();
    feedMeters();
  };
}

Spectrum::~Spectrum() { stage_.onComputed = [] {}; }

void Spectrum::loadSettings() {
  plot_.dB = settings_.getInt(kSection, "VertScale") == 1;
  const int range = std::clamp(settings_.getInt(kSection, "DBdiap"), 0, 6);
  plot_.dBRange = kDbRanges[range];
  plot_.normalize = settings_.getInt(kSection, "Normalize") != 0;
  plot_.interpolation = std::clamp(settings_.getInt(kSection, "Interpolation1"), 0, 2);
  plot_.interpolationPoints = std::clamp(settings_.getInt(kSection, "InterpolationPoints1"), 1, 8);
  stage_.settings.DCfreq = settings_.getInt(kSection, "DC") != 0;
  stage_.settings.Doubled = settings_.getInt(kSection, "Double") != 0;
  stage_.settings.WindowFunction = std::clamp(settings_.getInt(kSection, "Window function"), 0, 6);
  (plot_.dB ? decibels_ : volts_)->setChecked(true);
  DBdiap->setCurrentIndex(range);
  Normir->setChecked(plot_.normalize);
  DCfreq->setChecked(stage_.settings.DCfreq);
  Doubled->setChecked(stage_.settings.Doubled);
  WindowFunction->setCurrentIndex(stage_.settings.WindowFunction);
  Interpolation->setCurrentIndex(plot_.interpolation);
  const int left = settings_.getInt(kSection, "Left", -1), top = settings_.getInt(kSection, "Top", -1);
  if (left >= 0 && top >= 0) move(left, top);
}


void Spectrum::computationChanged() {
  stage_.engine().resetHeldMax();
  updateRefine();
  stage_.ComputeSpectrum();
}

void Spectrum::updateRefine() {
  stage_.settings.refinePeak = (plot_.interpolation != 0 && plot_.normalize) || (thdMeter_ && thdMeter_->isVisible());
}

void Spectrum::useHamming() {
  stage_.settings.WindowFunction = 1;
  QSignalBlocker b(WindowFunction);
  WindowFunction->setCurrentIndex(1);
  store("Window function", 1);
}

void Spectrum::toggleMeter(QWidget* meter) {
  meter->setVisible(!meter->isVisible());
  updateRefine();
  stage_.ComputeSpectrum();
}

void Spectrum::feedMeters() {
  if (!stage_.HaveData()) return;
  if (mainMeter_->isVisible()) mainMeter_->Ind(stage_.engine());
  if (thdMeter_->isVisible()) thdMeter_->Ind(stage_.engine(), stage_.samplePeriod());
}

void Spectrum::PlotSpectrum() {
  // Interpolation makes no sense with the leakage of the rectangular window.
  if (plot_.interpolation != 0 && stage_.settings.WindowFunction == 0) {
    useHamming();
    stage_.ComputeSpectrum();  // draws again through onComputed
    return;
  }
  plot_.memo = memoOn();
  const SpectrumEngine& e = stage_.engine();
  const SpectrumScale scale = scale_ = SetVertScale(e, plot_);
  const bool valid = stage_.HaveData() && e.ScaleValid;
  // The scale at the corners: dB without its volts. Engineering texts are the program's own UTF-8 (their µ).
  auto amp = [this](float v) {
    const std::string t = amplitudeText(v, plot_.dB);
    return QString::fromStdString(t.substr(0, t.find(" /")));
  };
  display_->setPicture(valid ? spectrumColumns(e, scale, plot_, ValuePlot::kWidth, ValuePlot::kHeight) : std::vector<float>{},
                       {amp(scale.TopAmp), amp(scale.BottomAmp), QString(),
                        QString::fromStdString(frequencyText(scale.FreqLeft + scale.FreqSpan))},
                       valid);
  OknoSamples->setText(QString("%1 bins").arg(e.SpecBins));
  const double peakHz = e.SpecBins > 0 ? e.PeakBin * e.MaxFreq / e.SpecBins : 0;
  peak_->setText(valid ? QString::fromStdString(frequencyText(peakHz) + "  " + engineeringText(e.PeakAmp, "V"))
                       : QString());
}

void Spectrum::SaveToCSV() {
  guarded([this] {
    const SpectrumEngine& e = stage_.engine();
    files_.saveCsv([&e] { return spectrumCsvText(e.SpecAmp, e.SpecBins); }, "Last spectrum data saved:");
  });
}

}  // namespace zorvik
