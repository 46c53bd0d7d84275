// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/glitchbar.h"

#include <QLabel>
#include <cmath>

#include "controls/ui/userdialogs.h"
#include "journal/ui/originfilter.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

constexpr int refreshMilliseconds = 500;

}  // namespace

GlitchBar::GlitchBar(GlitchTest& test, ChipTurns& turns, UserDialogs& dialogs, int interval)
    : QToolBar("Glitch test"),
      test_(test),
      dialogs_(dialogs),
      tmrGlitch_(turns, "tmrGlitch", interval, [this] { Tick(); }),
      state_(new QLabel) {
  setObjectName("barGlitchTest");
  setMovable(false);
  toggleViewAction()->setVisible(false);
  state_->setObjectName("lblGlitchTest");
  addWidget(state_);
  addAction("Stop", this, &GlitchBar::Stop)->setObjectName("actStopGlitchTest");
  refresh_.setInterval(refreshMilliseconds);
  connect(&refresh_, &QTimer::timeout, this, &GlitchBar::ShowTest);
  hide();
}

void GlitchBar::Start() {
  RunUserAction(
      dialogs_, [this] { test_.Start(); }, glitchTestOrigin);
  if (test_.Running() && !tmrGlitch_.IsActive()) tmrGlitch_.Start();
  ShowTest();
}

void GlitchBar::Stop() {
  const bool ran = test_.Running();
  tmrGlitch_.Stop();
  test_.Stop();
  ShowTest();
  if (ran) emit Notice("Glitch test stopped: " + QString::fromStdString(test_.Leaves()));
}

void GlitchBar::Tick() {
  if (test_.Tick() == GlitchTest::TickResult::Ended) {
    tmrGlitch_.Stop();
    emit Notice("Glitch test ended: " + QString::fromStdString(test_.Leaves()));
  }
  ShowTest();
}

void GlitchBar::ShowTest() {
  setVisible(test_.Running());
  if (!test_.Running()) {
    refresh_.stop();
    return;
  }
  refresh_.start();
  const int left = static_cast<int>(std::ceil(test_.RemainingSeconds()));
  state_->setText(QString("Glitch test: step %1, duty %2 (%3), %4:%5 left   ")
                      .arg(test_.Step())
                      .arg(test_.Duty())
                      .arg(QString::fromStdString(DutyText(DutyToPercent(test_.Duty()))))
                      .arg(left / 60)
                      .arg(left % 60, 2, 10, QLatin1Char('0')));
}

}  // namespace krx
