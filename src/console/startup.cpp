// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/startup.h"

#include <limits>
#include <optional>
#include <utility>

#include "board/boardsync.h"
#include "console/workbench.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "records/logcolumns.h"
#include "registers/chip.h"
#include "registers/codes.h"

namespace krx {
namespace {

struct Step {
  /// Read: repeated with F5. Board: changes the basis of the pin steps. Pins: repeated after the board steps.
  enum class Kind { Read, Heaters, Board, Pins };
  const char* Name;
  std::function<void()> Run;
  Kind What = Kind::Read;
};

/// Runs a step up to `tries` times and removes it from the pending steps on success. Returns the last failure.
std::optional<std::string> Try(const Step& step, int tries, Workbench& bench) {
  StartUpState& state = bench.Start;
  std::optional<std::string> problem;
  for (int count = 0; count < tries; ++count) {
    bench.ChipLink.ThrowIfGivenUp();
    try {
      step.Run();
      state.Owed.erase(step.Name);
      return std::nullopt;
    } catch (const CommsError& error) {
      if (state.Faulted) state.Faulted(step.Name, error);
      problem = std::string(step.Name) + ": " + error.BoxText();
    }
  }
  return problem;
}

void SwitchHeatersOff(Board& board) {
  // A late retry must not switch off a heater that the user has switched on since.
  for (const std::size_t heater : {0U, 1U}) {
    if (board.GetHeater(heater).SwitchedOnHere()) return;
  }
  board.SwitchHeatersOff();
}

void ReadProgrammedPulses(Workbench& bench) {
  bench.Fans.TakePulses(ReadByte(bench.ChipLink, chip::FanPulses));
}

void ReadPowerMode(Workbench& bench) {
  bench.Power.PowerMode = (ReadByte(bench.ChipLink, chip::Configuration1) & chip::CurrentInput) != 0;
}

void ReadBehaviour(Workbench& bench, std::size_t output) {
  const std::uint8_t byte = ReadByte(bench.ChipLink, chip::Outputs.at(output).Configuration);
  bench.Display.BehaviourCode[output] = static_cast<std::uint8_t>(byte >> chip::BehaviourShift);
  bench.Display.PwmManual[output] = bench.Display.BehaviourCode[output] == manualBehaviour;
}

std::vector<Step> Steps(Workbench& bench) {
  using Kind = Step::Kind;
  const Step therm{"THERM pin", [&bench] { bench.Pins.ThermRefresh(); }, Kind::Pins};
  const Step alert{"Alert pins", [&bench] { bench.Pins.AlertRefresh(); }, Kind::Pins};
  return {{"Heaters", [&bench] { SwitchHeatersOff(bench.EvalBoard); }, Kind::Heaters},
          {"Programmed pulses", [&bench] { ReadProgrammedPulses(bench); }},
          {"Power mode", [&bench] { ReadPowerMode(bench); }},
          {"PWM1 behaviour", [&bench] { ReadBehaviour(bench, 0); }},
          {"PWM2 behaviour", [&bench] { ReadBehaviour(bench, 1); }},
          {"PWM3 behaviour", [&bench] { ReadBehaviour(bench, 2); }},
          {"VID drive", [&bench] { ProbeVidDrive(bench.EvalBoard); }, Kind::Board},
          therm,
          alert,
          {"Tach routing", [&bench] { RouteTachsFromChip(bench.EvalBoard); }, Kind::Board},
          // Again after the routing, which shares devices with these pins.
          therm,
          alert};
}

/// One try of every pending step and, if `reads`, of every reading step.
StepProblems TryAgain(Workbench& bench, bool reads) {
  const Link::MayGiveUp readings(bench.ChipLink);
  StepProblems problems;
  const auto owed = bench.Start.Owed;
  bool boardTried = false;
  try {
    for (const Step& step : Steps(bench)) {
      const bool due = owed.contains(step.Name);
      if (step.What == Step::Kind::Board) boardTried = due;
      const bool follows = boardTried && step.What == Step::Kind::Pins;
      if (!due && !follows && !(reads && step.What == Step::Kind::Read)) continue;
      if (auto problem = Try(step, 1, bench)) problems.push_back(*problem);
    }
  } catch (const GivenUp&) {  // the program ends; the rest is not needed
  }
  return problems;
}

}  // namespace

std::string ProblemText(const StepProblems& problems) {
  std::string text;
  for (const std::string& problem : problems) text += (text.empty() ? "" : "\n") + problem;
  return text;
}

StepProblems StartUp(Workbench& bench) {
  const Link::MayGiveUp readings(bench.ChipLink);
  // All other start values are set by the constructors.
  bench.Log.ColumnTitles = StartColumnTitles();
  std::vector<std::pair<std::string, std::string>> failed;  // step and problem
  try {
    for (const Step& step : Steps(bench)) {
      if (auto problem = Try(step, 2, bench)) {
        if (bench.Start.Owed.insert(step.Name).second) failed.emplace_back(step.Name, *problem);
      }
    }
  } catch (const GivenUp&) {  // the program ends; the rest is not needed
  }
  // A pin step that failed before the routing may have succeeded after it.
  StepProblems problems;
  for (const auto& [step, problem] : failed) {
    if (bench.Start.Owed.contains(step)) problems.push_back(problem);
  }
  // Otherwise an initial speed of 0 would look like a measured one.
  if (!bench.Fans.PulsesKnown) bench.Measured.FanSpeeds.fill(std::numeric_limits<float>::quiet_NaN());
  return problems;
}

void RetryOwed(Workbench& bench) {
  if (!bench.Start.Owed.empty()) TryAgain(bench, false);
}

StepProblems ReReadChip(Workbench& bench) {
  return TryAgain(bench, true);
}

}  // namespace krx
