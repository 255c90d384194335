#pragma once
#include <QAction>
#include <QMenu>
#include <QObject>
#include <functional>
#include <map>
#include <string>

#include "measure/measurement_pass.h"

namespace zorvik {

class SettingsStore;
class unimeter;

// The Meters menu of the main window: the nineteen meters, each opened and closed by its item, the
// choices of the timing meters, and the feeding of the open meters after each measurement pass.
class MeterMenu : public QObject {
  Q_OBJECT
 public:
  // replay: the last packet through the packet entry again, so a meter that opens shows a value.
  MeterMenu(QMenu* menu, SettingsStore& settings, MeasurementPass& pass, QWidget* owner,
            std::function<void()> replay, std::function<void(const std::string&)> fault);
  ~MeterMenu() override;

  // The meters named by "Meters/On" at start-up.
  void restore();
  void Meters_Click(int index);
  // Closes the meter of this caption, or every meter for an empty caption, and removes the check marks.
  void UnloadMeter(const std::string& caption);
  // The end of the program: "On" from the check marks, and each meter's place stored.
  void closeAll();
  // "Meters/On" from the check marks.
  void saveOn();
  unimeter* meter(Meter m) const;

 private:
  bool MeterOpenClose(Meter m, bool close);
  void feed(const SegmentData& segment, int n, const MeasureInputs& in);
  void radio(QMenu* parent, const char* title, const char* object, const std::vector<const char*>& captions,
             int checked, std::function<void(int)> chosen);

  SettingsStore& settings_;
  MeasurementPass& pass_;
  QWidget* owner_;
  std::function<void()> replay_;
  std::function<void(const std::string&)> fault_;
  std::map<Meter, QAction*> items_;
  std::map<Meter, unimeter*> meters_;
};

}  // namespace zorvik
