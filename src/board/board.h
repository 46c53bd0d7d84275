// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <functional>

#include "board/boardstate.h"
#include "board/heater.h"
#include "board/switch.h"
#include "board/switchmap.h"

namespace krx {

/// The evaluation board: four switch devices, two heaters and the operations of the main window's check boxes. On the
/// SMBus there is no board and every operation does nothing.
class Board {
 public:
  Board(Link& link, BoardState& state, OwedWrites& owed);

  /// Switches both heaters off, heater 1 first. If one fails, the other is still switched off; the error is thrown
  /// last.
  void SwitchHeatersOff();

  /// Heater check boxes: stores the setting, then writes it. heater: 0 or 1.
  void SetHeater(std::size_t heater, bool on);
  /// Diode check boxes: closes or opens the three switches of a Temp group. diode: 0 or 1.
  void SetDiode(std::size_t diode, bool closed);
  bool DiodeClosed(std::size_t diode) const;
  /// VID check boxes: input 0..4 is U3A..U3E.
  void SetVid(int input, bool closed);

  /// Toggles one of the 32 switches of the access dialog and writes the set states of all devices: U3, U4, U5, U6.
  void ToggleSwitch(std::size_t index);
  bool SwitchClosed(std::size_t index) const;
  bool SwitchKnown(std::size_t index) const;
  /// Reads all devices, U3, U4, U5, U6.
  void ReadAll();

  Switch& Device(SwitchDevice device) { return switches_.at(static_cast<std::size_t>(device)); }
  const Switch& Device(SwitchDevice device) const { return switches_.at(static_cast<std::size_t>(device)); }
  Heater& GetHeater(std::size_t heater) { return heaters_.at(heater); }
  Link& GetLink() { return link_; }
  BoardState& State() { return state_; }

  /// Called after every change of a switch's known state.
  std::function<void()> SwitchesChanged;
  void ReportSwitches() const {
    if (SwitchesChanged) SwitchesChanged();
  }
  /// Reports at its end, also after a failed transfer, since the set states have changed anyway.
  class ReportScope {
   public:
    explicit ReportScope(const Board& board) : board_(board) {}
    ~ReportScope() { board_.ReportSwitches(); }
    ReportScope(const ReportScope&) = delete;
    ReportScope& operator=(const ReportScope&) = delete;

   private:
    const Board& board_;
  };

 private:
  Link& link_;
  BoardState& state_;
  std::array<Switch, 4> switches_;
  std::array<Heater, 2> heaters_;
};

}  // namespace krx
