#include "app/spectrum_window.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "config/settings.h"
#include "export/csv_text.h"
#include "export/packet_files.h"
#include "measure/eng_text.h"
#include "spectrum/spectrum_stage.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Spectrum";
const int kDbRanges[7] = {10, 20, 30, 40, 50, 60, 70};
QString q(const std::string& s) { return QString::fromStdString(s); }
}  // namespace

SpectrumPlot::SpectrumPlot(const SpectrumStage& stage, QWidget* parent) : QWidget(parent), stage_(stage) {
  setObjectName("SpectrumDisplay");
  setFixedSize(sizeHint());
  setMouseTracking(true);
}

void SpectrumPlot::setPicture(const std::vector<float>& rows, const SpectrumScale& scale, bool dB, bool valid) {
  rows_ = rows;
  scale_ = scale;
  dB_ = dB;
  valid_ = valid;
  update();
}

void SpectrumPlot::paintEvent(QPaintEvent*) {
  QPainter p(this);
  p.fillRect(rect(), Qt::black);
  // The grid of the main display: olive division lines, ten across and eight high.
  p.setPen(QColor(128, 128, 0));
  for (int i = 0; i <= 10; ++i) p.drawLine(kMargin + i * kWidth / 10, kMargin, kMargin + i * kWidth / 10, kMargin + kHeight);
  for (int i = 0; i <= 8; ++i) p.drawLine(kMargin, kMargin + i * kHeight / 8, kMargin + kWidth, kMargin + i * kHeight / 8);
  if (!valid_) return;
  p.setRenderHint(QPainter::Antialiasing, false);
  p.setPen(QColor(0, 255, 0));
  QPolygonF line;
  for (size_t x = 0; x < rows_.size(); ++x) {
    if (rows_[x] == kEmptyColumn) continue;
    line << QPointF(kMargin + static_cast<double>(x), kMargin + std::clamp<double>(rows_[x], 0, kHeight));
  }
  p.drawPolyline(line);
  p.setPen(Qt::white);
  const auto amp = [this](float v) { return q(dB_ ? amplitudeText(v, true).substr(0, amplitudeText(v, true).find(" /")) : amplitudeText(v, false)); };
  p.drawText(kMargin + 2, kMargin + 12, amp(scale_.TopAmp));
  p.drawText(kMargin + 2, kMargin + kHeight - 4, amp(scale_.BottomAmp));
  p.drawText(QRect(kMargin, kMargin + kHeight - 16, kWidth - 2, 14), Qt::AlignRight,
             q(frequencyText(scale_.FreqLeft + scale_.FreqSpan)));
}

void SpectrumPlot::mouseMoveEvent(QMouseEvent* event) {
  if (!onCursor || !valid_) return;
  const QPointF at = event->position();
  const double x = std::clamp(at.x() - kMargin, 0.0, static_cast<double>(kWidth - 1));
  const double y = std::clamp(at.y() - kMargin, 0.0, static_cast<double>(kHeight));
  const double hz = scale_.FreqLeft + x * scale_.FreqSpan / (kWidth - 1);
  const double value = scale_.TopAmp - y * (scale_.TopAmp - scale_.BottomAmp) / kHeight;
  onCursor(q(frequencyText(hz)), q(amplitudeText(value, dB_)));
}

Spectrum::Spectrum(SettingsStore& settings, SpectrumStage& stage, PacketFiles& files, QWidget* parent)
    : QWidget(parent, Qt::Window), settings_(settings), stage_(stage), files_(files) {
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
  menuKey->setMenu(menu);
  for (QWidget* w : std::initializer_list<QWidget*>{volts_, decibels_, DBdiap, Normir, DCfreq, WindowFunction, Doubled,
                                                    Interpolation, menuKey})
    controls->addWidget(w);
  controls->addStretch(1);
  column->addLayout(controls);
  display_ = new SpectrumPlot(stage_, this);
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
  display_->onCursor = [this](const QString& f, const QString& a) {
    LabelFrq->setText(f);
    LabelAmp->setText(a);
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
    stage_.engine().resetHeldMax();
    PlotSpectrum();
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
    PlotSpectrum();
  });
  stage_.onComputed = [this] { PlotSpectrum(); };
}

Spectrum::~Spectrum() { stage_.onComputed = [] {}; }

void Spectrum::loadSettings() {
  plot_.dB = settings_.getInt(kSection, "VertScale", 0) == 1;
  const int range = std::clamp(settings_.getInt(kSection, "DBdiap", 4), 0, 6);
  plot_.dBRange = kDbRanges[range];
  plot_.normalize = settings_.getInt(kSection, "Normalize", 0) != 0;
  plot_.interpolation = std::clamp(settings_.getInt(kSection, "Interpolation1", 0), 0, 2);
  plot_.interpolationPoints = std::clamp(settings_.getInt(kSection, "InterpolationPoints1", 3), 1, 8);
  stage_.settings.DCfreq = settings_.getInt(kSection, "DC", 0) != 0;
  stage_.settings.Doubled = settings_.getInt(kSection, "Double", 0) != 0;
  stage_.settings.WindowFunction = std::clamp(settings_.getInt(kSection, "Window function", 0), 0, 6);
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

void Spectrum::store(const char* name, long long value) {
  try {
    settings_.saveInt(kSection, name, value);
  } catch (const std::exception& e) {
    onFault(e.what());
  }
}

void Spectrum::computationChanged() {
  stage_.engine().resetHeldMax();
  stage_.ComputeSpectrum();
}

void Spectrum::PlotSpectrum() {
  // Interpolation makes no sense with the leakage of the rectangular window.
  if (plot_.interpolation != 0 && stage_.settings.WindowFunction == 0) {
    stage_.settings.WindowFunction = 1;
    {
      QSignalBlocker b(WindowFunction);
      WindowFunction->setCurrentIndex(1);
    }
    store("Window function", 1);
    stage_.ComputeSpectrum();  // draws again through onComputed
    return;
  }
  plot_.memo = memoOn();
  const SpectrumEngine& e = stage_.engine();
  const SpectrumScale scale = SetVertScale(e, plot_);
  const bool valid = stage_.HaveData() && e.ScaleValid;
  display_->setPicture(valid ? spectrumColumns(e, scale, plot_, SpectrumPlot::kWidth, SpectrumPlot::kHeight)
                             : std::vector<float>{},
                       scale, plot_.dB, valid);
  OknoSamples->setText(QString("%1 bins").arg(e.SpecBins));
  peak_->setText(valid ? q(frequencyText(e.SpecBins > 0 ? e.PeakBin * e.MaxFreq / e.SpecBins : 0) + "  " +
                           engineeringText(e.PeakAmp, "V"))
                       : QString());
}

void Spectrum::SaveToCSV() {
  try {
    const SpectrumEngine& e = stage_.engine();
    files_.saveCsv([&e] { return spectrumCsvText(e.SpecAmp, e.SpecBins); }, "Last spectrum data saved:");
  } catch (const std::exception& ex) {
    onFault(ex.what());
  }
}

void Spectrum::closeEvent(QCloseEvent* event) {
  store("Left", x());
  store("Top", y());
  store("Width", width());
  store("Height", height());
  event->accept();
  onClosed();
}

}  // namespace zorvik
