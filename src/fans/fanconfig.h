// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "board/board.h"
#include "fans/fancommon.h"
#include "link/linknewcomport06.h"

namespace krx {

inline constexpr std::size_t pwmCount = 3;
inline constexpr std::size_t fanCount = 4;

/// What the fan dialog shows for one fan: list items by their text, check marks, and numbers as typed.
struct FanFields {
  std::string FanType = "CPU Fan";
  std::string Behaviour;
  std::string SpinUp;
  std::string Frequency;
  std::string MinimumDuty;    ///< percent
  bool HysteresisOn = false;  ///< the register bit is the inverse
  bool ActiveHigh = false;
  bool EnhancedAcoustics = false;
  std::string RampRate;
  std::string TachLimit;  ///< RPM
  bool TwoWire = false;
  std::string ProgrammedPulses;  ///< "Measure"
  std::string ActualPulses;      ///< "Fan Is"
};
using AllFanFields = std::array<FanFields, fanCount>;

/// A pending field that cannot be encoded.
struct FanRefusal {
  std::string Message;
  FanSetting Setting;
  std::size_t Fan;
};

/// The byte of a percentage: 50 is 128, the chip's default. Empty outside 0..100 %.
std::optional<std::uint8_t> MinimumDutyByte(double percent);

/// Transfers the fan settings between the chip and plain fields. Fan n is PWM output n with tach input n; the fourth
/// fan has a tach input only.
class FanConfig {
 public:
  /// behaviourCodes: bits 7:5 of 0x5C..0x5E as used by the automatic control; kept up to date.
  FanConfig(Link& link, Board& board, FanCommon& fans, std::array<std::uint8_t, 3>& behaviourCodes);

  /// Reads fan index+1 into the fields; an index above 3 loads nothing. Throws what the link throws.
  void LoadFanSettings(std::size_t index, FanFields& fields);
  /// The same from the bytes last seen on the bus; reads only registers that were not seen yet.
  void LoadSeen(std::size_t index, FanFields& fields);

  /// The first pending field, by setting and then fan, that cannot be written; changes nothing.
  std::optional<FanRefusal> Check(const AllFanFields& fields) const;

  /// Writes every pending setting of all fans, thirteen steps in a fixed order, each a read-modify-write of its own
  /// bits. Run Check first. A failed transfer is thrown; the steps before it have taken effect. The flags stay set.
  void ApplyFanSettings(const AllFanFields& fields);

 private:
  bool Pending(FanSetting setting, std::size_t fan) const { return fans_.PendingChange.Has(setting, fan); }
  void LoadOutput(std::size_t k, FanFields& fields);
  void LoadTach(std::size_t t, FanFields& fields);
  void ApplyBehaviour(std::size_t k, const FanFields& fields);
  void ApplyPulses(std::size_t t, const FanFields& fields);
  void ApplyTachSource(std::size_t t, const FanFields& fields);
  void ApplyTachLimit(std::size_t t, const FanFields& fields);

  Link& link_;
  Board& board_;
  FanCommon& fans_;
  std::array<std::uint8_t, 3>& behaviourCodes_;
};

}  // namespace krx
