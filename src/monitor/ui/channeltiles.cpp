// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/channeltiles.h"

#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>
#include <optional>
#include <utility>

#include "controls/ui/indicator.h"
#include "controls/ui/labels.h"
#include "monitor/ui/channeltile.h"
#include "monitor/ui/chartcard.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

struct Group {
  QStringView Title;
  std::size_t First;
  std::size_t End;
};
constexpr std::array<Group, 3> groups{{{u"TEMPERATURES", 0, 3}, {u"FANS", 3, 7}, {u"VOLTAGES", 7, 12}}};

/// A readout's number and its unit: "47.25C" and "2400 RPM" part at the first character that belongs to no number.
std::pair<QString, QString> SplitReadout(const QString& readout) {
  qsizetype end = 0;
  while (end < readout.size() && (readout[end].isDigit() || u"-.+–"_s.contains(readout[end]))) ++end;
  return {readout.left(end), readout.mid(end).trimmed()};
}

IndicatorState LampOf(const VisualState& state, std::size_t channel) {
  if (!state.ChannelShown[channel]) return IndicatorState::Hidden;
  switch (state.Alarms[channel]) {
    case AlarmState::Ok:
      return IndicatorState::Ok;
    case AlarmState::Bad:
      return IndicatorState::Bad;
    case AlarmState::Unread:
      break;
  }
  return IndicatorState::Unknown;
}

}  // namespace

ChannelTiles::ChannelTiles(QWidget* parent) : QScrollArea(parent) {
  auto* content = new QWidget;
  auto* column = new QVBoxLayout(content);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(5);
  for (const Group& group : groups) {
    QLabel* title = MakeLabel({}, 0.9, true, true);
    title->setText(group.Title.toString());
    column->addWidget(title);
    for (std::size_t channel = group.First; channel < group.End; ++channel) column->addWidget(MakeTile(channel), 1);
    column->addSpacing(4);
  }
  column->addStretch(1);

  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  setWidget(content);
  // The bar of a low window stands beside the tiles, not over their units.
  const int width = tiles_[0]->sizeHint().width();
  setFixedWidth(width);
  connect(verticalScrollBar(), &QScrollBar::rangeChanged, this, [this, width](int, int maximum) {
    setFixedWidth(width + (maximum > 0 ? verticalScrollBar()->sizeHint().width() : 0));
  });
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

ChannelTile* ChannelTiles::MakeTile(std::size_t channel) {
  lamps_[channel] = new Indicator;
  lamps_[channel]->setObjectName(u"SSPanel11_%1"_s.arg(channel));
  auto* tile = new ChannelTile(lamps_[channel]);
  tiles_[channel] = tile;
  tile->setObjectName(u"visualdisplaytext_%1"_s.arg(channel));
  tile->setToolTip(u"Clicking will cause the bargraph to measure details of this parameter"_s);
  connect(tile, &ChannelTile::clicked, this, [this, channel] { emit Selected(channel); });
  return tile;
}

void ChannelTiles::ShowFrames(const VisualState& state) {
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    ChannelTile& tile = *tiles_[channel];
    tile.setText(QString::fromStdString(state.Captions[channel]));
    tile.setAccessibleName(tile.text());
    lamps_[channel]->setAccessibleName(u"Alarm of %1"_s.arg(tile.text()));
    tile.SetMark(state.Marks[channel]);
    tile.setVisible(state.ChannelShown[channel]);
    // Only what the chart in sight draws has a colour: the other chart uses the same ones again.
    const bool drawn = channels[channel].Chart == state.ShownStrip;
    tile.SetTrace(drawn ? std::optional(ChartCard::TraceNumber(channel)) : std::nullopt);
  }
}

void ChannelTiles::ShowReading(const VisualState& state, std::size_t channel, const TileReading& reading) {
  const auto [value, unit] = SplitReadout(reading.Readout);
  ChannelTile& tile = *tiles_[channel];
  tile.SetReading(reading.Measured ? value : u"–"_s, unit);
  tile.SetOld(reading.Old && reading.Measured && value != u"–"_s);
  tile.SetAlarm(reading.LampOld ? QString() : reading.Alarm);
  lamps_[channel]->SetState(LampOf(state, channel));
  lamps_[channel]->SetStale(reading.LampOld);  // also where the tile has no value that could be old
}

}  // namespace krx
