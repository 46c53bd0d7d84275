// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

#include "control/controlreadings.h"
#include "control/ui/controlchoice.h"
#include "controls/ui/card.h"

class QBoxLayout;
class QLabel;

namespace krx {

class ReadingLabel;
class Sparkline;
class StateMark;

/// "Sensors": the board's switches of each diode, with the temperature that it measures.
class SensorSection : public Card {
  Q_OBJECT
 public:
  explicit SensorSection(const ControlAccess& access);
  void ShowState(const ControlState& state);
  void ShowReadings(const ControlState& state, const ControlReadings& readings);
  /// The name of a zone below its value.
  void SetCompact(bool compact);

 private:
  bool readOnly_;
  std::array<QCheckBox*, 2> boxes_{};
  std::array<QLabel*, 2> switches_{};
  std::array<QBoxLayout*, 2> zones_{};
  std::array<ReadingLabel*, 2> values_{};
};

/// "Heaters": each with the temperature of the zone that it warms.
class HeaterSection : public Card {
  Q_OBJECT
 public:
  explicit HeaterSection(const ControlAccess& access);
  void ShowState(const ControlState& state);
  void ShowReadings(const ControlParts& parts, const ControlReadings& readings);
  /// Without the lines of the last minute.
  void SetCompact(bool compact);

 private:
  bool readOnly_;
  std::array<QCheckBox*, 2> boxes_{};
  std::array<StateMark*, 2> marks_{};
  std::array<QLabel*, 2> words_{};
  std::array<Sparkline*, 2> lines_{};
  std::array<ReadingLabel*, 2> values_{};
  std::array<QLabel*, 2> trends_{};
};

/// `pnlVIDBits`: the switches of the VID inputs in one row.
class VidStrip : public Card {
  Q_OBJECT
 public:
  explicit VidStrip(const ControlAccess& access);
  void ShowState(const ControlState& state);
  void ShowReadings(const ControlReadings& readings);

 private:
  bool readOnly_;
  std::array<QCheckBox*, 5> boxes_{};
  QLabel* register_;
};

}  // namespace krx
