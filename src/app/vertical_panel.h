#pragma once
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QScrollBar>
#include <QWidget>

namespace zorvik {

class ChannelControl;

// The channel's controls beside the display: sensitivity, offset, coupling, filters and mode. It shows
// the channel's model and hands the user's actions to it.
class VerticalPanel : public QWidget {
  Q_OBJECT
 public:
  explicit VerticalPanel(ChannelControl& channel, QWidget* parent = nullptr);
  void refresh();

 private:
  QCheckBox* check(const char* name, const char* caption, const char* toolTip);

  ChannelControl& channel_;
  QComboBox* VoltDiv1 = nullptr;
  QScrollBar* scrollCH1 = nullptr;
  QScrollBar* VScroll1 = nullptr;
  QPushButton* KeyNulOffset1 = nullptr;
  QCheckBox* HardwShift1 = nullptr;
  QCheckBox* OpenClose1 = nullptr;
  QCheckBox* Ground1 = nullptr;
  QCheckBox* FilterH1 = nullptr;
  QCheckBox* FilterL1 = nullptr;
  QCheckBox* Average1 = nullptr;
  QCheckBox* Peak1 = nullptr;
  QCheckBox* HiRes1 = nullptr;
};

}  // namespace zorvik
