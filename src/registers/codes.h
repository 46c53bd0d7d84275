// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "registers/chip.h"

namespace krx {

// The texts of the codes in register fields; the index of an item is its code.

inline constexpr std::array<std::string_view, 8> behaviourItems{
    "Remote1 Control", "Local Control",         "Remote2 Control",      "Always On",
    "Always Off",      "Fastest of Remote 1,2", "Fastest of all Temps", "Manual Control"};
inline constexpr std::uint8_t alwaysOnBehaviour = 3;
inline constexpr std::uint8_t alwaysOffBehaviour = 4;
inline constexpr std::uint8_t manualBehaviour = 7;
/// The same in an output's configuration register.
inline constexpr std::uint8_t manualControl = manualBehaviour << chip::BehaviourShift;
static_assert(manualControl == chip::BehaviourMask, "setting these bits needs no others cleared");

inline constexpr std::array<std::string_view, 8> spinUpItems{"None",   "100 ms", "250 ms", "400 ms",
                                                             "667 ms", "1 sec",  "2 sec",  "4 sec"};
inline constexpr std::array<std::string_view, 8> frequencyItems{"11 Hz",   "14.7 Hz", "22.1 Hz", "29.4 Hz",
                                                                "35.3 Hz", "44.1 Hz", "58.8 Hz", "88.2 Hz"};
inline constexpr std::array<std::string_view, 16> rangeItems{"2°C",  "2.5°C", "3.3°C",  "4°C",  "5°C",  "6.7°C",
                                                             "8°C",  "10°C",  "13.3°C", "16°C", "20°C", "26.7°C",
                                                             "32°C", "40°C",  "53.3°C", "80°C"};
inline constexpr std::array<std::string_view, 8> rampRateItems{"1", "2", "3", "5", "8", "12", "24", "48"};
inline constexpr std::array<std::string_view, 4> pulseItems{"1", "2", "3", "4"};

}  // namespace krx
