// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "registers/codes.h"

namespace krx {

/// The order in which the fan dialog lists the behaviours.
inline constexpr std::array<std::string_view, 8> behaviourList{"Always On",
                                                               "Always Off",
                                                               "Remote1 Control",
                                                               "Remote2 Control",
                                                               "Local Control",
                                                               "Fastest of Remote 1,2",
                                                               "Fastest of all Temps",
                                                               "Manual Control"};
/// A fan type of the dialog and its short label in the main window.
struct FanType {
  std::string_view Item;
  std::string_view Label;
};
inline constexpr std::array<FanType, 5> fanTypes{{
    {"CPU", "CPU Fan"},
    {"Front Chassis", "Fr. Chas."},
    {"Rear Chassis", "Rr. Chas."},
    {"Internal Circ.", "Int. Circ."},
    {"Not Used", "Unused"},
}};

/// The index of the item with this text, ignoring leading and trailing blanks; empty when there is none.
std::optional<std::uint8_t> CodeOf(std::string_view text, std::span<const std::string_view> items);

/// The ramp-rate code for the number at the beginning of the text.
std::optional<std::uint8_t> RampRateCode(std::string_view text);

/// The short label of a dialog item; empty for any other text.
std::optional<std::string_view> LabelOfType(std::string_view item);
/// The dialog item of a short label, or the label itself when it is none of the five.
std::string_view TypeOfLabel(std::string_view label);

}  // namespace krx
