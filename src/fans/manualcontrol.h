// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "link/linknewcomport06.h"
#include "link/owedwrites.h"

namespace krx {

struct OutputRegisters {
  std::uint8_t Configuration;
  std::uint8_t Duty;
  std::uint8_t TachLow;
  std::uint8_t TachHigh;
};
inline constexpr std::array<OutputRegisters, 3> outputRegisters{
    {{0x5C, 0x30, 0x28, 0x29}, {0x5D, 0x31, 0x2A, 0x2B}, {0x5E, 0x32, 0x2C, 0x2D}}};

/// Takes an output into manual control and puts its configuration back, whatever ends its scope. An output that was in
/// manual control before gets its duty back too, unless a new one was found. What cannot be put back stays owed.
class ManualControl {
 public:
  /// output: 0..2. Throws what the link throws; the output is then as it was, or owed.
  ManualControl(Link& link, OwedWrites& owed, std::size_t output, bool dutyChanges);
  ~ManualControl() { PutBack(); }
  ManualControl(const ManualControl&) = delete;
  ManualControl& operator=(const ManualControl&) = delete;

  void SetDuty(std::uint8_t byte);
  void KeepDuty() { owed_.Settle(duty_); }

  /// False when it failed. Further calls do nothing.
  bool PutBack();

 private:
  Link& link_;
  OwedWrites& owed_;
  const OutputRegisters& registers_;
  OwedWrites::Ticket duty_ = 0;
  OwedWrites::Ticket configuration_ = 0;
  bool done_ = false;
};

/// How an output stands that could not be put back, and what its registers should hold; empty when nothing is overdue.
/// output: 0..2.
std::string NotRestoredText(const Link& link, const OwedWrites& owed, std::size_t output);

}  // namespace krx
