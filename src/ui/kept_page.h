#pragma once
#include <QCloseEvent>
#include <QDialog>

namespace zorvik {

// A page whose close box only hides it: its controls stay for the header events that fill them. A
// close by the program goes through.
class KeptPage : public QDialog {
  Q_OBJECT
 public:
  using QDialog::QDialog;

 protected:
  void closeEvent(QCloseEvent* event) override {
    if (event->spontaneous()) {
      event->ignore();
      hide();
      return;
    }
    QDialog::closeEvent(event);
  }
};

}  // namespace zorvik
