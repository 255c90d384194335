#include "display/memo_window.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QPainter>
#include <QVBoxLayout>

#include "export/display_pictures.h"
#include "link/device_context.h"

namespace zorvik {

memowin::memowin(const QImage& picture, DeviceContext& main, FileDialogs& dialogs, QWidget* parent)
    : QWidget(parent, Qt::Window), picture_(picture), main_(main), dialogs_(dialogs) {
  setObjectName("memowin");
  setWindowTitle("Memo display");
  setAttribute(Qt::WA_DeleteOnClose);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  MemoDisplay = new QLabel(this);
  MemoDisplay->setObjectName("MemoDisplay");
  MemoDisplay->setPixmap(QPixmap::fromImage(picture_));
  MemoDisplay->setFixedSize(picture_.size());
  PictureComment = new QLineEdit(this);
  PictureComment->setObjectName("PictureComment");
  PictureComment->setToolTip("Input comment");
  PictureComment->setFont(QFont("Times New Roman"));
  PictureComment->setFixedWidth(picture_.width());
  PictureComment->hide();
  column->addWidget(MemoDisplay);
  column->addWidget(PictureComment);
  column->setSizeConstraint(QLayout::SetFixedSize);  // the window follows the picture and the comment
}

void memowin::contextMenuEvent(QContextMenuEvent* event) {
  if (!MemoDisplay->geometry().contains(event->pos())) return;
  QMenu menu(this);
  menu.setObjectName("PictureMenu");
  menu.setTitle("picture menu");
  menu.addAction("save to BMP file", this, [this] { SaveToBMPGIFJPG_Click(0); });
  menu.addAction("save to GIF file", this, [this] { SaveToBMPGIFJPG_Click(1); });
  menu.addAction("save to JPG file", this, [this] { SaveToBMPGIFJPG_Click(2); });
  menu.addAction("copy to clipboard", this, [this] { SaveToBMPGIFJPG_Click(3); });
  menu.addSeparator();
  menu.addAction(!commentUsed_    ? "Add comment"
                 : commentShown() ? "Hide comment"
                                  : "Show comment",
                 this, [this] { AddComment_Click(); });
  menu.exec(event->globalPos());
}

void memowin::AddComment_Click() {
  commentUsed_ = true;
  PictureComment->setVisible(!PictureComment->isVisible());
}

QImage memowin::pictureToSave() const {
  if (!commentShown() || PictureComment->text().isEmpty()) return picture_;
  // The comment goes on a white band below the picture, as the window shows it.
  const int band = PictureComment->sizeHint().height();
  QImage out(picture_.width(), picture_.height() + band, QImage::Format_RGB32);
  out.fill(Qt::white);
  QPainter p(&out);
  p.drawImage(0, 0, picture_);
  p.setPen(Qt::black);
  p.setFont(PictureComment->font());
  p.drawText(QRect(4, picture_.height(), picture_.width() - 8, band), Qt::AlignVCenter | Qt::AlignLeft,
             PictureComment->text());
  return out;
}

void memowin::SaveToBMPGIFJPG_Click(int index) {
  try {
    DisplayPictures pictures(main_, dialogs_);
    pictures.savePicture(
        static_cast<PictureTarget>(index), pictureToSave(),
        [](const QImage& image) { QGuiApplication::clipboard()->setImage(image); }, kMemoPictureTexts);
  } catch (const std::exception& e) {
    onFault(e.what());
  }
}

}  // namespace zorvik
