// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/startup.h"

#include <functional>

#include "board/boardsync.h"
#include "console/workbench.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "records/logcolumns.h"

namespace krx {
namespace {

constexpr std::uint8_t configuration1 = 0x40;
constexpr std::uint8_t powerModeBit = 0x10;  // "V*I"
constexpr std::uint8_t fanPulses = 0x7B;
constexpr std::uint8_t pwmConfiguration = 0x5C;  // PWM1; PWM2 and PWM3 follow
constexpr std::uint8_t manualBehaviour = 7;

struct Step {
  const char* Name;
  std::function<void()> Run;
};

StepProblems RunAll(const std::vector<Step>& steps) {
  StepProblems problems;
  for (const Step& step : steps) {
    try {
      step.Run();
    } catch (const CommsError& error) {
      problems.push_back(std::string(step.Name) + ": " + error.BoxText());
    }
  }
  return problems;
}

void ReadProgrammedPulses(Workbench& bench) {
  const std::uint8_t fields = ReadByte(bench.ChipLink, fanPulses);
  for (std::size_t fan = 0; fan < bench.Fans.ProgrammedPulses.size(); ++fan) {
    bench.Fans.ProgrammedPulses[fan] = static_cast<float>((fields >> (2 * fan) & 0x03) + 1);
  }
}

void ReadPowerMode(Workbench& bench) {
  bench.Power.PowerMode = (ReadByte(bench.ChipLink, configuration1) & powerModeBit) != 0;
}

void ReadBehaviour(Workbench& bench, std::size_t output) {
  const std::uint8_t byte = ReadByte(bench.ChipLink, static_cast<std::uint8_t>(pwmConfiguration + output));
  bench.Display.BehaviourCode[output] = static_cast<std::uint8_t>(byte >> 5);
  bench.Display.PwmManual[output] = bench.Display.BehaviourCode[output] == manualBehaviour;
}

std::vector<Step> ChipReads(Workbench& bench) {
  return {{"Programmed pulses", [&] { ReadProgrammedPulses(bench); }},
          {"Power mode", [&] { ReadPowerMode(bench); }},
          {"PWM1 behaviour", [&] { ReadBehaviour(bench, 0); }},
          {"PWM2 behaviour", [&] { ReadBehaviour(bench, 1); }},
          {"PWM3 behaviour", [&] { ReadBehaviour(bench, 2); }}};
}

}  // namespace

StepProblems StartUp(Workbench& bench) {
  // The other start values are those that the state was made with.
  bench.Log.ColumnTitles = StartColumnTitles();

  std::vector<Step> steps{{"Heaters", [&] { bench.EvalBoard.SwitchHeatersOff(); }}};
  const std::vector<Step> reads = ChipReads(bench);
  steps.insert(steps.end(), reads.begin(), reads.end());
  const Step therm{"THERM pin", [&] { bench.Pins.ThermRefresh(); }};
  const Step alert{"Alert pins", [&] { bench.Pins.AlertRefresh(); }};
  steps.push_back({"VID drive", [&] { ProbeVidDrive(bench.EvalBoard); }});
  steps.insert(steps.end(), {therm, alert});
  steps.push_back({"Tach routing", [&] { RouteTachsFromChip(bench.EvalBoard); }});
  // Once more behind the routing, which shares devices with these pins.
  steps.insert(steps.end(), {therm, alert});
  return RunAll(steps);
}

StepProblems ReReadChip(Workbench& bench) {
  return RunAll(ChipReads(bench));
}

}  // namespace krx
