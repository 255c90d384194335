#include "ui/hot_key_dialog.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include "config/hot_key.h"

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

void HotKey::SetKey(QWidget* window, const std::string& name, SettingsStore& settings) {
  if (!window) return;
  const HotKeyValue key = readHotKey(settings, name);
  const QString object = QString::fromStdString("HotKey " + name);
  delete window->findChild<QShortcut*>(object);
  if (!key.registrable()) return;
  auto* shortcut = new QShortcut(sequence(key), window);
  shortcut->setObjectName(object);
  shortcut->setContext(Qt::ApplicationShortcut);
  QObject::connect(shortcut, &QShortcut::activated, window, [window] {
    window->show();
    window->raise();
    window->activateWindow();
  });
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
  saveHotKey(settings_, name_, key);
  SetKey(window_, name_, settings_);
  accept();
}

}  // namespace zorvik
