// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

#include "link/linknewcomport06.h"
#include "link/owedwrites.h"
#include "registers/chip.h"

namespace krx {

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
  const chip::Output& registers_;
  OwedWrites::Ticket duty_ = 0;
  OwedWrites::Ticket configuration_ = 0;
  bool done_ = false;
};

/// How an output stands that could not be put back, and what its registers should hold; empty when nothing is overdue.
/// output: 0..2.
std::string NotRestoredText(const Link& link, const OwedWrites& owed, std::size_t output);

}  // namespace krx
