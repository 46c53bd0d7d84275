// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "link/registerimage.h"
#include "monitor/channels.h"
#include "monitor/limits.h"

namespace krx {

/// The reason of a channel's alarm, as far as known from the bus: "above high limit 62 °C", "below low limit 2400 RPM",
/// "diode fault", otherwise "out of limits". value: the channel's value, once measured. Makes no transfer.
std::string AlarmReason(std::size_t channel, std::optional<double> value, const RegisterImage& seen,
                        const LimitContext& context);

}  // namespace krx
