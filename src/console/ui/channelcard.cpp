// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/channelcard.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>

#include "console/ui/labels.h"
#include "controls/ui/limitgauge.h"
#include "controls/ui/palette.h"

namespace krx {
namespace {

/// A typed limit is written to the chip, so the wheel, which turns by accident, changes nothing.
class LimitBox : public QDoubleSpinBox {
 public:
  LimitBox(const char* name, const QString& accessibleName) {
    setObjectName(QString::fromLatin1(name));
    setAccessibleName(accessibleName);
    setKeyboardTracking(false);  // a value is taken when its entry is finished, not at each digit
    setLocale(QLocale::c());
    setFocusPolicy(Qt::StrongFocus);
    setEnabled(false);
  }

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

struct UnitFormat {
  QString Unit;  ///< with its leading blank
  int Decimals;
  double Step;
};

UnitFormat FormatOf(std::size_t channel, bool powerMode) {
  switch (channels[channel].Kind) {
    case ChannelKind::Temperature:
      return {QStringLiteral(" °C"), 0, 1};
    case ChannelKind::Fan:
      return {QStringLiteral(" RPM"), 0, 50};
    case ChannelKind::Voltage:
      break;
  }
  if (channel == currentChannel && powerMode) return {QStringLiteral(" A"), 2, 1};
  return {QStringLiteral(" V"), 3, 0.05};
}

}  // namespace

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
  limits->addRow(tr("Low limit"), lowBox_);
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
  connect(highBox_, &QDoubleSpinBox::valueChanged, this,
          [this](double value) { gauge_->MoveByUser(Marker::High, value); });
  connect(lowBox_, &QDoubleSpinBox::valueChanged, this,
          [this](double value) { gauge_->MoveByUser(Marker::Low, value); });
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
  SetMuted(*readout_, old);
  QString summary = state.Alarms[channel] == AlarmState::Ok    ? tr("within limits")
                    : state.Alarms[channel] == AlarmState::Bad ? tr("alarm")
                                                               : tr("not read yet");
  if (old && state.Alarms[channel] != AlarmState::Unread) summary = tr("old value");
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

void ChannelCard::FillBox(QDoubleSpinBox& box, Marker marker, const GaugeMarkers& markers) {
  const UnitFormat format = FormatOf(channel_, powerMode_);
  const double value = markers.ValueOf(marker);
  const QSignalBlocker blocker(box);
  box.setEnabled(markers.IsDraggable(marker) && !readOnly_);
  box.setDecimals(format.Decimals);
  box.setSingleStep(format.Step);
  box.setSuffix(format.Unit);
  // A limit that the chip holds outside the scale is shown as it is.
  box.setRange(std::min(markers.Scale().Minimum, value), std::max(markers.Scale().Maximum, value));
  box.setValue(value);
  if (!markers.IsPlaced(marker)) box.clear();  // not read: no number, instead of one that is not the chip's
}

void ChannelCard::ShowLimits(const GaugeMarkers& markers, std::size_t channel, bool powerMode) {
  channel_ = channel;
  powerMode_ = powerMode;
  if (gauge_->Markers().Scale() != markers.Scale() || !markers.IsPlaced(Marker::Low))
    gauge_->SetScale(markers.Scale().Minimum, markers.Scale().Maximum);
  for (const Marker marker : {Marker::Low, Marker::High}) {
    if (!markers.IsPlaced(marker)) continue;
    if (markers.IsDraggable(marker))
      gauge_->Place(marker, markers.ValueOf(marker), markers.Bytes(marker));
    else
      gauge_->Park(marker, markers.ValueOf(marker));
  }
  FillBox(*lowBox_, Marker::Low, markers);
  FillBox(*highBox_, Marker::High, markers);
}

}  // namespace krx
