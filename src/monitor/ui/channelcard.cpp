// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/channelcard.h"

#include <QGridLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>
#include <cmath>
#include <limits>
#include <utility>

#include "controls/ui/labels.h"
#include "controls/ui/limitgauge.h"
#include "controls/ui/palette.h"
#include "monitor/limitentry.h"
#include "monitor/ui/limitbox.h"
#include "registers/numerics.h"

namespace krx {

using namespace Qt::StringLiterals;

ChannelCard::ChannelCard(QWidget* parent) : QFrame(parent) {
  MakeCard(*this);
  setObjectName(u"pnlChannel"_s);
  caption_ = MakeLabel(u"lblChannel"_s, 0.95, true, true);
  readout_ = MakeLabel(u"lblReadout"_s, 2.2, true);
  summary_ = MakeLabel(u"lblSummary"_s, 0.95, false, true);
  summary_->setWordWrap(true);
  gauge_ = new LimitGauge;
  gauge_->setObjectName(u"limits_gauge"_s);
  gauge_->setAccessibleName(u"Limits of the selected channel"_s);
  highBox_ = new LimitBox(u"txtHighLimit"_s, u"High limit"_s);
  lowBox_ = new LimitBox(u"txtLowLimit"_s, u"Low limit"_s);

  // No form: with a hidden row it gives the last one no room when a range of one line appears.
  auto* limits = new QGridLayout;
  int row = 0;
  for (const auto& [name, box] : {std::pair(u"High limit"_s, highBox_), std::pair(u"Low limit"_s, lowBox_)}) {
    auto* label = new QLabel(name);
    label->setBuddy(box);
    limits->addWidget(label, row, 0);
    limits->addWidget(box, row, 1);
    limits->addWidget(box->RangeLabel(), row + 1, 0, 1, 2);
    row += 2;
  }
  limits->setColumnStretch(1, 1);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(14, 12, 14, 12);
  column->setSpacing(6);
  column->addWidget(caption_);
  column->addWidget(readout_);
  column->addWidget(summary_);
  column->addWidget(MakeRange());
  column->addWidget(gauge_, 1);
  column->addLayout(limits);
  // Wide enough for the longest readout: a card that grew with its text would push the chart about.
  const QMargins margins = column->contentsMargins();
  setFixedWidth(readout_->fontMetrics().horizontalAdvance(u"20000 RPM"_s) + margins.left() + margins.right() + 4);

  connect(gauge_, &LimitGauge::MarkerMoving, this, &ChannelCard::MarkerMoving);
  connect(gauge_, &LimitGauge::MarkerReleased, this, &ChannelCard::MarkerReleased);
  for (const Marker marker : {Marker::High, Marker::Low}) {
    connect(&Box(marker), &LimitBox::Typed, this,
            [this, marker](const QString& text) { emit LimitTyped(marker, text); });
    connect(&Box(marker), &LimitBox::Stepped, this, [this, marker](int steps) { emit LimitStepped(marker, steps); });
  }
}

void ChannelCard::SetReadOnly() {
  readOnly_ = true;
  gauge_->setEnabled(false);
  highBox_->setEnabled(false);
  lowBox_->setEnabled(false);
}

QWidget* ChannelCard::MakeRange() {
  auto* range = new QWidget;
  auto* column = new QVBoxLayout(range);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  extremes_ = MakeLabel(u"lblRange"_s, 0.95, false, true);
  mean_ = MakeLabel(u"lblMean"_s, 0.95, false, true);
  auto* reset = new QToolButton;
  reset->setObjectName(u"cmdResetRange"_s);
  reset->setText(u"Reset"_s);
  reset->setAccessibleName(u"Reset minimum, maximum and mean"_s);
  reset->setToolTip(u"Resets minimum, maximum and mean of this channel"_s);
  connect(reset, &QToolButton::clicked, this, &ChannelCard::RangeResetRequested);
  column->addWidget(extremes_);
  auto* row = new QHBoxLayout;
  row->addWidget(mean_, 1);
  row->addWidget(reset);
  column->addLayout(row);
  return range;
}

void ChannelCard::ShowReading(const VisualState& state, std::size_t channel, const ChannelReport& report) {
  const bool alarm = !report.AlarmWords.empty();
  SetTextIfChanged(*caption_, QString::fromStdString(state.Captions[channel]).toUpper());
  const bool known = !std::isnan(state.Gauge.Value());
  SetNamedText(*readout_, QString::fromStdString(state.Captions[channel]),
               report.Measured ? QString::fromStdString(state.Readout) : u"–"_s);
  const bool old = report.Old || report.Failed;
  SetBad(*readout_, alarm && !report.Old, old || !known);
  QString summary = alarm                                     ? QString::fromStdString(report.AlarmWords)
                    : state.Alarms[channel] == AlarmState::Ok ? u"within limits"_s
                                                              : u"not read yet"_s;
  if (!known)
    summary = u"unknown: pulses (7Bh) not read yet, F5 retries"_s;
  else if (report.NotMonitoring)
    summary = u"not monitoring"_s;
  else if (report.Old && state.Alarms[channel] != AlarmState::Unread)
    summary = report.Measured ? u"value out of date"_s : u"not read yet"_s;
  else if (report.Failed && !alarm)
    summary = u"value out of date: reading fails"_s;
  else if (report.PulsesDiffer && !alarm)
    summary = u"pulses (7Bh) changed: F5 reads them"_s;
  SetTextIfChanged(*summary_, summary);
  SetBad(*summary_, alarm && !report.Old, true);
  ShowRange(report.Range, channel, report.PowerMode);
  gauge_->SetValue(report.Measured ? state.Gauge.Value() : std::numeric_limits<double>::quiet_NaN());
  gauge_->SetStale(old);
}

void ChannelCard::ShowRange(const SeenRange& range, std::size_t channel, bool powerMode) {
  const int decimals = ChannelQuantity(channel, powerMode).Decimals;
  const auto text = [&](double value) {
    return range.Any() ? QString::fromStdString(FormatFixed(value, decimals)) : u"–"_s;
  };
  SetTextIfChanged(*extremes_, u"min %1 · max %2"_s.arg(text(range.Minimum), text(range.Maximum)));
  SetTextIfChanged(*mean_, u"mean %1"_s.arg(text(range.Mean)));
}

void ChannelCard::SetStepEnd(std::function<double(double, double)> stepEnd) {
  gauge_->SetStepEnd(std::move(stepEnd));
}

LimitBox& ChannelCard::Box(Marker marker) const {
  return marker == Marker::High ? *highBox_ : *lowBox_;
}

void ChannelCard::Refuse(Marker marker, const QString& range) {
  Box(marker).Refuse(range);
}

bool ChannelCard::IsRefused(Marker marker) const {
  return Box(marker).IsRefused();
}

bool ChannelCard::HasLimits() const {
  return gauge_->Markers().IsPlaced(Marker::Low);
}

void ChannelCard::Release(Marker marker) {
  Box(marker).Release();
}

void ChannelCard::ShowLimits(const GaugeMarkers& markers, std::size_t channel, bool powerMode) {
  // A drag ends with its channel: its release would write to the next one.
  const bool changed = std::exchange(channel_, channel) != channel;
  if (changed) {
    for (LimitBox* box : {highBox_, lowBox_}) box->Release();
  }
  if (changed || gauge_->Markers().Scale() != markers.Scale() || !markers.IsPlaced(Marker::Low))
    gauge_->SetScale(markers.Scale().Minimum, markers.Scale().Maximum);
  for (const Marker marker : {Marker::Low, Marker::High}) {
    if (!markers.IsPlaced(marker)) continue;
    if (markers.IsDraggable(marker))
      gauge_->Place(marker, markers.ValueOf(marker), markers.Bytes(marker));
    else
      gauge_->Park(marker, markers.ValueOf(marker));
  }
  for (const Marker marker : {Marker::Low, Marker::High}) {
    Box(marker).ShowLimit(QString::fromStdString(LimitText(channel, marker, powerMode, markers)));
    Box(marker).setEnabled(markers.IsDraggable(marker) && !readOnly_);
  }
}

}  // namespace krx
