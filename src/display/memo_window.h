#pragma once
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QWidget>
#include <functional>
#include <string>

namespace zorvik {

class DeviceContext;
class FileDialogs;

// memowin ("Memo display"): a still copy of a display beside the running instrument, with a comment,
// saved to a file or the clipboard from its picture menu (right click). Each copy is a window of its own.
class memowin : public QWidget {
  Q_OBJECT
 public:
  memowin(const QImage& picture, DeviceContext& main, FileDialogs& dialogs, QWidget* parent = nullptr);

  const QImage& picture() const { return picture_; }
  bool commentShown() const { return PictureComment->isVisible(); }
  // What a save writes: the picture, with the comment below it when it is shown.
  QImage pictureToSave() const;
  void AddComment_Click();
  // Menu items 0 BMP, 1 GIF, 2 JPEG, 3 clipboard; faults go to the owner's box.
  void SaveToBMPGIFJPG_Click(int index);
  std::function<void(const std::string&)> onFault = [](const std::string&) {};

 protected:
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  QImage picture_;
  DeviceContext& main_;
  FileDialogs& dialogs_;
  QLabel* MemoDisplay = nullptr;
  QLineEdit* PictureComment = nullptr;
  bool commentUsed_ = false;
};

}  // namespace zorvik
