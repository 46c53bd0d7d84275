// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "link/linknewcomport06.h"

namespace krx {

/// One of the board's two heaters. Its state is not cached: it is read from and written to the board each time. On
/// the SMBus there is no board: writing does nothing and a heater reads off.
class Heater {
 public:
  Heater(Link& link, std::uint8_t heaterNumber) : link_(link), heaterNumber_(heaterNumber) {}

  void SetHeaterOn(bool on);
  bool HeaterOn();

  void SetHeaterNumber(std::uint8_t number) { heaterNumber_ = number; }
  std::uint8_t HeaterNumber() const { return heaterNumber_; }

  /// True after this object switched the heater on, until it switched it off again.
  bool SwitchedOnHere() const { return switchedOnHere_; }

 private:
  std::uint8_t Mask() const;

  Link& link_;
  std::uint8_t heaterNumber_;
  bool switchedOnHere_ = false;
};

}  // namespace krx
