// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/ui/frmautodetect.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "controls/ui/texts.h"
#include "registers/numerics.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

// How long a click on Cancel may go unnoticed.
constexpr double sliceSeconds = 0.05;

QLabel* AddLabel(QVBoxLayout& layout, const QString& name, const QString& text = {}) {
  auto* const label = new QLabel(text);
  label->setObjectName(name);
  layout.addWidget(label);
  return label;
}

QProgressBar* AddBar(QVBoxLayout& layout, const QString& name, const QString& accessibleName) {
  auto* const bar = new QProgressBar;
  bar->setObjectName(name);
  bar->setAccessibleName(accessibleName);
  bar->setRange(0, 100);
  bar->setTextVisible(false);
  layout.addWidget(bar);
  return bar;
}

QString MinutesText(double seconds) {
  const int whole = static_cast<int>(std::ceil(seconds));
  return u"%1:%2"_s.arg(whole / 60).arg(whole % 60, 2, 10, QChar(u'0'));
}

}  // namespace

FrmAutoDetect::FrmAutoDetect(Link& link, OwedWrites& owed, const FanCommon& fans, ChipTurns& turns,
                             double fanSecondsPerSecond, QWidget* parent)
    : QDialog(parent), link_(link), owed_(owed), fans_(fans), turns_(turns), fanSecondsPerSecond_(fanSecondsPerSecond) {
  setObjectName(u"frmAutoDetect"_s);
  setWindowTitle(u"Automatic Parameter Detection"_s);
  // Input to the other windows is dropped while this one is shown, so that no click is carried out afterwards.
  setWindowModality(Qt::ApplicationModal);
  auto* const layout = new QVBoxLayout(this);
  auto* const heading = AddLabel(*layout, u"lblHeading"_s, u"Determining Minimum PWM ..."_s);
  QFont font = heading->font();
  font.setBold(true);
  heading->setFont(font);
  AddLabel(*layout, u"lblDuration"_s, u"This process may take several minutes"_s);
  checking_ = AddLabel(*layout, u"lblChecking"_s, u"Checking PWM ="_s);
  values_ = AddBar(*layout, u"prgValues"_s, u"Tested duties"_s);
  readings_ = AddBar(*layout, u"prgReadings"_s, u"Readings of this duty"_s);
  speed_ = AddLabel(*layout, u"lblSpeed"_s);
  remaining_ = AddLabel(*layout, u"lblRemaining"_s);
  auto* const cancel = new QPushButton(u"Cancel"_s);
  cancel->setObjectName(u"cmdCancel"_s);
  layout->addWidget(cancel, 0, Qt::AlignRight);
  connect(cancel, &QPushButton::clicked, this, [this] { cancelled_ = true; });
  setMinimumWidth(fontMetrics().horizontalAdvance(u'm') * 30);
}

DetectionResult FrmAutoDetect::Run(std::size_t index) {
  const ChipTurns::Hold hold(turns_);
  running_ = true;
  cancelled_ = false;
  show();
  struct Closing {
    FrmAutoDetect& window;
    ~Closing() {
      window.running_ = false;
      window.hide();
    }
  } const closing{*this};
  DetectionResult result = MinimumPwm(link_, owed_, fans_, *this).Min_PWM(index);
  // What was clicked on other windows meanwhile still meets this one and is dropped.
  link_.Delay(sliceSeconds);
  return result;
}

void FrmAutoDetect::Show(const DetectionProgress& progress) {
  checking_->setText(u"Checking PWM =%1%"_s.arg(progress.Duty));
  values_->setValue(static_cast<int>(progress.Values));
  readings_->setValue(static_cast<int>(progress.Readings));
  QString speed = u"Speed: %1"_s.arg(QtText(SpeedText(progress.SpeedRpm)));
  if (progress.StandstillSecondsLeft) {
    speed += u", waiting for standstill, %1 s left"_s.arg(std::ceil(*progress.StandstillSecondsLeft));
  }
  speed_->setText(speed);
  remaining_->setText(u"At most %1 min remaining"_s.arg(MinutesText(progress.SecondsLeft)));
}

double FrmAutoDetect::Seconds() {
  return link_.ElapsedSeconds() * fanSecondsPerSecond_;
}

bool FrmAutoDetect::Wait(double seconds) {
  const double end = link_.ElapsedSeconds() + seconds / fanSecondsPerSecond_;
  while (!cancelled_) {
    const double left = end - link_.ElapsedSeconds();
    if (left <= 0) return true;
    link_.Delay(std::min(left, sliceSeconds));
  }
  return false;
}

void FrmAutoDetect::reject() {
  cancelled_ = true;
  // The run itself hides the window, once the configuration is back: until then it keeps input from the others.
  if (!running_) QDialog::reject();
}

}  // namespace krx
