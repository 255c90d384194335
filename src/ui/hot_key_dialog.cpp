#include "ui/hot_key_dialog.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "config/hot_key.h"
#include "ui/qt_message_sink.h"

namespace zorvik {

namespace {
constexpr int kModifiers[3] = {1, 2, 4};

QKeySequence sequence(const HotKeyValue& key) {
  const Qt::KeyboardModifiers m = key.modifier == 1   ? Qt::ShiftModifier
                                  : key.modifier == 2 ? Qt::ControlModifier
                                                      : Qt::AltModifier;
  return QKeySequence(QKeyCombination(m, static_cast<Qt::Key>(static_cast<unsigned char>(key.symbol))));
}
}  // namespace

HotKey::HotKey(SettingsStore& settings, QWidget* parent) : QDialog(parent), settings_(settings) {
  setObjectName("HotKey");
  setWindowTitle("Hot key");
  setAttribute(Qt::WA_DeleteOnClose);
  auto* column = new QVBoxLayout(this);
  HotKeyName = new QLabel(this);
  HotKeyName->setObjectName("HotKeyName");
  column->addWidget(HotKeyName);
  auto* row = new QHBoxLayout;
  const char* captions[3] = {"Shift", "Ctl", "Alt"};
  for (int i = 0; i < 3; ++i) {
    FirstKeyOption[static_cast<size_t>(i)] = new QRadioButton(captions[i], this);
    FirstKeyOption[static_cast<size_t>(i)]->setObjectName(QString("FirstKeyOption%1").arg(kModifiers[i]));
    row->addWidget(FirstKeyOption[static_cast<size_t>(i)]);
  }
  SymbolHotKey = new QLineEdit(this);
  SymbolHotKey->setObjectName("SymbolHotKey");
  SymbolHotKey->setMaxLength(1);
  connect(SymbolHotKey, &QLineEdit::textEdited, this, [this](const QString& t) {
    const char c = hotKeySymbol(t.toStdString());
    SymbolHotKey->setText(c ? QString(QChar(c)) : QString());
  });
  row->addWidget(SymbolHotKey);
  column->addLayout(row);
  auto* keys = new QHBoxLayout;
  auto* set = new QPushButton("Set", this);
  set->setObjectName("KeySET");
  auto* cancel = new QPushButton("Cancel", this);
  cancel->setObjectName("KeyCancel");
  connect(set, &QPushButton::clicked, this, [this] { KeySET_Click(); });
  connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
  keys->addWidget(set);
  keys->addWidget(cancel);
  column->addLayout(keys);
}

HotKeyTable& HotKey::table() {
  static HotKeyTable keys;
  return keys;
}

void HotKey::SetKey(QWidget* window, const std::string& name, SettingsStore& settings,
                    MessageSink* messages) {
  if (!window) return;
  QtMessageSink own(settings, "");
  own.setOwner(window);
  bool wantsSetup = false;
  switch (giveStoredHotKey(table(), settings, messages ? *messages : own, name, wantsSetup)) {
    case HotKeyTable::Outcome::Cleared:
    case HotKeyTable::Outcome::Given:
      bindShortcut(window, name, readHotKey(settings, name));
      break;
    case HotKeyTable::Outcome::Occupied:
      if (wantsSetup) {
        auto* dialog = new HotKey(settings, window);
        dialog->setMessages(messages);
        dialog->SetupDisplay(window, name);
      }
      break;
  }
}

void HotKey::bindShortcut(QWidget* window, const std::string& name, const HotKeyValue& key) {
  const QString object = QString::fromStdString("HotKey " + name);
  if (QShortcut* old = window->findChild<QShortcut*>(object)) {
    QObject::disconnect(old, &QObject::destroyed, nullptr, nullptr);  // the name keeps its new key
    delete old;
  }
  if (!key.registrable()) return;
  auto* shortcut = new QShortcut(sequence(key), window);
  shortcut->setObjectName(object);
  shortcut->setContext(Qt::ApplicationShortcut);
  QObject::connect(shortcut, &QShortcut::activated, window, [window] {
    window->show();
    window->raise();
    window->activateWindow();
  });
  // A window that closes for good frees its key for the others.
  QObject::connect(shortcut, &QObject::destroyed, [name] { table().release(name); });
}

void HotKey::SetupDisplay(QWidget* window, const std::string& name) {
  window_ = window;
  name_ = name;
  HotKeyName->setText(QString::fromStdString(name + " window hot key"));
  const HotKeyValue key = readHotKey(settings_, name);
  for (int i = 0; i < 3; ++i)
    FirstKeyOption[static_cast<size_t>(i)]->setChecked(key.modifier == kModifiers[i]);
  SymbolHotKey->setText(key.symbol > 32 ? QString(QChar(key.symbol)) : QString());
  show();
}

void HotKey::KeySET_Click() {
  HotKeyValue key;
  for (int i = 0; i < 3; ++i)
    if (FirstKeyOption[static_cast<size_t>(i)]->isChecked()) key.modifier = kModifiers[i];
  key.symbol = hotKeySymbol(SymbolHotKey->text().toStdString());
  QtMessageSink own(settings_, "");
  own.setOwner(this);
  // Refused, the dialog stays for another key.
  if (giveChosenHotKey(table(), settings_, messages_ ? *messages_ : own, name_, key) ==
      HotKeyTable::Outcome::Occupied)
    return;
  if (window_) bindShortcut(window_, name_, key);
  accept();
}

}  // namespace zorvik
