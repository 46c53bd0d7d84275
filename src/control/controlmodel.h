// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace krx {

class Board;
class LinkNewComPort06;
class PinSettings;
struct BoardState;

/// What the tab works on; all of it outlives the tab.
struct ControlParts {
  LinkNewComPort06& ChipLink;
  Board& EvalBoard;
  const BoardState& BoardFlags;
  PinSettings& Pins;
  double& ThermPeriod;  ///< s
};

/// What the boxes and options of the "Control " tab show.
struct ControlState {
  bool HasBoard = false;  ///< switches and heaters exist only on the evaluation board

  bool Therm = false;  ///< chkPROCHOT; the two options are enabled with it and both clear without it
  bool ThermOn5v = false;
  bool ThermOnTach4 = false;

  bool AlertOnPwm2 = false;   ///< chkAlert and chkPWM2Alert: two boxes for the same bit
  bool AlertOn25v = false;    ///< chk25vAlert and opt25V
  bool NoAlertOn25v = false;  ///< optPWM2
  bool Alert25vOffered = false;
  bool VidShown = false;
  bool VidProbed = true;  ///< not in a read-only run

  std::array<bool, 2> Diodes{};
  std::array<bool, 5> Vid{};
  std::array<bool, 2> Heaters{};
  std::string ThermPeriod;  ///< s
};

/// The rules of the "Control " tab. Every handler throws what the link throws; the state then shows what was reached.
class ControlModel {
 public:
  explicit ControlModel(const ControlParts& parts);

  const ControlState& State() const { return state_; }

  /// The tab is shown: pin settings, switches and heaters are taken from chip and board.
  void Enter();

  // Clicks. Each is a read-modify-write of one bit and the refresh of its group.
  void SetTherm(bool enabled);   ///< chkPROCHOT
  void SetThermPin(bool on5v);   ///< opt5V, optTach4
  void SetAlertOnPwm2(bool on);  ///< chkAlert, chkPWM2Alert
  void SetAlertOn25v(bool on);   ///< chk25vAlert, opt25V, optPWM2

  // Clicks on boxes that drive the board only.
  void SetDiode(std::size_t diode, bool closed);
  void SetVid(std::size_t input, bool closed);
  void SetHeater(std::size_t heater, bool on);

  /// The field "Set THERM# Read Time": the number that the text begins with, negative ones count as 0.
  void SetThermPeriod(const std::string& text);

  /// The pin modes were derived anew by somebody else: the reading cycle, another page.
  void ShowPins();
  /// The switches were changed by somebody else.
  void ShowSwitches();

 private:
  void RefreshTherm();
  void RefreshAlert();

  ControlParts parts_;
  ControlState state_;
};

}  // namespace krx
