#pragma once
#include <QWidget>

#include "spectrum/spectrum_stage.h"

namespace zorvik {

// A meter on the spectrum window's menu. While it is visible it is one of the stage's readers, whatever
// shows or hides it: its menu item, its close box, hide(), or the spectrum window closing, which closes
// it too. A minimised meter is still visible and still reads.
class SpectrumReaderWindow : public QWidget {
  Q_OBJECT
 public:
  SpectrumReaderWindow(SpectrumStage& stage, SpectrumStage::Reader reader, QWidget* parent);
  ~SpectrumReaderWindow() override;
  void setVisible(bool visible) override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

  SpectrumStage& stage_;

 private:
  SpectrumStage::Reader reader_;
};

}  // namespace zorvik
