#include "app/delay_page.h"

#include <QGridLayout>
#include <QHBoxLayout>

#include "control/delay_control.h"
#include "control/trigger_control.h"
#include "link/main_state.h"

namespace zorvik {

DelayPage::DelayPage(DelayControl& delay, TriggerControl& trigger, const MainState& state, QWidget* parent)
    : KeptPage(parent), delay_(delay), trigger_(trigger), state_(state) {
  setWindowTitle("Trigger delay");
  setObjectName("DelayPage");
  auto* grid = new QGridLayout(this);
  grid->addWidget(new QLabel("Delay after trigger, \xC2\xB5s:"), 0, 0);
  TrigDelayLbl = new QLabel;
  TrigDelayLbl->setObjectName("TrigDelayLbl");
  grid->addWidget(TrigDelayLbl, 0, 1);
  grid->addWidget(new QLabel("Centre of the record:"), 1, 0);
  TimeAsqLbl = new QLabel;
  TimeAsqLbl->setObjectName("TimeAsqLbl");
  grid->addWidget(TimeAsqLbl, 1, 1);

  auto* weights = new QHBoxLayout;
  auto* group = new QButtonGroup(this);
  for (int w : {1, 10, 100, 1000, 10000}) {
    auto* b = new QPushButton(QString("x%1").arg(w));
    b->setObjectName(QString("x%1").arg(w));
    b->setCheckable(true);
    b->setChecked(w == delay_.weight());
    group->addButton(b, w);
    weights->addWidget(b);
  }
  connect(group, &QButtonGroup::idClicked, this, [this](int w) { delay_.setWeight(w); });
  grid->addLayout(weights, 2, 0, 1, 2);

  Coma = new QScrollBar(Qt::Horizontal);
  Coma->setObjectName("Coma");
  Coma->setRange(-1, 1);
  Coma->setValue(0);
  connect(Coma, &QScrollBar::valueChanged, this, [this](int v) {
    if (filling_ || v == 0) return;
    delay_.step(v);
    filling_ = true;
    Coma->setValue(0);
    filling_ = false;
    refresh();
  });
  grid->addWidget(Coma, 3, 0, 1, 2);

  KeyDelayOff = new QPushButton("Off");
  KeyDelayOff->setObjectName("KeyDelayOff");
  KeyDelayRestore = new QPushButton("Restore");
  KeyDelayRestore->setObjectName("KeyDelayRestore");
  connect(KeyDelayOff, &QPushButton::clicked, this, [this] {
    delay_.KeyDelayOff_Click();
    refresh();
  });
  connect(KeyDelayRestore, &QPushButton::clicked, this, [this] {
    delay_.KeyDelayRestore_Click();
    refresh();
  });
  grid->addWidget(KeyDelayOff, 4, 0);
  grid->addWidget(KeyDelayRestore, 4, 1);
  refresh();
}

void DelayPage::refresh() {
  filling_ = true;
  TrigDelayLbl->setText(QString::number(delay_.delayMicros()));
  auto centre = state_.fields.find("DelayPage.TimeAsqLbl");
  TimeAsqLbl->setText(centre == state_.fields.end() ? QString("-") : QString::fromStdString(centre->second));
  KeyDelayRestore->setEnabled(delay_.restoreEnabled());
  filling_ = false;
}

}  // namespace zorvik
