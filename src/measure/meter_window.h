#pragma once
#include <QElapsedTimer>
#include <QLabel>
#include <QToolButton>
#include <QWidget>
#include <functional>
#include <string>

#include "measure/meter_state.h"
#include "ui/paced_paint.h"

namespace zorvik {

class SettingsStore;

// unimeter: one quantity in large digits with its minimum, maximum and slow average below. Position,
// size, colours and average time are kept per quantity under its mnemonic.
class unimeter : public QWidget {
  Q_OBJECT
 public:
  unimeter(SettingsStore& settings, const QString& caption, QWidget* parent = nullptr);
  ~unimeter() override;

  // Reads position, colours, zoom and average time for the mnemonic, and shows the window.
  void Stp(const std::string& mnemonic);
  void Ind(bool detail, const std::string& unit, float value, float resolution, const std::string& status);
  void IndF(const std::string& unit, float value, const std::string& picture, const std::string& status);
  void ResetMeter();

  const std::string& mnemonic() const { return mnemonic_; }
  const MeterState& state() const { return state_; }
  // The window was closed by its frame (not by the menu): the main window removes the check mark.
  std::function<void()> onClosedByUser;
  // Stores position, zoom and colours; the menu closes the window without a call of onClosedByUser.
  void closeQuietly();
  // A setting that cannot be written: the owner shows the box.
  std::function<void(const std::string&)> onFault = [](const std::string&) {};

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showTexts();
  void saveLayout();
  void applyColours();
  void pickColour(const char* key);
  void buildMenus();
  QColor colour(const char* key) const;
  template <typename F>
  void guarded(F&& action) {
    try {
      action();
    } catch (const std::exception& e) {
      onFault(e.what());
    }
  }

  SettingsStore& settings_;
  std::string mnemonic_;
  MeterState state_;
  QElapsedTimer clock_;
  QLabel* CurVal = nullptr;
  QLabel* MinVal = nullptr;
  QLabel* MaxVal = nullptr;
  QLabel* AvgVal = nullptr;
  QToolButton* KeyReset = nullptr;
  QToolButton* StopKey = nullptr;
  int avgTimeIndex_ = 3;
  QSize reference_;
  int referenceBig_ = 0, referenceSmall_ = 0;
  bool quiet_ = false;
  // Every packet goes into the state; its texts are shown at the screen's rate at most.
  PacedPaint* paced_;
};

}  // namespace zorvik
