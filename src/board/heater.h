// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

#include "link/linknewcomport06.h"
#include "link/owedwrites.h"

namespace krx {

/// One of the board's two heaters. Its state is not cached: it is read from and written to the board each time. On the
/// SMBus there is no board: writing does nothing and a heater reads as off. A heater switched on by this run is a
/// pending restore until it is switched off.
class Heater {
 public:
  Heater(Link& link, OwedWrites& owed, std::uint8_t heaterNumber)
      : link_(link), owed_(owed), heaterNumber_(heaterNumber) {}
  ~Heater() { owed_.Settle(ticket_); }
  Heater(const Heater&) = delete;
  Heater& operator=(const Heater&) = delete;

  void SetHeaterOn(bool on);
  bool HeaterOn();

  void SetHeaterNumber(std::uint8_t number) { heaterNumber_ = number; }
  std::uint8_t HeaterNumber() const { return heaterNumber_; }

  /// True from the time this object switched the heater on until it switched it off.
  bool SwitchedOnHere() const { return ticket_ != 0; }
  /// Clock reading in s at which this object switched the heater on; empty while it is off or was found on.
  std::optional<double> OnSince() const { return onSince_; }

 private:
  std::uint8_t Mask() const;

  Link& link_;
  OwedWrites& owed_;
  std::uint8_t heaterNumber_;
  OwedWrites::Ticket ticket_ = 0;  ///< of its pending restore
  std::optional<double> onSince_;
};

}  // namespace krx
