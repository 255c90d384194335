#include "spectrum/spectrum_stage.h"

#include <algorithm>

#include "config/settings.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Spectrum";
constexpr int kDbRanges[7] = {10, 20, 30, 40, 50, 60, 70};
constexpr int kRectangular = 0, kHamming = 1;
}  // namespace

void SpectrumStage::loadSettings(SettingsStore& store) {
  store_ = &store;
  plot_.dB = store.getInt(kSection, "VertScale") == 1;
  dbRangeIndex_ = std::clamp(store.getInt(kSection, "DBdiap"), 0, 6);
  plot_.dBRange = kDbRanges[dbRangeIndex_];
  plot_.normalize = store.getInt(kSection, "Normalize") != 0;
  plot_.interpolation = std::clamp(store.getInt(kSection, "Interpolation1"), 0, kColumnInterpolations - 1);
  plot_.interpolationPoints = std::clamp(store.getInt(kSection, "InterpolationPoints1"), 1, 8);
  settings_.DCfreq = store.getInt(kSection, "DC") != 0;
  settings_.Doubled = store.getInt(kSection, "Double") != 0;
  settings_.WindowFunction = std::clamp(store.getInt(kSection, "Window function"), 0, 6);
  mainMeterSinxx_ = store.getInt("Meters", "InterpolationMaxFind") != 0;
}

void SpectrumStage::store(const char* section, const char* name, long long value) {
  if (store_) store_->saveInt(section, name, value);
}

void SpectrumStage::setDb(bool on) {
  plot_.dB = on;
  store(kSection, "VertScale", on ? 1 : 0);
  onPlotChanged();
}

void SpectrumStage::setDbRangeIndex(int index) {
  dbRangeIndex_ = std::clamp(index, 0, 6);
  plot_.dBRange = kDbRanges[dbRangeIndex_];
  store(kSection, "DBdiap", dbRangeIndex_);
  onPlotChanged();
}

void SpectrumStage::setNormalize(bool on) {
  plot_.normalize = on;
  store(kSection, "Normalize", on ? 1 : 0);
  computationChanged();
}

void SpectrumStage::setDCfreq(bool on) {
  settings_.DCfreq = on;
  store(kSection, "DC", on ? 1 : 0);
  computationChanged();
}

void SpectrumStage::setDoubled(bool on) {
  settings_.Doubled = on;
  store(kSection, "Double", on ? 1 : 0);
  computationChanged();
}

void SpectrumStage::setWindowFunction(int index) {
  settings_.WindowFunction = std::clamp(index, 0, 6);
  store(kSection, "Window function", settings_.WindowFunction);
  computationChanged();
}

void SpectrumStage::setInterpolation(int index) {
  plot_.interpolation = std::clamp(index, 0, kColumnInterpolations - 1);
  store(kSection, "Interpolation1", plot_.interpolation);
  ComputeSpectrum();
}

void SpectrumStage::setMainMeterSinxx(bool on) {
  mainMeterSinxx_ = on;
  store("Meters", "InterpolationMaxFind", on ? 1 : 0);
}

void SpectrumStage::setReaderOpen(Reader reader, bool open) {
  open_[static_cast<size_t>(reader)] = open;
}

bool SpectrumStage::refinePeak() const {
  return (plot_.interpolation != 0 && plot_.normalize) || readerOpen(Reader::Thd);
}

bool SpectrumStage::sinxxWanted() const {
  return plot_.interpolation != 0 || (readerOpen(Reader::MainMeter) && mainMeterSinxx_) ||
         readerOpen(Reader::Thd);
}

void SpectrumStage::applyReaderRules() {
  settings_.refinePeak = refinePeak();
  if (sinxxWanted() && settings_.WindowFunction == kRectangular) {
    // Moved before the store: a store that fails is reported once, not with every packet.
    settings_.WindowFunction = kHamming;
    engine_.resetHeldMax();
    onSettingsMoved();
    store(kSection, "Window function", kHamming);
  }
}

void SpectrumStage::computationChanged() {
  engine_.resetHeldMax();
  ComputeSpectrum();
}

void SpectrumStage::spectrum(const SegmentData& segment) {
  if (visible()) {
    samples_.assign(segment.bytes.data(), segment.bytes.size());
    const Scale s = scale_();
    input_ = {samples_,       segment.isHiRes,  segment.isPeak, segment.oneCharSample,
              s.SamplePeriod, s.FullScaleVolts, s.ZeroVolts};
    haveData_ = true;
    ++acqCount_;
    ComputeSpectrum();
  }
  next().spectrum(segment);
}

void SpectrumStage::ComputeSpectrum() {
  applyReaderRules();
  if (!haveData_) return;
  input_.samples = samples_;
  engine_.ComputeSpectrum(input_, settings_);
  onComputed();
}

}  // namespace zorvik
