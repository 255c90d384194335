#include "measure/meter_window.h"

#include <QActionGroup>
#include <QCloseEvent>
#include <QColorDialog>
#include <QGridLayout>
#include <QGuiApplication>
#include <QMenu>
#include <QScreen>

#include "config/settings.h"
#include "ui/hot_key_dialog.h"
#include "ui/window_place_qt.h"

namespace zorvik {

namespace {

constexpr int kAvgSeconds[10] = {1, 2, 5, 10, 20, 50, 100, 200, 500, 1000};
constexpr int kScreenMargin = 67;  // 1000 twips of the window kept on the screen

}  // namespace

unimeter::unimeter(SettingsStore& settings, const QString& caption, QWidget* parent)
    : QWidget(parent, Qt::Tool), settings_(settings), paced_(new PacedPaint(this, [this] { showTexts(); })) {
  setObjectName("unimeter");
  setWindowTitle(caption);
  setAttribute(Qt::WA_DeleteOnClose, false);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(6, 4, 6, 4);
  CurVal = new QLabel(this);
  CurVal->setObjectName("CurVal");
  CurVal->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  MinVal = new QLabel(this);
  MinVal->setObjectName("MinVal");
  MinVal->setToolTip("minimum value");
  MaxVal = new QLabel(this);
  MaxVal->setObjectName("MaxVal");
  MaxVal->setToolTip("maximum value");
  AvgVal = new QLabel(this);
  AvgVal->setObjectName("AvgVal");
  AvgVal->setToolTip("slow average value");
  for (QLabel* l : {CurVal, MinVal, MaxVal, AvgVal}) {
    l->setAutoFillBackground(false);
    l->setContextMenuPolicy(Qt::CustomContextMenu);
    l->setTextFormat(Qt::PlainText);
  }
  KeyReset = new QToolButton(this);
  KeyReset->setObjectName("KeyReset");
  KeyReset->setText("R");
  KeyReset->setToolTip("Reset min/max/avg");
  connect(KeyReset, &QToolButton::clicked, this, [this] { ResetMeter(); });
  StopKey = new QToolButton(this);
  StopKey->setObjectName("StopKey");
  StopKey->setText("||");
  StopKey->setCheckable(true);
  StopKey->setToolTip("Stop meter");
  connect(StopKey, &QToolButton::toggled, this, [this](bool down) { state_.stopped = down; });
  grid->addWidget(CurVal, 0, 0, 1, 3);
  grid->addWidget(KeyReset, 0, 3);
  grid->addWidget(StopKey, 1, 3);
  grid->addWidget(MinVal, 1, 0);
  grid->addWidget(AvgVal, 1, 1);
  grid->addWidget(MaxVal, 1, 2);
  QFont big = font();
  big.setPointSize(big.pointSize() * 3);
  big.setBold(true);
  CurVal->setFont(big);
  referenceBig_ = big.pointSize();
  referenceSmall_ = font().pointSize();
  clock_.start();
  buildMenus();
}

unimeter::~unimeter() = default;

void unimeter::buildMenus() {
  auto popup = [this](QLabel* label, std::function<void(QMenu&)> fill) {
    connect(label, &QLabel::customContextMenuRequested, this, [label, fill](const QPoint& at) {
      QMenu menu(label);
      fill(menu);
      menu.exec(label->mapToGlobal(at));
    });
  };
  popup(CurVal, [this](QMenu& m) {
    m.setObjectName("BigMeter");
    m.addAction("Back color", [this] { pickColour(" Back"); });
    m.addAction("Fore color", [this] { pickColour(" Fore"); });
    m.addAction(" HotKey setup", [this] {
      guarded([this] { (new HotKey(settings_, this))->SetupDisplay(this, mnemonic_ + " meter"); });
    });
  });
  popup(AvgVal, [this](QMenu& m) {
    m.setObjectName("AverageMeter");
    m.addAction("Color", [this] { pickColour(" avg Fore"); });
    QMenu* times = m.addMenu("Average time");
    times->setObjectName("AverageTimeMenu");
    auto* group = new QActionGroup(times);
    for (int i = 0; i < 10; ++i) {
      QAction* a = times->addAction(QString("%1 sec").arg(kAvgSeconds[i]));
      a->setCheckable(true);
      a->setChecked(i == avgTimeIndex_);
      group->addAction(a);
      connect(a, &QAction::triggered, this, [this, i] {
        avgTimeIndex_ = i;
        state_.AvgTimeMs = kAvgSeconds[i] * 1000;
        guarded([&] { settings_.saveInt("Meters setting", mnemonic_ + " AvgTime", i); });
      });
    }
    m.addAction("Reset", [this] {
      state_.AvgReset();
      showTexts();
    });
  });
  popup(MinVal, [this](QMenu& m) {
    m.setObjectName("MinMeter");
    m.addAction("Color", [this] { pickColour(" min Fore"); });
    m.addAction("Reset", [this] {
      state_.MinReset();
      showTexts();
    });
  });
  popup(MaxVal, [this](QMenu& m) {
    m.setObjectName("MaxMeter");
    m.addAction("Color", [this] { pickColour(" max Fore"); });
    m.addAction("Reset", [this] {
      state_.MaxReset();
      showTexts();
    });
  });
}

void unimeter::Stp(const std::string& mnemonic) {
  mnemonic_ = mnemonic;
  setProperty("Tag", QString::fromStdString(mnemonic));
  avgTimeIndex_ = std::clamp(settings_.getInt("Meters setting", mnemonic + " AvgTime"), 0, 9);
  state_.AvgTimeMs = kAvgSeconds[avgTimeIndex_] * 1000;
  applyColours();
  // Sized for the widest texts of the fixed-width forms, so that no reading is cut.
  CurVal->setText("-000.0mdBV");
  for (QLabel* l : {MinVal, MaxVal, AvgVal}) l->setText("-000.00mdBV");
  adjustSize();
  reference_ = size();
  const int zoom = std::clamp(settings_.getInt("Meters Positions", mnemonic + " zoom"), 1, 4);
  if (zoom > 1) resize(reference_ * zoom);
  QRect screen = QGuiApplication::primaryScreen() ? QGuiApplication::primaryScreen()->availableGeometry()
                                                  : QRect(0, 0, 1024, 768);
  if (settings_.GetSettingValue("Meters Positions", mnemonic + " Left", "").empty()) {
    placeOpenedWindow(this);  // a first opening: beside the main window, past the meters already open
  } else {
    int left = settings_.getInt("Meters Positions", mnemonic + " Left", screen.width() / 2);
    int top = settings_.getInt("Meters Positions", mnemonic + " Top", screen.height() / 2);
    // Pulled back onto the screen with a margin of the window left on it.
    left = std::clamp(left, 0, std::max(0, screen.width() - kScreenMargin));
    top = std::clamp(top, 0, std::max(0, screen.height() - kScreenMargin));
    move(left, top);
  }
  ResetMeter();
  guarded([this] { HotKey::SetKey(this, mnemonic_ + " meter", settings_); });
  show();
}

void unimeter::Ind(bool detail, const std::string& unit, float value, float resolution,
                   const std::string& status) {
  state_.Ind(detail, unit, value, resolution, status, static_cast<uint32_t>(clock_.elapsed()));
  paced_->request();
}

void unimeter::IndF(const std::string& unit, float value, const std::string& picture,
                    const std::string& status) {
  state_.IndF(unit, value, picture, status, static_cast<uint32_t>(clock_.elapsed()));
  paced_->request();
}

void unimeter::ResetMeter() {
  state_.ResetMeter();
  showTexts();
}

void unimeter::showTexts() {
  // A hidden meter shows itself again at the next pass.
  if (!isVisible() && !mnemonic_.empty() && !quiet_) show();
  // Engineering texts are the program's own UTF-8 (their µ), not device bytes.
  CurVal->setText(QString::fromStdString(state_.CurVal));
  MinVal->setText(QString::fromStdString(state_.MinVal));
  MaxVal->setText(QString::fromStdString(state_.MaxVal));
  AvgVal->setText(QString::fromStdString(state_.AvgVal));
}

QColor unimeter::colour(const char* key) const {
  const bool back = std::string(key) == " Back";
  const int stored = const_cast<SettingsStore&>(settings_).getInt("Meters Colors", mnemonic_ + key);
  // Negative values name the system's colours: the button face and the button text.
  if (stored < 0) return palette().color(back ? QPalette::Button : QPalette::ButtonText);
  const unsigned bgr = static_cast<unsigned>(stored);
  return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}

void unimeter::applyColours() {
  QPalette p = palette();
  p.setColor(QPalette::Window, colour(" Back"));
  setPalette(p);
  setAutoFillBackground(true);
  auto fore = [this](QLabel* l, const char* key) {
    QPalette lp = l->palette();
    lp.setColor(QPalette::WindowText, colour(key));
    l->setPalette(lp);
  };
  fore(CurVal, " Fore");
  fore(MinVal, " min Fore");
  fore(MaxVal, " max Fore");
  fore(AvgVal, " avg Fore");
}

void unimeter::pickColour(const char* key) {
  const QColor c = QColorDialog::getColor(colour(key), this, windowTitle());
  if (!c.isValid()) return;
  guarded([&] {
    settings_.saveInt("Meters Colors", mnemonic_ + key, c.red() | (c.green() << 8) | (c.blue() << 16));
  });
  applyColours();
}

void unimeter::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (!reference_.isValid() || reference_.height() <= 0) return;
  // The texts keep the share of the window they had at load.
  const double ratio = static_cast<double>(height()) / reference_.height();
  QFont big = CurVal->font();
  big.setPointSize(std::max(4, static_cast<int>(referenceBig_ * ratio)));
  CurVal->setFont(big);
  for (QLabel* l : {MinVal, MaxVal, AvgVal}) {
    QFont f = l->font();
    f.setPointSize(std::max(4, static_cast<int>(referenceSmall_ * ratio)));
    l->setFont(f);
  }
}

void unimeter::saveLayout() {
  if (mnemonic_.empty()) return;
  settings_.saveInt("Meters Positions", mnemonic_ + " Left", x());
  settings_.saveInt("Meters Positions", mnemonic_ + " Top", y());
  const int zoom =
      reference_.height() > 0 ? std::max(1, static_cast<int>(height() / reference_.height())) : 1;
  settings_.saveInt("Meters Positions", mnemonic_ + " zoom", zoom);
}

void unimeter::closeQuietly() {
  quiet_ = true;
  close();
}

void unimeter::closeEvent(QCloseEvent* event) {
  guarded([&] { saveLayout(); });
  event->accept();
  if (!quiet_ && onClosedByUser) onClosedByUser();
}

}  // namespace zorvik
