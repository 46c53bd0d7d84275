// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/ui/frmautodetect.h"

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>

#include "registers/numerics.h"

namespace krx {
namespace {

// How long a click on Cancel may go unnoticed.
constexpr double sliceSeconds = 0.05;

QLabel* AddLabel(QVBoxLayout& layout, const char* name, const QString& text = {}) {
  auto* const label = new QLabel(text);
  label->setObjectName(name);
  layout.addWidget(label);
  return label;
}

QProgressBar* AddBar(QVBoxLayout& layout, const char* name, const QString& accessibleName) {
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
  return QString("%1:%2").arg(whole / 60).arg(whole % 60, 2, 10, QLatin1Char('0'));
}

}  // namespace

FrmAutoDetect::FrmAutoDetect(Link& link, OwedWrites& owed, const FanCommon& fans, ChipTurns& turns,
                             double fanSecondsPerSecond, QWidget* parent)
    : QDialog(parent), link_(link), owed_(owed), fans_(fans), turns_(turns), fanSecondsPerSecond_(fanSecondsPerSecond) {
  setObjectName("frmAutoDetect");
  setWindowTitle("Automatic Parameter Detection");
  // Input to the other windows is dropped while this one is shown, so that no click is carried out afterwards.
  setWindowModality(Qt::ApplicationModal);
  auto* const layout = new QVBoxLayout(this);
  auto* const heading = AddLabel(*layout, "lblHeading", "Determining Minimum PWM ...");
  QFont font = heading->font();
  font.setBold(true);
  heading->setFont(font);
  AddLabel(*layout, "lblDuration", "This process may take several minutes");
  checking_ = AddLabel(*layout, "lblChecking", "Checking PWM =");
  values_ = AddBar(*layout, "prgValues", "Tested duties");
  readings_ = AddBar(*layout, "prgReadings", "Readings of this duty");
  speed_ = AddLabel(*layout, "lblSpeed");
  remaining_ = AddLabel(*layout, "lblRemaining");
  auto* const cancel = new QPushButton("Cancel");
  cancel->setObjectName("cmdCancel");
  layout->addWidget(cancel, 0, Qt::AlignRight);
  connect(cancel, &QPushButton::clicked, this, [this] { cancelled_ = true; });
  setMinimumWidth(fontMetrics().horizontalAdvance('m') * 30);
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
  checking_->setText(QString("Checking PWM =%1%").arg(progress.Duty));
  values_->setValue(static_cast<int>(progress.Values));
  readings_->setValue(static_cast<int>(progress.Readings));
  QString speed = QString("Speed: %1").arg(QString::fromStdString(SpeedText(progress.SpeedRpm)));
  if (progress.StandstillSecondsLeft) {
    speed += QString(", waiting for standstill, %1 s left").arg(std::ceil(*progress.StandstillSecondsLeft));
  }
  speed_->setText(speed);
  remaining_->setText(QString("At most %1 min remaining").arg(MinutesText(progress.SecondsLeft)));
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
