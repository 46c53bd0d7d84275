// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/meanings.h"

#include <fmt/format.h>

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

namespace krx {
namespace {

constexpr std::array<std::string_view, 1> none{""};
constexpr std::array<std::string_view, 4> inputsBut12V{"2.5V", "Vccp", "Vcc", "5V"};
constexpr std::array<std::string_view, 5> inputs{"2.5V", "Vccp", "Vcc", "5V", "12V"};
constexpr std::array<std::string_view, 1> input12V{"12V"};
constexpr std::array<std::string_view, 3> zones{"Remote1", "Local", "Remote2"};
constexpr std::array<std::string_view, 3> outputs{"PWM1", "PWM2", "PWM3"};
constexpr std::array<std::string_view, 4> tachs{"Tach1", "Tach2", "Tach3", "Tach4"};

/// Registers of one kind: the first one's address, how far apart they are, and what each one is of.
struct Kind {
  std::uint8_t First;
  int Step;
  std::span<const std::string_view> Of;
  std::string_view Text;  ///< {} is what it is of, {1} its place in the row
};

constexpr Kind kinds[] = {
    {0x20, 1, inputsBut12V, "Measured {} voltage, upper 8 of 10 bits. Extended Resolution 1 holds the lower two."},
    {0x24, 1, input12V, "Measured {} voltage, upper 8 of 10 bits. Extended Resolution 2 holds the lower two."},
    {0x25, 1, zones, "Measured {} temperature in whole degrees. Extended Resolution 2 holds the fraction."},
    {0x28, 2, tachs, "Low byte of the {} count: 5,400,000 divided by the whole count is the speed in RPM."},
    {0x29, 2, tachs, "High byte of the {} count: 5,400,000 divided by the whole count is the speed in RPM."},
    {0x30, 1, outputs, "Present duty of output {}. A write sets it while the output is in manual control."},
    {0x33, 1, zones, "Temperature with respect to which dynamic Tmin control moves the {} zone's Tmin."},
    {0x36, 1, none, "Switches dynamic Tmin control on per zone, and says on which zones PROCHOT acts."},
    {0x37, 1, none,
     "How often dynamic Tmin control may lower and raise Tmin. Remote1's code begins in the register before."},
    {0x3D, 1, none, "Identifies the kind of device."},
    {0x3E, 1, none, "Identifies the maker. The search knows the chip by 41h."},
    {0x3F, 1, none, "Version and stepping of the chip."},
    {0x40, 1, none,
     "Starts monitoring, locks the registers, and sets what holds for all fans: spin-up and full speed."},
    {0x41, 1, none,
     "Temperatures and voltages that are out of their limits, and whether Interrupt Status 2 has anything."},
    {0x42, 1, none, "Fans and the 12V input out of their limits, temperatures above THERM, and faults of the diodes."},
    {0x43, 1, none, "State of the processor's VID inputs."},
    {0x44, 2, inputs, "Lowest {} voltage without an alarm."},
    {0x45, 2, inputs, "Highest {} voltage without an alarm."},
    {0x4E, 2, zones, "Lowest {} temperature without an alarm."},
    {0x4F, 2, zones, "Highest {} temperature without an alarm."},
    {0x54, 2, tachs, "Low byte of the highest {} count without an alarm, which stands for the lowest speed."},
    {0x55, 2, tachs, "High byte of the highest {} count without an alarm, which stands for the lowest speed."},
    {0x5C, 1, outputs,
     "Decides what drives output {}: one temperature zone, the hottest of several, a fixed level, or the duty written "
     "by "
     "hand."},
    {0x5F, 1, zones,
     "Range of the {0} zone's temperature over which its fans go up to full speed, and the frequency of PWM{1}."},
    {0x62, 1, none, "What each output does below Tmin, and how gently PWM1 changes its speed (enhanced acoustics)."},
    {0x63, 1, none, "How gently PWM2 and PWM3 change their speed (enhanced acoustics)."},
    {0x64, 1, outputs, "Duty of output {} at and below Tmin in automatic control, where it is not switched off."},
    {0x67, 1, zones, "Temperature above which the {} zone raises the duty of its fans."},
    {0x6A, 1, zones, "{} temperature at which THERM drives the fans to full speed."},
    {0x6D, 1, none, "How far Remote1 and Local must cool down before their fans are switched off again."},
    {0x6E, 1, none, "How far Remote2 must cool down before its fans are switched off again."},
    {0x6F, 1, none, "Switches the XOR tree test of the pins on."},
    {0x70, 1, zones, "Is added to the measured {} temperature."},
    {0x73, 1, none, "Kind of fan at each tach input, and modes of the converter."},
    {0x74, 1, none, "Keeps sources of Interrupt Status 1 from raising an interrupt."},
    {0x75, 1, none, "Keeps sources of Interrupt Status 2 from raising an interrupt."},
    {0x76, 1, none, "The lower two bits of the measured 5V, Vcc, Vccp and 2.5V voltages."},
    {0x77, 1, none, "The quarter degrees of the measured temperatures, and the lower two bits of the 12V voltage."},
    {0x78, 1, none, "Pin functions of THERM and the alert output, and modes of the tach inputs."},
    {0x79, 1, none, "How long THERM was asserted since this register was read last."},
    {0x7A, 1, none, "THERM time above which an interrupt is raised."},
    {0x7B, 1, none, "Pulses that the fan at each tach input gives per revolution."},
    {0x7D, 1, none, "Pins of THERM and of the alert output."},
    {0x7E, 1, none, "For tests by the maker."},
    {0x7F, 1, none, "For tests by the maker."},
};

}  // namespace

std::string RegisterMeaning(int address) {
  for (const Kind& kind : kinds) {
    const int distance = address - kind.First;
    if (distance < 0 || distance % kind.Step != 0) continue;
    const auto place = static_cast<std::size_t>(distance / kind.Step);
    if (place < kind.Of.size()) return fmt::format(fmt::runtime(kind.Text), kind.Of[place], place + 1);
  }
  return {};
}

}  // namespace krx
