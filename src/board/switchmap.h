// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string_view>

#include "registers/boarddevices.h"

namespace krx {

/// One of the board's 32 switches; its index in the table is its number in the switch access dialog.
struct BoardSwitch {
  std::string_view Group;
  std::string_view Designator;
  SwitchDevice Device;
  int Bit;
};

inline constexpr std::array<BoardSwitch, 32> switchMap{{
    {"Fan1", "U5A", SwitchDevice::U5, 0},       {"Fan1", "U5B", SwitchDevice::U5, 1},
    {"Fan1", "U5C", SwitchDevice::U5, 2},       {"Fan2", "U5F", SwitchDevice::U5, 5},
    {"Fan2", "U5G", SwitchDevice::U5, 6},       {"Fan2", "U5H", SwitchDevice::U5, 7},
    {"Fan3", "U6A", SwitchDevice::U6, 0},       {"Fan3", "U6B", SwitchDevice::U6, 1},
    {"Fan3", "U6C", SwitchDevice::U6, 2},       {"Fan4", "U6F", SwitchDevice::U6, 5},
    {"Fan4", "U6G", SwitchDevice::U6, 6},       {"Fan4", "U6H", SwitchDevice::U6, 7},
    {"Temp1", "U4C", SwitchDevice::U4, 2},      {"Temp1", "U4B", SwitchDevice::U4, 1},
    {"Temp1", "U4A", SwitchDevice::U4, 0},      {"Temp2", "U4F", SwitchDevice::U4, 5},
    {"Temp2", "U4E", SwitchDevice::U4, 4},      {"Temp2", "U4D", SwitchDevice::U4, 3},
    {"VID", "U3A", SwitchDevice::U3, 0},        {"VID", "U3B", SwitchDevice::U3, 1},
    {"VID", "U3C", SwitchDevice::U3, 2},        {"VID", "U3D", SwitchDevice::U3, 3},
    {"VID", "U3E", SwitchDevice::U3, 4},        {"Tach4/PROC", "U3G", SwitchDevice::U3, 6},
    {"PWM2/Alert", "U5E", SwitchDevice::U5, 4}, {"PWM2/Alert", "U5D", SwitchDevice::U5, 3},
    {"Tach4/PROC", "U3H", SwitchDevice::U3, 7}, {"PWM3", "U6D", SwitchDevice::U6, 3},
    {"Spare", "U4G", SwitchDevice::U4, 6},      {"Spare", "U4H", SwitchDevice::U4, 7},
    {"Spare", "U3F", SwitchDevice::U3, 5},      {"Spare", "U6E", SwitchDevice::U6, 4},
}};

}  // namespace krx
