// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/ui/continuouscard.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "controls/ui/labels.h"

namespace krx {
using namespace Qt::StringLiterals;
namespace {

constexpr int readMilliseconds = 10;
constexpr int rateMilliseconds = 500;

}  // namespace

ContinuousCard::ContinuousCard(ChipTurns& turns, std::function<void()> read)
    : Card(QString()),
      continuousTimer_(turns, "Continuous reading", readMilliseconds,
                       [this, read = std::move(read)] {
                         read();
                         rate_.Read();
                       }),
      switch_(new QPushButton(u"Continuous Reading"_s)),
      label_(MakeLabel(u"continuous_reading_label"_s, 1, false)),
      rateLabel_(MakeLabel(u"lblReadingRate"_s, 0.92, false, true)) {
  setAccessibleName(u"Continuous Reading"_s);
  switch_->setObjectName(u"SSRibbon5"_s);
  switch_->setCheckable(true);
  auto* const row = new QHBoxLayout;
  row->addWidget(switch_);
  row->addWidget(label_, 1);
  row->addWidget(rateLabel_);
  Body().addLayout(row);
  time_.start();
  connect(switch_, &QPushButton::clicked, this, &ContinuousCard::SetOn);
  connect(&rateTimer_, &QTimer::timeout, this, &ContinuousCard::ShowRate);
  SetOn(false);
}

double ContinuousCard::Seconds() const {
  return static_cast<double>(time_.nsecsElapsed()) / 1e9;
}

void ContinuousCard::SetOn(bool on) {
  switch_->setChecked(on);
  label_->setText(on ? u"Continuous Reading is On"_s : u"Continuous Reading is Off"_s);
  rateLabel_->clear();
  if (on) {
    rate_.Start(Seconds());
    continuousTimer_.SetInterval(readMilliseconds);
    continuousTimer_.Start();
    rateTimer_.start(rateMilliseconds);
  } else {
    continuousTimer_.Stop();
    rateTimer_.stop();
  }
}

void ContinuousCard::ShowRate() {
  const auto rate = rate_.PerSecond(Seconds());
  SetNamedText(*rateLabel_, u"Readings a second"_s, rate ? u"%1 /s"_s.arg(std::lround(*rate)) : QString());
}

}  // namespace krx
