#include "ui/analysis_window.h"

#include <QCloseEvent>

#include "config/settings.h"

namespace zorvik {

AnalysisWindow::AnalysisWindow(SettingsStore& settings, const char* section, QWidget* parent)
    : QWidget(parent, Qt::Window), settings_(settings), section_(section) {}

void AnalysisWindow::store(const char* name, long long value) {
  guarded([&] { settings_.saveInt(section_, name, value); });
}

void AnalysisWindow::closeEvent(QCloseEvent* event) {
  store("Left", x());
  store("Top", y());
  store("Width", width());
  store("Height", height());
  event->accept();
  onClosed();
}

}  // namespace zorvik
