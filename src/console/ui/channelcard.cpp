// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/channelcard.h"

#include <QFormLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <cmath>
#include <utility>

#include "console/limitentry.h"
#include "console/ui/labels.h"
#include "console/ui/limitbox.h"
#include "controls/ui/limitgauge.h"
#include "controls/ui/palette.h"

namespace krx {

ChannelCard::ChannelCard(QWidget* parent) : QFrame(parent) {
  MakeCard(*this);
  setObjectName(QStringLiteral("pnlChannel"));
  caption_ = MakeLabel("lblChannel", 0.95, true, true);
  readout_ = MakeLabel("lblReadout", 2.2, true);
  summary_ = MakeLabel("lblSummary", 0.95, false, true);
  summary_->setWordWrap(true);
  gauge_ = new LimitGauge;
  gauge_->setObjectName(QStringLiteral("limits_gauge"));
  gauge_->setAccessibleName(tr("Limits of the selected channel"));
  highBox_ = new LimitBox("txtHighLimit", tr("High limit"));
  lowBox_ = new LimitBox("txtLowLimit", tr("Low limit"));

  auto* limits = new QFormLayout;
  limits->addRow(tr("High limit"), highBox_);
  limits->addRow(highBox_->RangeLabel());
  limits->addRow(tr("Low limit"), lowBox_);
  limits->addRow(lowBox_->RangeLabel());
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(14, 12, 14, 12);
  column->setSpacing(6);
  column->addWidget(caption_);
  column->addWidget(readout_);
  column->addWidget(summary_);
  column->addWidget(gauge_, 1);
  column->addLayout(limits);
  // Wide enough for the longest readout: a card that grew with its text would push the chart about.
  const QMargins margins = column->contentsMargins();
  setFixedWidth(readout_->fontMetrics().horizontalAdvance(QStringLiteral("20000 RPM")) + margins.left() +
                margins.right() + 4);

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

void ChannelCard::ShowReading(const VisualState& state, std::size_t channel, const SeenRange& seen, bool old) {
  SetTextIfChanged(*caption_, QString::fromStdString(state.Captions[channel]).toUpper());
  SetNamedText(*readout_, QString::fromStdString(state.Captions[channel]), QString::fromStdString(state.Readout));
  const bool known = !std::isnan(state.Gauge.Value());
  SetMuted(*readout_, old || !known);
  QString summary = state.Alarms[channel] == AlarmState::Ok    ? tr("within limits")
                    : state.Alarms[channel] == AlarmState::Bad ? tr("alarm")
                                                               : tr("not read yet");
  if (old && state.Alarms[channel] != AlarmState::Unread) summary = tr("old value");
  if (!known) summary = tr("not known: the pulses (7Bh) were not read, F5 tries again");
  if (seen.Any) {
    const int decimals = channels[channel].Kind == ChannelKind::Temperature ? 2
                         : channels[channel].Kind == ChannelKind::Fan       ? 0
                                                                            : 3;
    summary += tr("\nmin %1 · max %2").arg(seen.Minimum, 0, 'f', decimals).arg(seen.Maximum, 0, 'f', decimals);
  }
  SetTextIfChanged(*summary_, summary);
  gauge_->SetValue(state.Gauge.Value());
  gauge_->SetStale(old);
}

void ChannelCard::SetRules(const LimitRules& rules) {
  gauge_->SetStepEnd(rules.StepEnd);
  for (LimitBox* box : {highBox_, lowBox_}) box->SetBusy(rules.Busy);
}

LimitBox& ChannelCard::Box(Marker marker) {
  return marker == Marker::High ? *highBox_ : *lowBox_;
}

void ChannelCard::Refuse(Marker marker, const QString& range) {
  Box(marker).Refuse(range);
}

void ChannelCard::Release(Marker marker) {
  Box(marker).Release();
}

void ChannelCard::ShowLimits(const GaugeMarkers& markers, std::size_t channel, bool powerMode) {
  if (std::exchange(channel_, channel) != channel) {
    for (LimitBox* box : {highBox_, lowBox_}) box->Release();
  }
  if (gauge_->Markers().Scale() != markers.Scale() || !markers.IsPlaced(Marker::Low))
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
