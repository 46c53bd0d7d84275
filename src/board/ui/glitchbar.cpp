// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/glitchbar.h"

#include <QLabel>
#include <cmath>

#include "controls/ui/userdialogs.h"
#include "journal/ui/originfilter.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr int refreshMilliseconds = 500;

}  // namespace

GlitchBar::GlitchBar(GlitchTest& test, ChipTurns& turns, UserDialogs& dialogs, int interval)
    : QToolBar(u"Glitch test"_s),
      test_(test),
      dialogs_(dialogs),
      tmrGlitch_(turns, "tmrGlitch", interval, [this] { Tick(); }),
      state_(new QLabel) {
  setObjectName(u"barGlitchTest"_s);
  setMovable(false);
  toggleViewAction()->setVisible(false);
  state_->setObjectName(u"lblGlitchTest"_s);
  addWidget(state_);
  addAction(u"Stop"_s, this, &GlitchBar::Stop)->setObjectName(u"actStopGlitchTest"_s);
  if (auto* const more = findChild<QWidget*>(u"qt_toolbar_ext_button"_s)) more->setAccessibleName(u"More"_s);
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
  if (ran) emit Notice(u"Glitch test stopped: "_s + QString::fromStdString(test_.Leaves()));
}

void GlitchBar::Tick() {
  if (test_.Tick() == GlitchTest::TickResult::Ended) {
    tmrGlitch_.Stop();
    emit Notice(u"Glitch test ended: "_s + QString::fromStdString(test_.Leaves()));
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
  state_->setText(u"Glitch test: step %1, duty %2 (%3), %4:%5 left   "_s.arg(test_.Step())
                      .arg(test_.Duty())
                      .arg(QString::fromStdString(DutyText(DutyToPercent(test_.Duty()))))
                      .arg(left / 60)
                      .arg(left % 60, 2, 10, QChar(u'0')));
}

}  // namespace krx
