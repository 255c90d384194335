#include "spectrum/spectrum_window.h"

#include <QHBoxLayout>
#include <QMenu>
#include <QPointer>
#include <QSignalBlocker>

#include "analysis/analysis_frames.h"
#include "config/settings.h"
#include "control/timebase_control.h"
#include "core/eng_text.h"
#include "export/csv_text.h"
#include "export/packet_files.h"
#include "measure/main_meter_window.h"
#include "measure/thd_window.h"
#include "spectrum/spectrum_stage.h"
#include "ui/hot_key_dialog.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Spectrum";
const char* const kDbRanges[7] = {"10", "20", "30", "40", "50", "60", "70"};
}  // namespace

Spectrum::Spectrum(SettingsStore& settings, SpectrumStage& stage, PacketFiles& files, DeviceContext& main,
                   FileDialogs& dialogs, TimebaseControl* timebase, QWidget* parent)
    : AnalysisWindow(settings, main, dialogs, kSection, "SaveSpectrum", parent),
      stage_(stage),
      files_(files),
      timebase_(timebase) {
  setObjectName("Spectrum");
  setWindowTitle("Spectrum");
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
  for (QWidget* w :
       std::initializer_list<QWidget*>{volts_, decibels_, DBdiap, Normir, DCfreq, WindowFunction, Doubled})
    controls->addWidget(w);
  if (timebase_) {
    SampleMemoDepth = new QComboBox(this);
    SampleMemoDepth->setObjectName("SampleMemoDepth");
    SampleMemoDepth->setToolTip("amount of samples, requested from scope");
    for (const char* entry : kMemoDepthEntries) SampleMemoDepth->addItem(entry);
    controls->addWidget(SampleMemoDepth);
    connect(SampleMemoDepth, &QComboBox::activated, this,
            [this](int i) { guarded([&] { timebase_->SampleMemoDepth_Click(i); }); });
    timebase_->onChange.add([self = QPointer<Spectrum>(this)] {
      if (self) self->showSettings();
    });
  }

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
  buildFrame(controls, readouts);

  QMenu* file = fileMenu();
  addCsvAction([this] { SaveToCSV(); });
  stage_.loadSettings(settings_);
  mainMeter_ = new mainmeter(settings_, stage_, this);
  thdMeter_ = new THDmeter(settings_, stage_, this);
  for (auto* m : std::initializer_list<QWidget*>{mainMeter_, thdMeter_}) m->hide();
  mainMeter_->onFault = thdMeter_->onFault = [this](const std::string& t) { onFault(t); };
  file->addAction("Setup Hot Key", this,
                  [this] { (new HotKey(settings_, this))->SetupDisplay(this, "Spectrumscope"); })
      ->setObjectName("SetupHotKey");
  HotKey::SetKey(this, "Spectrumscope", settings_);
  QMenu* meters = findChild<QMenuBar*>()->addMenu("Meters");
  meters->setObjectName("MetersMenu");
  meters->addAction("Max.freq", this, [this] { toggleMeter(mainMeter_); })->setObjectName("MeterMaxFrq");
  meters->addAction("THD", this, [this] { toggleMeter(thdMeter_); })->setObjectName("MeterTHD");

  // The interpolation of the plot is also the spectrum's: it asks for sin(x)/x of the computation.
  if (stage_.plot().interpolation != view_.style()[StyleKey::Interpolation])
    stage_.setInterpolation(view_.style()[StyleKey::Interpolation]);
  showSettings();
  restoreGeometry();

  connect(volts_, &QRadioButton::toggled, this, [this](bool) {
    guarded([this] {
      view_.clearMarkers();  // volts and dB don't share a marker
      view_.clearMemory();
      stage_.setDb(decibels_->isChecked());
    });
  });
  connect(DBdiap, &QComboBox::activated, this,
          [this](int i) { guarded([&] { stage_.setDbRangeIndex(i); }); });
  connect(Normir, &QCheckBox::clicked, this, [this](bool on) { guarded([&] { stage_.setNormalize(on); }); });
  connect(DCfreq, &QCheckBox::clicked, this, [this](bool on) { guarded([&] { stage_.setDCfreq(on); }); });
  connect(Doubled, &QCheckBox::clicked, this, [this](bool on) { guarded([&] { stage_.setDoubled(on); }); });
  connect(WindowFunction, &QComboBox::activated, this,
          [this](int i) { guarded([&] { stage_.setWindowFunction(i); }); });
  view_.onChange = [this] {
    const int interpolation = view_.style()[StyleKey::Interpolation];
    if (stage_.plot().interpolation != interpolation) {
      guarded([&] { stage_.setInterpolation(interpolation); });  // computes again, then draws
      return;
    }
    PlotSpectrum();
  };
  view_.onMemoKey = [this] {
    stage_.engine().resetHeldMax();
    guarded([this] { stage_.ComputeSpectrum(); });
  };
  stage_.onComputed = [this] { computed(); };
  stage_.onPlotChanged = [this] { PlotSpectrum(); };
  stage_.onSettingsMoved = [this] { showSettings(); };
  PlotSpectrum();
}

Spectrum::~Spectrum() {
  // The meters leave the stage's readers while its hooks still lead here.
  delete mainMeter_;
  delete thdMeter_;
  stage_.onComputed = stage_.onPlotChanged = stage_.onSettingsMoved = [] {};
}

SpectrumPlotSettings Spectrum::plotSettings() const {
  SpectrumPlotSettings plot = stage_.plot();
  plot.memo = view_.style().on(StyleKey::Memory);
  return plot;
}

PlotFrame Spectrum::frame() const {
  return spectrumFrame(stage_.engine(), plotSettings(), stage_.HaveData());
}

PlotTexts Spectrum::texts() const {
  return spectrumTexts(stage_.plot().dB);
}

void Spectrum::showCursor(double x, double y) {
  LabelFrq->setText(QString::fromStdString(frequencyText(x)));
  LabelAmp->setText(QString::fromStdString(amplitudeText(y, stage_.plot().dB)));
}

void Spectrum::showSettings() {
  const SpectrumPlotSettings& p = stage_.plot();
  const SpectrumSettings& s = stage_.settings();
  const QSignalBlocker b1(volts_), b2(decibels_), b3(DBdiap), b4(Normir), b5(DCfreq), b6(Doubled),
      b7(WindowFunction);
  (p.dB ? decibels_ : volts_)->setChecked(true);
  DBdiap->setCurrentIndex(stage_.dbRangeIndex());
  Normir->setChecked(p.normalize);
  DCfreq->setChecked(s.DCfreq);
  Doubled->setChecked(s.Doubled);
  WindowFunction->setCurrentIndex(s.WindowFunction);
  if (SampleMemoDepth) {
    const QSignalBlocker b(SampleMemoDepth);
    SampleMemoDepth->setCurrentIndex(timebase_->model().SampleMemoDepth);
  }
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

void Spectrum::computed() {
  // A new acquisition goes into the memory and the recorder; a setting's computation is only drawn.
  if (stage_.AcqCount() != lastAcquisition_) {
    lastAcquisition_ = stage_.AcqCount();
    acquired();
  } else {
    PlotSpectrum();
  }
  feedMeters();
}

void Spectrum::PlotSpectrum() {
  replot();
}

void Spectrum::showReadouts(const PlotFrame&) {
  const SpectrumEngine& e = stage_.engine();
  const bool valid = stage_.HaveData() && e.ScaleValid;
  OknoSamples->setText(stage_.HaveData() ? QString::number(stage_.recordLength()) : QString());
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
