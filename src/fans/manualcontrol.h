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

/// Switches an output to manual control and restores its configuration at the end of the scope. An output that was
/// already in manual control gets its duty restored as well, unless a new one was found. A failed restore stays
/// pending.
class ManualControl {
 public:
  /// output: 0..2. Throws what the link throws; the output is then unchanged or a pending restore.
  ManualControl(Link& link, OwedWrites& owed, std::size_t output, bool dutyChanges);
  ~ManualControl() { PutBack(); }
  ManualControl(const ManualControl&) = delete;
  ManualControl& operator=(const ManualControl&) = delete;

  void SetDuty(std::uint8_t byte);
  void KeepDuty() { owed_.Settle(duty_); }

  /// Returns false on failure. Further calls do nothing.
  bool PutBack();

 private:
  Link& link_;
  OwedWrites& owed_;
  const chip::Output& registers_;
  OwedWrites::Ticket duty_ = 0;
  OwedWrites::Ticket configuration_ = 0;
  bool done_ = false;
};

/// The state of an output that could not be restored, and what its registers should hold; empty when nothing is
/// overdue. output: 0..2.
std::string NotRestoredText(const Link& link, const OwedWrites& owed, std::size_t output);

}  // namespace krx
