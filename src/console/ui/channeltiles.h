// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>
#include <array>
#include <cstddef>

#include "console/visualmodel.h"

namespace krx {

class ChannelTile;
class Indicator;

/// The column of the twelve channels in their groups; it scrolls in a low window.
class ChannelTiles : public QScrollArea {
  Q_OBJECT
 public:
  explicit ChannelTiles(QWidget* parent = nullptr);

  /// Captions, marks, trace colours and which channels there are.
  void ShowFrames(const VisualState& state);
  /// A channel's readout with its unit. old: it is no longer refreshed. alarm: why its alarm is set.
  void ShowReading(const VisualState& state, std::size_t channel, const QString& readout, bool measured, bool old,
                   const QString& alarm);

 signals:
  void Selected(std::size_t channel);

 private:
  ChannelTile* MakeTile(std::size_t channel);

  std::array<ChannelTile*, channelCount> tiles_{};
  std::array<Indicator*, channelCount> lamps_{};
};

}  // namespace krx
