// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/manualcontrol.h"

#include <fmt/format.h>

#include <utility>

#include "link/registeraccess.h"
#include "registers/chipreadings.h"
#include "registers/codes.h"

namespace krx {

ManualControl::ManualControl(Link& link, OwedWrites& owed, std::size_t output, bool dutyChanges)
    : link_(link), owed_(owed), registers_(chip::Outputs.at(output)) {
  const std::uint8_t present = ReadByte(link_, registers_.Configuration);
  // An overdue restore takes precedence: the present byte is not the original state.
  const std::uint8_t before = owed_.OverdueByte(registers_.Configuration).value_or(present);
  if ((before & manualControl) == manualControl && dutyChanges) {
    duty_ = owed_.EnterRegister(registers_.Duty, ReadByte(link_, registers_.Duty), 0xFF);
  }
  configuration_ = owed_.EnterRegister(registers_.Configuration, before, manualControl);
  try {
    owed_.Change(configuration_, present | manualControl);
  } catch (...) {
    // The destructor does not run after an exception in the constructor, and the write may have reached the chip.
    PutBack();
    throw;
  }
}

void ManualControl::SetDuty(std::uint8_t byte) {
  if (duty_ != 0) {
    owed_.Change(duty_, byte);
  } else {
    WriteByte(link_, registers_.Duty, byte);
  }
}

bool ManualControl::PutBack() {
  return std::exchange(done_, true) || owed_.PutBack({duty_, configuration_});
}

std::string NotRestoredText(const Link& link, const OwedWrites& owed, std::size_t output) {
  const chip::Output& registers = chip::Outputs.at(output);
  std::string owedBytes;
  for (const std::uint8_t reg : {registers.Configuration, registers.Duty}) {
    if (const auto byte = owed.OverdueByte(reg)) {
      owedBytes += fmt::format("{}{:02X}h should hold {:02X}h", owedBytes.empty() ? "" : ", ", reg, *byte);
    }
  }
  if (owedBytes.empty()) return {};
  return fmt::format("PWM{} could not be restored ({}).\nIt is in manual control at {}; {}.", output + 1,
                     owed.LastFailure().BoxText(), SeenDuty(link, output), owedBytes);
}

}  // namespace krx
