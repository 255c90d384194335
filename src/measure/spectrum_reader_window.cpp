#include "measure/spectrum_reader_window.h"

#include <QEvent>

namespace zorvik {

SpectrumReaderWindow::SpectrumReaderWindow(SpectrumStage& stage, SpectrumStage::Reader reader,
                                           QWidget* parent)
    : QWidget(parent, Qt::Tool), stage_(stage), reader_(reader) {
  if (parent) parent->installEventFilter(this);
}

SpectrumReaderWindow::~SpectrumReaderWindow() {
  stage_.setReaderOpen(reader_, false);
}

// Every show and hide that is not the window system's own (minimising) passes here, close() included.
void SpectrumReaderWindow::setVisible(bool visible) {
  QWidget::setVisible(visible);
  stage_.setReaderOpen(reader_, isVisible());
}

// A tool window outlives the hiding of its parent: it is closed with it, so that it stores its place.
bool SpectrumReaderWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == parent() && event->type() == QEvent::Hide && !event->spontaneous() && isVisible()) close();
  return QWidget::eventFilter(watched, event);
}

}  // namespace zorvik
