#include "ui/qt_message_sink.h"

#include <QApplication>
#include <QCheckBox>
#include <QEventLoop>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QTimer>
#include <vector>

#include "core/box_placement.h"
#include "core/latin1_text.h"

namespace zorvik {

namespace {
// Remembering an answer must not throw out of a box's handler; a store that can't write says so.
template <typename F>
void saveQuietly(F&& save) {
  try {
    save();
  } catch (const std::exception& e) {
    QMessageBox::critical(nullptr, "Zorvik", latin1Text(e.what()));
  }
}

constexpr const char* kInfoBoxName = "InfoBoxOkno";

// Any key closes an information box at once, wherever the focus stands in it.
class CloseOnAnyKey : public QObject {
 public:
  explicit CloseOnAnyKey(QWidget* box) : QObject(box), box_(box) {}
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() != QEvent::KeyPress) return false;
    box_->close();
    return true;
  }

 private:
  QWidget* box_;
};

std::vector<int> openInfoBoxLefts(const QWidget* except) {
  std::vector<int> lefts;
  for (QWidget* w : QApplication::topLevelWidgets())
    if (w != except && w->isVisible() && w->objectName() == kInfoBoxName) lefts.push_back(w->x());
  return lefts;
}

// A shown box's place centred on the main window, or on the screen when there is none.
BoxPosition centredPlace(const QWidget* box, const QWidget* owner) {
  const QRect area =
      owner && owner->isVisible() ? owner->frameGeometry() : box->screen()->availableGeometry();
  const QSize size = box->frameGeometry().size();
  return {area.x() + (area.width() - size.width()) / 2, area.y() + (area.height() - size.height()) / 2};
}
}  // namespace

QtMessageSink::QtMessageSink(SettingsStore& settings, std::string instanceTitle)
    : settings_(settings), instanceTitle_(std::move(instanceTitle)) {}

int QtMessageSink::show(BoxKind kind, const std::string& title, const std::string& text,
                        const std::string& key) {
  // Texts are bytes (a device's own texts among them), shown one byte a character.
  const QString caption = latin1Text(title), body = latin1Text(text);
  switch (kind) {
    case BoxKind::Information:
      QMessageBox::information(owner_, caption, body);
      return 0;
    case BoxKind::Critical:
      QMessageBox::critical(owner_, caption, body);
      return 0;
    case BoxKind::Question:
      // A question that names a key can be answered for good, which only the question box offers.
      if (!key.empty()) return questBox(text, key, false);
      return QMessageBox::question(owner_, caption, body) == QMessageBox::Yes ? kAnswerYes : kAnswerNo;
    case BoxKind::OkCancel: {
      auto b = QMessageBox::question(owner_, caption, body, QMessageBox::Ok | QMessageBox::Cancel);
      return b == QMessageBox::Ok ? kAnswerOk : kAnswerCancel;
    }
    case BoxKind::InfoBox:
      infoBox(text, key);
      return 0;
    case BoxKind::QuestBox:
      return questBox(text, key, false);
    case BoxKind::QuestBox3:
      return questBox(text, key, true);
  }
  return 0;
}

void QtMessageSink::infoBox(const std::string& text, const std::string& key) {
  bool keyed = !key.empty() && key != instanceTitle_;
  if (keyed && settings_.getBool("HideInfoWin", key)) return;
  auto* box = new QMessageBox(QMessageBox::Information, latin1Text(instanceTitle_), latin1Text(text),
                              QMessageBox::NoButton, owner_);
  box->setObjectName(kInfoBoxName);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setModal(false);
  QPushButton* ok = box->addButton("OK=11", QMessageBox::AcceptRole);
  if (key != instanceTitle_) {
    auto* check = new QCheckBox("Don't show again");
    check->setToolTip("To not show this mesage in the future");
    box->setCheckBox(check);
    QObject::connect(check, &QCheckBox::toggled, box, [this, key](bool on) {
      if (on && !key.empty()) saveQuietly([&] { settings_.saveBool("HideInfoWin", key, true); });
    });
  }
  // Counts down and closes by itself, so that a box never holds up the bench.
  auto* timer = new QTimer(box);
  auto counter = std::make_shared<int>(11);
  QObject::connect(timer, &QTimer::timeout, box, [box, ok, counter] {
    if (--*counter <= 0) {
      box->close();
      return;
    }
    ok->setText(QString("OK=%1").arg(*counter));
  });
  timer->start(1000);
  auto* closeOnKey = new CloseOnAnyKey(box);
  box->installEventFilter(closeOnKey);
  for (QWidget* child : box->findChildren<QWidget*>()) child->installEventFilter(closeOnKey);
  box->show();
  const BoxPosition at = cascadeInfoBox(centredPlace(box, owner_), openInfoBoxLefts(box));
  box->move(at.left, at.top);
}

int QtMessageSink::questBox(const std::string& text, const std::string& key, bool withNever) {
  if (!key.empty()) {
    int stored = settings_.getInt("HideQuestWin", key);
    if (withNever && stored == kAnswerNo) return kAnswerNo;
    if (stored == kAnswerYes) return kAnswerYes;
  }
  QMessageBox box(QMessageBox::Question, latin1Text(instanceTitle_), latin1Text(text), QMessageBox::NoButton,
                  owner_);
  QPushButton* yes = box.addButton("Yes", QMessageBox::YesRole);
  yes->setToolTip("To answer just now");
  QPushButton* always = box.addButton("Always", QMessageBox::YesRole);
  always->setToolTip("To answer \"Yes\" also in the future");
  QPushButton* no = box.addButton("No", QMessageBox::NoRole);
  no->setToolTip("To answer just now");
  QPushButton* never = nullptr;
  if (withNever) {
    never = box.addButton("Never", QMessageBox::NoRole);
    never->setToolTip("To answer \"No\" also in the future");
  }
  // Nobody answering within 20 s counts as no answer.
  QTimer::singleShot(20000, &box, [&box] { box.done(0); });
  // Shown before the wait, so that it stands in its place from the first moment.
  box.setModal(true);
  box.show();
  const BoxPosition at = placeQuestionBox(centredPlace(&box, owner_), box.frameGeometry().height(),
                                          !openInfoBoxLefts(&box).empty());
  box.move(at.left, at.top);
  QEventLoop wait;
  QObject::connect(&box, &QDialog::finished, &wait, &QEventLoop::quit);
  if (box.isVisible()) wait.exec();
  QAbstractButton* clicked = box.clickedButton();
  if (clicked == yes) return kAnswerYes;
  if (clicked == always) {
    if (!key.empty()) saveQuietly([&] { settings_.saveInt("HideQuestWin", key, kAnswerYes); });
    return kAnswerYes;
  }
  if (clicked == no) return kAnswerNo;
  if (never && clicked == never) {
    if (!key.empty()) saveQuietly([&] { settings_.saveInt("HideQuestWin", key, kAnswerNo); });
    return kAnswerNo;
  }
  return 0;
}

}  // namespace zorvik
