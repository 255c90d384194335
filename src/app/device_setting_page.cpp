#include "app/device_setting_page.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QScreen>

#include "config/settings.h"
#include "core/latin1_text.h"
#include "link/main_state.h"

namespace zorvik {

namespace {
QString text(const MainState& state, const std::string& field) {
  auto it = state.fields.find(field);
  if (it == state.fields.end() || it->second.empty()) return {};
  return latin1Text(it->second);
}
}  // namespace

DeviceSettingPage::DeviceSettingPage(SettingsStore& settings, const char* object, const char* title,
                                     const char* positionKey, QWidget* parent)
    : KeptPage(parent), settings_(settings), positionKey_(positionKey) {
  setObjectName(object);
  setWindowTitle(title);
  form_ = new QFormLayout(this);
}

void DeviceSettingPage::readOut(const char* field, const char* object, const char* caption, const char* tip) {
  auto* label = new QLabel("-", this);
  label->setObjectName(object);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  if (*tip) label->setToolTip(tip);
  form_->addRow(caption, label);
  readOuts_[field] = label;
}

QLineEdit* DeviceSettingPage::input(const char* field, const char* object, const char* caption,
                                    const char* tip, const char* keyObject, const char* keyTip,
                                    std::function<void(const QString&)> apply, QWidget* unit) {
  auto* row = new QHBoxLayout;
  auto* edit = new QLineEdit(this);
  edit->setObjectName(object);
  edit->setToolTip(tip);
  auto* key = new QPushButton("Set", this);
  key->setObjectName(keyObject);
  key->setToolTip(keyTip);
  connect(key, &QPushButton::clicked, this, [this, edit, apply] {
    try {
      apply(edit->text());
    } catch (const std::exception& e) {
      onFault(e.what());
    }
  });
  row->addWidget(edit, 1);
  if (unit) row->addWidget(unit);
  row->addWidget(key);
  form_->addRow(caption, row);
  if (*field) inputs_[field] = edit;
  keys_.push_back(key);
  return edit;
}

void DeviceSettingPage::refresh(const MainState& state) {
  for (auto& [field, label] : readOuts_) {
    const QString t = text(state, field);
    label->setText(t.isEmpty() ? QString("-") : t);
  }
  for (auto& [field, edit] : inputs_)
    if (!edit->hasFocus()) edit->setText(text(state, field));
  if (onRefresh) onRefresh(state);
}

void DeviceSettingPage::setOnline(bool online) {
  for (QPushButton* k : keys_) k->setEnabled(online);
}

void DeviceSettingPage::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  const QRect screen = QGuiApplication::primaryScreen()
                           ? QGuiApplication::primaryScreen()->availableGeometry()
                           : QRect(0, 0, 1024, 768);
  int left = settings_.getInt("Startup Position", positionKey_ + " Left", (screen.width() - width()) / 2);
  int top = settings_.getInt("Startup Position", positionKey_ + " Top", (screen.height() - height()) / 2);
  move(std::clamp(left, 0, std::max(0, screen.width() - 67)),
       std::clamp(top, 0, std::max(0, screen.height() - 67)));
}

void DeviceSettingPage::hideEvent(QHideEvent* event) {
  try {
    settings_.saveInt("Startup Position", positionKey_ + " Left", x());
    settings_.saveInt("Startup Position", positionKey_ + " Top", y());
  } catch (const std::exception& e) {
    onFault(e.what());
  }
  QDialog::hideEvent(event);
}

}  // namespace zorvik
