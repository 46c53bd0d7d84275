// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollArea>
#include <array>
#include <cstddef>

#include "monitor/visualmodel.h"

namespace krx {

class ChannelTile;
class Indicator;

/// What a tile says beside its caption.
struct TileReading {
  QString Readout;  ///< with its unit
  bool Measured = false;
  bool Old = false;      ///< the value is no longer refreshed
  QString Alarm;         ///< why the alarm is set; empty: it is not
  bool LampOld = false;  ///< nor is the alarm
};

/// The column of the twelve channels in their groups; it scrolls in a low window.
class ChannelTiles : public QScrollArea {
  Q_OBJECT
 public:
  explicit ChannelTiles(QWidget* parent = nullptr);

  /// Captions, marks, trace colours and which channels there are.
  void ShowFrames(const VisualState& state);
  void ShowReading(const VisualState& state, std::size_t channel, const TileReading& reading);

 signals:
  void Selected(std::size_t channel);

 private:
  ChannelTile* MakeTile(std::size_t channel);

  std::array<ChannelTile*, channelCount> tiles_{};
  std::array<Indicator*, channelCount> lamps_{};
};

}  // namespace krx
