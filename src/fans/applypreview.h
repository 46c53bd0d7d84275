// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "fans/fanconfig.h"

namespace krx {

/// One write that Apply would make.
struct PlannedWrite {
  std::string Place;                     ///< "5Ch PWM1 Configuration Register", "90h switches U5"
  std::optional<std::uint8_t> Old = {};  ///< empty if it was never seen on the bus
  std::uint8_t New = 0;
  std::string Change = {};  ///< by field; empty for a switch device
};

/// "5Ch PWM1 Configuration Register: 62h → E2h (PWM1 behaviour: Always On → Manual Control)"; "?" for an unknown old
/// byte.
std::string PlannedWriteText(const PlannedWrite& write);

struct ApplyPreview {
  std::optional<FanRefusal> Refusal;  ///< why nothing would be written
  std::vector<PlannedWrite> Writes;   ///< in order
};

/// What ApplyFanSettings would write, determined by running it on a recording link with copies of all state it changes.
/// Makes only the reads that Apply would make; throws what the link throws.
ApplyPreview PreviewApply(Link& link, const FanCommon& fans, const AllFanFields& fields);

}  // namespace krx
