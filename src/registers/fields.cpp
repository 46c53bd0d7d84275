// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/fields.h"

#include <algorithm>
#include <array>

#include "registers/codes.h"

namespace krx {
namespace {

using Items2 = std::array<std::string_view, 2>;
constexpr Items2 bit{"0", "1"};  // a bit whose effect is not known to the console
constexpr Items2 onOff{"off", "on"};
constexpr Items2 yesNo{"no", "yes"};
constexpr Items2 spinUp{"as configured", "disabled"};
constexpr Items2 currentInput{"a voltage", "the processor's current"};
constexpr Items2 limits{"within limits", "out of limits"};
constexpr Items2 something{"nothing set", "something set"};
constexpr Items2 therm{"below its limit", "above its limit"};
constexpr Items2 diode{"connected", "open or shorted"};
constexpr Items2 masked{"enabled", "masked"};
constexpr Items2 polarity{"active low", "active high"};
constexpr Items2 hysteresis{"on", "off"};  // off: the fan keeps its minimum duty below Tmin
constexpr Items2 tachSource{"three-wire fan", "two-wire fan"};
constexpr Items2 pwm2Pin{"PWM2 output", "SMBus alert output"};
constexpr Items2 thermPin{"Tach4 pin", "5V pin"};
constexpr Items2 pin25V{"2.5V input", "SMBus alert output"};
/// Without a sign: the fraction increases the magnitude.
constexpr std::array<std::string_view, 4> fractions{"0.00 °C", "0.25 °C", "0.50 °C", "0.75 °C"};
/// How often Tmin can be lowered and raised.
constexpr std::array<std::string_view, 8> cycles{"0.5 s down, 1 s up", "1 s down, 2 s up",   "2 s down, 4 s up",
                                                 "4 s down, 8 s up",   "8 s down, 16 s up",  "16 s down, 32 s up",
                                                 "32 s down, 64 s up", "64 s down, 128 s up"};

constexpr RegisterField fields[] = {
    {0x20, 7, 0, "2.5V input, upper 8 bits", FieldScale::Volts},
    {0x21, 7, 0, "Vccp input, upper 8 bits", FieldScale::Volts},
    {0x22, 7, 0, "Vcc input, upper 8 bits", FieldScale::Volts},
    {0x23, 7, 0, "5V input, upper 8 bits", FieldScale::Volts},
    {0x24, 7, 0, "12V input, upper 8 bits", FieldScale::Volts},
    {0x25, 7, 0, "Remote1 temperature, whole degrees", FieldScale::Celsius},
    {0x26, 7, 0, "Local temperature, whole degrees", FieldScale::Celsius},
    {0x27, 7, 0, "Remote2 temperature, whole degrees", FieldScale::Celsius},
    {0x28, 7, 0, "Tach1 Low Byte", FieldScale::Counts},
    {0x29, 7, 0, "Tach1 High Byte", FieldScale::TachHigh},
    {0x2A, 7, 0, "Tach2 Low Byte", FieldScale::Counts},
    {0x2B, 7, 0, "Tach2 High Byte", FieldScale::TachHigh},
    {0x2C, 7, 0, "Tach3 Low Byte", FieldScale::Counts},
    {0x2D, 7, 0, "Tach3 High Byte", FieldScale::TachHigh},
    {0x2E, 7, 0, "Tach4 Low Byte", FieldScale::Counts},
    {0x2F, 7, 0, "Tach4 High Byte", FieldScale::TachHigh},
    {0x30, 7, 0, "PWM1 duty", FieldScale::Percent},
    {0x31, 7, 0, "PWM2 duty", FieldScale::Percent},
    {0x32, 7, 0, "PWM3 duty", FieldScale::Percent},
    {0x33, 7, 0, "Remote1 operating point", FieldScale::Celsius},
    {0x34, 7, 0, "Local operating point", FieldScale::Celsius},
    {0x35, 7, 0, "Remote2 operating point", FieldScale::Celsius},
    {0x36, 7, 7, "Remote2 dynamic Tmin", FieldScale::Code, onOff},
    {0x36, 6, 6, "Local dynamic Tmin", FieldScale::Code, onOff},
    {0x36, 5, 5, "Remote1 dynamic Tmin", FieldScale::Code, onOff},
    {0x36, 4, 4, "PROCHOT acts on Remote2", FieldScale::Code, yesNo},
    {0x36, 3, 3, "PROCHOT acts on Local", FieldScale::Code, yesNo},
    {0x36, 2, 2, "PROCHOT acts on Remote1", FieldScale::Code, yesNo},
    {0x36, 0, 0, "Remote1 cycle, code bit 2", FieldScale::Bits},
    {0x37, 7, 6, "Remote1 cycle, code bits 1:0", FieldScale::Bits},
    {0x37, 5, 3, "Local cycle", FieldScale::Code, cycles},
    {0x37, 2, 0, "Remote2 cycle", FieldScale::Code, cycles},
    {0x3D, 7, 0, "Device ID", FieldScale::Byte},
    {0x3E, 7, 0, "Company ID", FieldScale::Byte},
    {0x3F, 7, 4, "Version", FieldScale::Number},
    {0x3F, 3, 0, "Stepping", FieldScale::Number},
    {0x40, 7, 7, "VCC", FieldScale::Code, bit},
    {0x40, 6, 6, "TODIS", FieldScale::Code, bit},
    {0x40, 5, 5, "Spin-up", FieldScale::Code, spinUp},
    {0x40, 4, 4, "2.5V input", FieldScale::Code, currentInput},
    {0x40, 3, 3, "Full speed (FSPD)", FieldScale::Code, onOff},
    {0x40, 2, 2, "Ready (RDY)", FieldScale::Code, yesNo},
    {0x40, 1, 1, "Registers locked (LOCK)", FieldScale::Code, yesNo},
    {0x40, 0, 0, "Monitoring", FieldScale::Code, onOff},
    {0x41, 7, 7, "Interrupt status 2", FieldScale::Code, something},
    {0x41, 6, 6, "Remote2", FieldScale::Code, limits},
    {0x41, 5, 5, "Local", FieldScale::Code, limits},
    {0x41, 4, 4, "Remote1", FieldScale::Code, limits},
    {0x41, 3, 3, "5V", FieldScale::Code, limits},
    {0x41, 2, 2, "Vcc", FieldScale::Code, limits},
    {0x41, 1, 1, "Vccp", FieldScale::Code, limits},
    {0x41, 0, 0, "2.5V", FieldScale::Code, limits},
    {0x42, 7, 7, "Remote2 diode", FieldScale::Code, diode},
    {0x42, 6, 6, "Remote1 diode", FieldScale::Code, diode},
    {0x42, 5, 5, "Fan 4 or THERM timer", FieldScale::Code, limits},
    {0x42, 4, 4, "Fan 3", FieldScale::Code, limits},
    {0x42, 3, 3, "Fan 2", FieldScale::Code, limits},
    {0x42, 2, 2, "Fan 1", FieldScale::Code, limits},
    {0x42, 1, 1, "THERM temperature", FieldScale::Code, therm},
    {0x42, 0, 0, "12V", FieldScale::Code, limits},
    {0x43, 7, 7, "VIDSEL", FieldScale::Code, bit},
    {0x43, 6, 6, "THLD", FieldScale::Code, bit},
    {0x43, 5, 0, "VID5 to VID0", FieldScale::Bits},
    {0x44, 7, 0, "2.5V low limit", FieldScale::Volts},
    {0x45, 7, 0, "2.5V high limit", FieldScale::Volts},
    {0x46, 7, 0, "Vccp low limit", FieldScale::Volts},
    {0x47, 7, 0, "Vccp high limit", FieldScale::Volts},
    {0x48, 7, 0, "Vcc low limit", FieldScale::Volts},
    {0x49, 7, 0, "Vcc high limit", FieldScale::Volts},
    {0x4A, 7, 0, "5V low limit", FieldScale::Volts},
    {0x4B, 7, 0, "5V high limit", FieldScale::Volts},
    {0x4C, 7, 0, "12V low limit", FieldScale::Volts},
    {0x4D, 7, 0, "12V high limit", FieldScale::Volts},
    {0x4E, 7, 0, "Remote1 low limit", FieldScale::Celsius},
    {0x4F, 7, 0, "Remote1 high limit", FieldScale::Celsius},
    {0x50, 7, 0, "Local low limit", FieldScale::Celsius},
    {0x51, 7, 0, "Local high limit", FieldScale::Celsius},
    {0x52, 7, 0, "Remote2 low limit", FieldScale::Celsius},
    {0x53, 7, 0, "Remote2 high limit", FieldScale::Celsius},
    {0x54, 7, 0, "Tach1 Minimum Low Byte", FieldScale::Counts},
    {0x55, 7, 0, "Tach1 Minimum High Byte", FieldScale::TachHigh},
    {0x56, 7, 0, "Tach2 Minimum Low Byte", FieldScale::Counts},
    {0x57, 7, 0, "Tach2 Minimum High Byte", FieldScale::TachHigh},
    {0x58, 7, 0, "Tach3 Minimum Low Byte", FieldScale::Counts},
    {0x59, 7, 0, "Tach3 Minimum High Byte", FieldScale::TachHigh},
    {0x5A, 7, 0, "Tach4 Minimum Low Byte", FieldScale::Counts},
    {0x5B, 7, 0, "Tach4 Minimum High Byte", FieldScale::TachHigh},
    {0x5C, 7, 5, "PWM1 behaviour", FieldScale::Code, behaviourItems},
    {0x5C, 4, 4, "PWM1 polarity", FieldScale::Code, polarity},
    {0x5C, 3, 3, "PWM1 SLOW", FieldScale::Code, bit},
    {0x5C, 2, 0, "PWM1 spin-up", FieldScale::Code, spinUpItems},
    {0x5D, 7, 5, "PWM2 behaviour", FieldScale::Code, behaviourItems},
    {0x5D, 4, 4, "PWM2 polarity", FieldScale::Code, polarity},
    {0x5D, 3, 3, "PWM2 SLOW", FieldScale::Code, bit},
    {0x5D, 2, 0, "PWM2 spin-up", FieldScale::Code, spinUpItems},
    {0x5E, 7, 5, "PWM3 behaviour", FieldScale::Code, behaviourItems},
    {0x5E, 4, 4, "PWM3 polarity", FieldScale::Code, polarity},
    {0x5E, 3, 3, "PWM3 SLOW", FieldScale::Code, bit},
    {0x5E, 2, 0, "PWM3 spin-up", FieldScale::Code, spinUpItems},
    {0x5F, 7, 4, "Remote1 Trange", FieldScale::Code, rangeItems},
    {0x5F, 3, 3, "THRM", FieldScale::Code, bit},
    {0x5F, 2, 0, "PWM1 frequency", FieldScale::Code, frequencyItems},
    {0x60, 7, 4, "Local Trange", FieldScale::Code, rangeItems},
    {0x60, 3, 3, "THRM", FieldScale::Code, bit},
    {0x60, 2, 0, "PWM2 frequency", FieldScale::Code, frequencyItems},
    {0x61, 7, 4, "Remote2 Trange", FieldScale::Code, rangeItems},
    {0x61, 3, 3, "THRM", FieldScale::Code, bit},
    {0x61, 2, 0, "PWM3 frequency", FieldScale::Code, frequencyItems},
    {0x62, 7, 7, "PWM3 hysteresis", FieldScale::Code, hysteresis},
    {0x62, 6, 6, "PWM2 hysteresis", FieldScale::Code, hysteresis},
    {0x62, 5, 5, "PWM1 hysteresis", FieldScale::Code, hysteresis},
    {0x62, 4, 4, "SYNC", FieldScale::Code, bit},
    {0x62, 3, 3, "PWM1 enhanced acoustics", FieldScale::Code, onOff},
    {0x62, 2, 0, "PWM1 ramp rate", FieldScale::Code, rampRateItems},
    {0x63, 7, 7, "PWM2 enhanced acoustics", FieldScale::Code, onOff},
    {0x63, 6, 4, "PWM2 ramp rate", FieldScale::Code, rampRateItems},
    {0x63, 3, 3, "PWM3 enhanced acoustics", FieldScale::Code, onOff},
    {0x63, 2, 0, "PWM3 ramp rate", FieldScale::Code, rampRateItems},
    {0x64, 7, 0, "PWM1 minimum duty", FieldScale::Percent},
    {0x65, 7, 0, "PWM2 minimum duty", FieldScale::Percent},
    {0x66, 7, 0, "PWM3 minimum duty", FieldScale::Percent},
    {0x67, 7, 0, "Remote1 Tmin", FieldScale::Celsius},
    {0x68, 7, 0, "Local Tmin", FieldScale::Celsius},
    {0x69, 7, 0, "Remote2 Tmin", FieldScale::Celsius},
    {0x6A, 7, 0, "Remote1 THERM limit", FieldScale::ThermLimit},
    {0x6B, 7, 0, "Local THERM limit", FieldScale::ThermLimit},
    {0x6C, 7, 0, "Remote2 THERM limit", FieldScale::ThermLimit},
    {0x6D, 7, 4, "Remote1 hysteresis", FieldScale::Degrees},
    {0x6D, 3, 0, "Local hysteresis", FieldScale::Degrees},
    {0x6E, 7, 4, "Remote2 hysteresis", FieldScale::Degrees},
    {0x6F, 0, 0, "XOR tree test", FieldScale::Code, onOff},
    // Nothing states the unit of the offsets: signed whole degrees, like the temperatures they shift, is our reading.
    {0x70, 7, 0, "Remote1 offset", FieldScale::Celsius},
    {0x71, 7, 0, "Local offset", FieldScale::Celsius},
    {0x72, 7, 0, "Remote2 offset", FieldScale::Celsius},
    {0x73, 7, 7, "SHDN", FieldScale::Code, bit},
    {0x73, 6, 6, "CONV", FieldScale::Code, bit},
    {0x73, 5, 5, "Supply attenuators (ATTN)", FieldScale::Code, bit},  // not known which state removes them
    {0x73, 4, 4, "AVG", FieldScale::Code, bit},
    {0x73, 3, 3, "Tach4 source", FieldScale::Code, tachSource},
    {0x73, 2, 2, "Tach3 source", FieldScale::Code, tachSource},
    {0x73, 1, 1, "Tach2 source", FieldScale::Code, tachSource},
    {0x73, 0, 0, "Tach1 source", FieldScale::Code, tachSource},
    {0x74, 7, 7, "OOL interrupt", FieldScale::Code, masked},
    {0x74, 6, 6, "Remote2 interrupt", FieldScale::Code, masked},
    {0x74, 5, 5, "Local interrupt", FieldScale::Code, masked},
    {0x74, 4, 4, "Remote1 interrupt", FieldScale::Code, masked},
    {0x74, 3, 3, "5V interrupt", FieldScale::Code, masked},
    {0x74, 2, 2, "Vcc interrupt", FieldScale::Code, masked},
    {0x74, 1, 1, "Vccp interrupt", FieldScale::Code, masked},
    {0x74, 0, 0, "2.5V interrupt", FieldScale::Code, masked},
    {0x75, 7, 7, "Remote2 diode interrupt", FieldScale::Code, masked},
    {0x75, 6, 6, "Remote1 diode interrupt", FieldScale::Code, masked},
    {0x75, 5, 5, "Fan 4 or THERM timer interrupt", FieldScale::Code, masked},
    {0x75, 4, 4, "Fan 3 interrupt", FieldScale::Code, masked},
    {0x75, 3, 3, "Fan 2 interrupt", FieldScale::Code, masked},
    {0x75, 2, 2, "Fan 1 interrupt", FieldScale::Code, masked},
    {0x75, 1, 1, "THERM temperature interrupt", FieldScale::Code, masked},
    {0x75, 0, 0, "12V interrupt", FieldScale::Code, masked},
    {0x76, 7, 6, "5V input, lower two bits", FieldScale::LowerVolts},
    {0x76, 5, 4, "Vcc input, lower two bits", FieldScale::LowerVolts},
    {0x76, 3, 2, "Vccp input, lower two bits", FieldScale::LowerVolts},
    {0x76, 1, 0, "2.5V input, lower two bits", FieldScale::LowerVolts},
    {0x77, 7, 6, "Remote2 temperature, fraction", FieldScale::Code, fractions},
    {0x77, 5, 4, "Local temperature, fraction", FieldScale::Code, fractions},
    {0x77, 3, 2, "Remote1 temperature, fraction", FieldScale::Code, fractions},
    {0x77, 1, 0, "12V input, lower two bits", FieldScale::LowerVolts},
    {0x78, 7, 7, "DC4", FieldScale::Code, bit},
    {0x78, 6, 6, "DC3", FieldScale::Code, bit},
    {0x78, 5, 5, "DC2", FieldScale::Code, bit},
    {0x78, 4, 4, "DC1", FieldScale::Code, bit},
    {0x78, 3, 3, "Fast tachometers (FAST)", FieldScale::Code, onOff},
    {0x78, 2, 2, "BOOST", FieldScale::Code, bit},
    {0x78, 1, 1, "THERM input", FieldScale::Code, onOff},
    {0x78, 0, 0, "PWM2 pin", FieldScale::Code, pwm2Pin},
    {0x79, 7, 0, "PROCHOT Status (THERM timer)", FieldScale::ThermTime},
    {0x7A, 7, 0, "PROCHOT Limit (THERM timer)", FieldScale::Counts},
    {0x7B, 7, 6, "Tach4 pulses per revolution", FieldScale::Code, pulseItems},
    {0x7B, 5, 4, "Tach3 pulses per revolution", FieldScale::Code, pulseItems},
    {0x7B, 3, 2, "Tach2 pulses per revolution", FieldScale::Code, pulseItems},
    {0x7B, 1, 0, "Tach1 pulses per revolution", FieldScale::Code, pulseItems},
    {0x7D, 3, 2, "AinL", FieldScale::Number},
    {0x7D, 1, 1, "THERM pin", FieldScale::Code, thermPin},
    {0x7D, 0, 0, "2.5V pin", FieldScale::Code, pin25V},
    {0x7E, 7, 0, "Test Register 1", FieldScale::Byte},
    {0x7F, 7, 0, "Test Register 2", FieldScale::Byte},
};
static_assert(std::ranges::is_sorted(fields, {}, &RegisterField::Register));

}  // namespace

std::uint8_t RegisterField::Mask() const {
  return static_cast<std::uint8_t>((0xFF >> (7 - High)) & (0xFF << Low));
}

std::span<const RegisterField> FieldsOf(int address) {
  return {std::ranges::lower_bound(fields, address, {}, &RegisterField::Register),
          std::ranges::upper_bound(fields, address, {}, &RegisterField::Register)};
}

int FieldValue(const RegisterField& field, std::uint8_t byte) {
  return (byte & field.Mask()) >> field.Low;
}

}  // namespace krx
