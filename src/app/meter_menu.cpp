#include "app/meter_menu.h"

#include <QActionGroup>
#include <algorithm>

#include "config/settings.h"
#include "measure/meter_readings.h"
#include "measure/meter_window.h"

namespace zorvik {

namespace {
constexpr char kSection[] = "Meters";
}  // namespace

MeterMenu::MeterMenu(QMenu* menu, SettingsStore& settings, MeasurementPass& pass, QWidget* owner,
                     std::function<void()> replay, std::function<void(const std::string&)> fault)
    : QObject(owner),
      settings_(settings),
      pass_(pass),
      owner_(owner),
      replay_(std::move(replay)),
      fault_(std::move(fault)) {
  // The menu lists the meters by their index; a gap in the indexes is a separator.
  std::vector<MeterInfo> byIndex = meterTable();
  std::sort(byIndex.begin(), byIndex.end(),
            [](const MeterInfo& a, const MeterInfo& b) { return a.meter < b.meter; });
  int previous = -1;
  for (const MeterInfo& m : byIndex) {
    const int index = static_cast<int>(m.meter);
    if (previous >= 0 && index > previous + 1) menu->addSeparator();
    previous = index;
    QAction* a = menu->addAction(m.caption);
    a->setObjectName(QString("Meters_%1").arg(index));
    a->setCheckable(true);
    connect(a, &QAction::triggered, this, [this, index] { Meters_Click(index); });
    items_[m.meter] = a;
  }
  menu->addSeparator();
  MeasureOptions& o = pass_.options;
  radio(menu, "meas.level by", "byLevel", {"screen center", "peaks center", "rails center", "trigger level"},
        o.byLevel, [this](int i) {
          pass_.options.byLevel = i;
          saveMeasureOptions(settings_, pass_.options);
        });
  radio(menu, "polarity", "MeterPolarity", {"positive (from rises)", "negative (from falls)"},
        o.negativePolarity ? 1 : 0, [this](int i) {
          pass_.options.negativePolarity = i == 1;
          saveMeasureOptions(settings_, pass_.options);
        });
  radio(menu, "Levels", "RiseFallLevels", {"10%-90%", "20%-80%"}, o.level2080 ? 1 : 0, [this](int i) {
    pass_.options.level2080 = i == 1;
    saveMeasureOptions(settings_, pass_.options);
  });
  pass_.onMeasured = [this](const SegmentData& s, int n, const MeasureInputs& in) { feed(s, n, in); };
}

MeterMenu::~MeterMenu() {
  pass_.onMeasured = nullptr;
}

void MeterMenu::radio(QMenu* parent, const char* title, const char* object,
                      const std::vector<const char*>& captions, int checked,
                      std::function<void(int)> chosen) {
  QMenu* sub = parent->addMenu(title);
  sub->setObjectName(object);
  auto* group = new QActionGroup(sub);
  for (size_t i = 0; i < captions.size(); ++i) {
    QAction* a = sub->addAction(captions[i]);
    a->setObjectName(QString("%1_%2").arg(object).arg(i));
    a->setCheckable(true);
    a->setChecked(static_cast<int>(i) == checked);
    group->addAction(a);
    connect(a, &QAction::triggered, this, [this, chosen, i] {
      try {
        chosen(static_cast<int>(i));
        replay_();
      } catch (const std::exception& e) {
        fault_(e.what());
      }
    });
  }
}

unimeter* MeterMenu::meter(Meter m) const {
  auto it = meters_.find(m);
  return it == meters_.end() ? nullptr : it->second;
}

void MeterMenu::restore() {
  const std::string on = settings_.getText(kSection, "On");
  for (char c : on) {
    const int index = static_cast<unsigned char>(c) - 48;
    for (const MeterInfo& m : meterTable())
      if (static_cast<int>(m.meter) == index && !meter(m.meter) && MeterOpenClose(m.meter, false))
        items_[m.meter]->setChecked(true);
  }
  if (!meters_.empty()) replay_();
}

void MeterMenu::Meters_Click(int index) {
  for (const MeterInfo& m : meterTable()) {
    if (static_cast<int>(m.meter) != index) continue;
    QAction* item = items_[m.meter];
    // The item's own click has toggled the mark already.
    const bool open = item->isChecked();
    try {
      item->setChecked(MeterOpenClose(m.meter, !open));
      saveOn();
      if (item->isChecked()) replay_();
    } catch (const std::exception& e) {
      fault_(e.what());
    }
    return;
  }
}

bool MeterMenu::MeterOpenClose(Meter m, bool close) {
  if (close) {
    if (unimeter* w = meter(m)) {
      w->closeQuietly();
      w->deleteLater();
    }
    meters_.erase(m);
    pass_.open.erase(m);
    return false;
  }
  if (meter(m)) return true;
  const MeterInfo& info = meterInfo(m);
  auto* w = new unimeter(settings_, info.caption, owner_);
  w->onFault = fault_;
  const std::string caption = info.caption;
  w->onClosedByUser = [this, caption] { UnloadMeter(caption); };
  meters_[m] = w;
  pass_.open.insert(m);
  w->Stp(info.mnemonic);
  return true;
}

void MeterMenu::UnloadMeter(const std::string& caption) {
  for (const MeterInfo& m : meterTable()) {
    if (!caption.empty() && caption != m.caption) continue;
    if (unimeter* w = meter(m.meter)) {
      if (w->isVisible()) w->closeQuietly();
      w->deleteLater();
    }
    meters_.erase(m.meter);
    pass_.open.erase(m.meter);
    items_[m.meter]->setChecked(false);
  }
  try {
    saveOn();
  } catch (const std::exception& e) {
    fault_(e.what());
  }
}

void MeterMenu::closeAll() {
  saveOn();
  for (auto& [m, w] : meters_) w->closeQuietly();
}

void MeterMenu::saveOn() {
  std::string on;
  for (const auto& [m, item] : items_)
    if (item->isChecked()) on += static_cast<char>(static_cast<int>(m) + 48);
  settings_.SaveSettingValue(kSection, "On", on);
}

void MeterMenu::feed(const SegmentData& segment, int n, const MeasureInputs& in) {
  const MeterContext ctx{segment.isHiRes, in.FullScaleVolts, in.ZeroVolts, in.SamplePeriod, n};
  // In the order of the table: volts first, then rails, timing and edges.
  for (const MeterInfo& info : meterTable()) {
    unimeter* w = meter(info.meter);
    if (!w) continue;
    const MeterReading r = readMeter(info.meter, pass_.calc(), pass_.timing(), ctx);
    if (info.fixedFormat)
      w->IndF(info.unit, static_cast<float>(r.value), r.picture, r.status);
    else
      w->Ind(r.detail, info.unit, static_cast<float>(r.value), static_cast<float>(r.resolution), r.status);
  }
}

}  // namespace zorvik
