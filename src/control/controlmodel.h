// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "monitor/livingvalue.h"

namespace krx {

class Board;
class PinSettings;
struct BoardState;

/// The objects used by the tab; all of them outlive it.
struct ControlParts {
  Link& ChipLink;
  Board& EvalBoard;
  const BoardState& BoardFlags;
  PinSettings& Pins;
  double& ThermPeriod;  ///< s
  LivingParts Living;
};

/// Known state of one switch, or of the three switches of a diode.
enum class SwitchState { NotRead, Open, Closed, Mixed };

/// State of the boxes and options of the "Control " tab.
struct ControlState {
  bool HasBoard = false;  ///< switches and heaters exist only on the evaluation board

  bool PinsRead = false;  ///< the bytes that determine the pin functions were seen on the bus
  bool Therm = false;     ///< chkPROCHOT; enables the two options, which are both clear without it
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
  std::array<SwitchState, 2> DiodeSwitches{};
  std::optional<int> ClosedSwitches;  ///< of the board's 32; empty until all of them are known
  std::array<bool, 2> Heaters{};
  std::array<bool, 2> HeatersRead{};
  std::string ThermPeriod;  ///< s
};

/// The rules of the "Control " tab. Every handler throws what the link throws; the state then shows what was completed.
class ControlModel {
 public:
  explicit ControlModel(const ControlParts& parts);

  const ControlState& State() const { return state_; }

  /// The tab is shown: reads pin settings, switches and heaters from chip and board.
  void Enter();

  // Clicks. Each is a read-modify-write of one bit, followed by a refresh of its group.
  void SetTherm(bool enabled);   ///< chkPROCHOT
  void SetThermPin(bool on5v);   ///< opt5V, optTach4
  void SetAlertOnPwm2(bool on);  ///< chkAlert, chkPWM2Alert
  void SetAlertOn25v(bool on);   ///< chk25vAlert, opt25V, optPWM2

  // Clicks on boxes that drive the board only.
  void SetDiode(std::size_t diode, bool closed);
  void SetVid(std::size_t input, bool closed);
  void SetHeater(std::size_t heater, bool on);

  /// The field "Set THERM# Read Time": the number at the beginning of the text; negative numbers count as 0.
  void SetThermPeriod(const std::string& text);

  /// The pin modes were refreshed elsewhere: by the reading cycle or another page.
  void ShowPins();
  /// The switches were changed elsewhere.
  void ShowSwitches();

 private:
  void RefreshTherm();
  void RefreshAlert();

  ControlParts parts_;
  ControlState state_;
};

/// What the head and the bottom line of a section say.
struct SectionWords {
  enum class State { NotRead, Off, On, Unclear };
  State Now = State::NotRead;
  std::string Word = "not read";
  std::string Consequence;  ///< one sentence, or nothing
};
SectionWords ThermWords(const ControlState& state);
SectionWords AlertWords(const ControlState& state);
SectionWords SensorWords(const ControlState& state);
SectionWords HeaterWords(const ControlState& state);

/// "U4A, U4B, U4C closed". diode: 0 or 1.
std::string DiodeWords(const ControlState& state, std::size_t diode);
/// "15 of 32 switches closed"
std::string SwitchesWords(const ControlState& state);

}  // namespace krx
