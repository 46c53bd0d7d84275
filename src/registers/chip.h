// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

/// The chip's register addresses, the bits used by the console, and the tables by zone, output, tachometer and supply,
/// all in one place. Names and access of all 90 registers: registers/registermap.
namespace krx::chip {

inline constexpr std::uint8_t DynamicTmin1 = 0x36;
inline constexpr std::uint8_t DynamicTmin2 = 0x37;
inline constexpr std::uint8_t CompanyId = 0x3E;
inline constexpr std::uint8_t Configuration1 = 0x40;
inline constexpr std::uint8_t InterruptStatus1 = 0x41;
inline constexpr std::uint8_t InterruptStatus2 = 0x42;
inline constexpr std::uint8_t Vid = 0x43;
inline constexpr std::uint8_t Acoustics1 = 0x62;
inline constexpr std::uint8_t Acoustics2 = 0x63;
inline constexpr std::uint8_t Hysteresis1 = 0x6D;  ///< upper half Remote1, lower half Local
inline constexpr std::uint8_t Hysteresis2 = 0x6E;  ///< Remote2
inline constexpr std::uint8_t XorTest = 0x6F;
inline constexpr std::uint8_t Configuration2 = 0x73;
inline constexpr std::uint8_t ExtendedResolution1 = 0x76;
inline constexpr std::uint8_t ExtendedResolution2 = 0x77;
inline constexpr std::uint8_t Configuration3 = 0x78;
inline constexpr std::uint8_t ThermTimer = 0x79;
inline constexpr std::uint8_t ThermTimerLimit = 0x7A;
inline constexpr std::uint8_t FanPulses = 0x7B;
inline constexpr std::uint8_t Configuration4 = 0x7D;
inline constexpr std::uint8_t Test1 = 0x7E;
inline constexpr std::uint8_t Test2 = 0x7F;

/// What CompanyId reads on the chip.
inline constexpr std::uint8_t ExpectedCompanyId = 0x41;

// Masks in Configuration1.
inline constexpr std::uint8_t Start = 0x01;         ///< STRT: monitoring is on
inline constexpr std::uint8_t Ready = 0x04;         ///< RDY
inline constexpr std::uint8_t FullSpeed = 0x08;     ///< FSPD
inline constexpr std::uint8_t CurrentInput = 0x10;  ///< V*I: the 2.5V input measures the processor's current
inline constexpr std::uint8_t DisableSpinUp = 0x20;

// Masks in Vid.
inline constexpr std::uint8_t Vid3 = 0x08;       ///< the input that switch U3D drives on boards made for it
inline constexpr std::uint8_t VidInputs = 0x3F;  ///< VID5 to VID0

// Mask in Configuration2, besides those of the tachometers below.
inline constexpr std::uint8_t Attenuators = 0x20;  ///< ATTN, of the supply inputs

// Masks in Configuration3.
inline constexpr std::uint8_t AlertOnPwm2 = 0x01;   ///< ALERT: the SMBus alert output is on the PWM2 pin
inline constexpr std::uint8_t ThermEnabled = 0x02;  ///< PHOT: the THERM input is in use
inline constexpr std::uint8_t FastTachs = 0x08;     ///< FAST: the tachometers are measured four times as often
inline constexpr std::uint8_t Dc1 = 0x10;
inline constexpr std::uint8_t Dc2 = 0x20;

// Masks in Configuration4.
inline constexpr std::uint8_t AlertOn25V = 0x01;  ///< AL2.5V: the SMBus alert output is on the 2.5V pin
inline constexpr std::uint8_t ThermOn5V = 0x02;   ///< TH5V: THERM on the 5V pin, else on the Tach4 pin

// Bits in InterruptStatus2 besides those of the tables below.
inline constexpr int OverTemperatureBit = 1;  ///< OVT
inline constexpr int Diode1Bit = 6;           ///< D1: Remote1's diode is open or shorted; D2 is the next bit

// Bit in InterruptStatus1.
inline constexpr int OutOfLimitBit = 7;  ///< OOL: a bit is set in InterruptStatus2

/// The byte of a THERM limit that switches it off.
inline constexpr std::uint8_t NoThermLimit = 0x80;

/// A temperature zone: 0 Local, 1 Remote1, 2 Remote2. (On the chip their registers are in the order Remote1, Local,
/// Remote2.) All temperatures are signed bytes in whole °C.
struct Zone {
  std::string_view Name;
  std::uint8_t Value;
  int FractionShift;  ///< position of the lower fraction bit in ExtendedResolution2
  std::uint8_t LowLimit;
  std::uint8_t HighLimit;
  int StatusBit;  ///< in InterruptStatus1
  std::uint8_t Tmin;
  std::uint8_t Therm;  ///< THERM limit
  std::uint8_t Offset;
  std::uint8_t Trange;  ///< bits 7:4; the lower half is an output's frequency
  std::uint8_t OperatingPoint;
  std::uint8_t Hysteresis;
  int HysteresisShift;       ///< of its four bits
  std::uint8_t DynamicTmin;  ///< mask in DynamicTmin1: dynamic Tmin is on
  std::uint8_t Prochot;      ///< mask in DynamicTmin1: PROCHOT acts on the zone
  int CycleShift;            ///< of the three bits of its cycle code in DynamicTmin1 × 256 + DynamicTmin2
};
inline constexpr std::array<Zone, 3> Zones{{
    {"Local", 0x26, 4, 0x50, 0x51, 5, 0x68, 0x6B, 0x71, 0x60, 0x34, Hysteresis1, 0, 0x40, 0x08, 3},
    {"Remote1", 0x25, 2, 0x4E, 0x4F, 4, 0x67, 0x6A, 0x70, 0x5F, 0x33, Hysteresis1, 4, 0x20, 0x04, 6},
    {"Remote2", 0x27, 6, 0x52, 0x53, 6, 0x69, 0x6C, 0x72, 0x61, 0x35, Hysteresis2, 4, 0x80, 0x10, 0},
}};

// Fields of a zone's registers, before shifting by its shifts.
inline constexpr std::uint8_t HysteresisMask = 0x0F;
inline constexpr std::uint8_t CycleMask = 0x07;
inline constexpr int TrangeShift = 4;
/// The two lower bits of a temperature or supply in ExtendedResolution1 and 2.
inline constexpr std::uint8_t ExtensionMask = 0x03;

/// A PWM output: 0..2 for PWM1..PWM3.
struct Output {
  std::uint8_t Duty;
  std::uint8_t Configuration;  ///< behaviour, polarity, spin-up
  std::uint8_t Frequency;      ///< bits 2:0; the upper half is a zone's Trange
  std::uint8_t MinimumDuty;
  std::uint8_t Acoustics;        ///< holds enable and ramp rate
  std::uint8_t AcousticsEnable;  ///< mask
  int RampShift;                 ///< of the three bits of the ramp rate
  std::uint8_t StayAtMinimum;    ///< mask in Acoustics1 for all three: the fan does not stop below Tmin
};
inline constexpr std::array<Output, 3> Outputs{{
    {0x30, 0x5C, 0x5F, 0x64, Acoustics1, 0x08, 0, 0x20},
    {0x31, 0x5D, 0x60, 0x65, Acoustics2, 0x80, 4, 0x40},
    {0x32, 0x5E, 0x61, 0x66, Acoustics2, 0x08, 0, 0x80},
}};

// Fields of Output::Configuration and Output::Frequency.
inline constexpr std::uint8_t BehaviourMask = 0xE0;
inline constexpr int BehaviourShift = 5;
inline constexpr std::uint8_t PolarityMask = 0x10;
inline constexpr std::uint8_t SpinUpMask = 0x07;
inline constexpr std::uint8_t FrequencyMask = 0x07;
inline constexpr std::uint8_t RampMask = 0x07;  ///< before shifting by RampShift

/// A tachometer input: 0..3 for Tach1..Tach4. Counts have 16 bits.
struct Tach {
  std::uint8_t Low;
  std::uint8_t High;
  std::uint8_t LimitLow;
  std::uint8_t LimitHigh;
  std::uint8_t TwoWire;  ///< mask in Configuration2
  int PulsesShift;       ///< of its two bits in FanPulses, which hold pulses - 1
  int StatusBit;         ///< in InterruptStatus2
};
inline constexpr std::array<Tach, 4> Tachs{{
    {0x28, 0x29, 0x54, 0x55, 0x01, 0, 2},
    {0x2A, 0x2B, 0x56, 0x57, 0x02, 2, 3},
    {0x2C, 0x2D, 0x58, 0x59, 0x04, 4, 4},
    {0x2E, 0x2F, 0x5A, 0x5B, 0x08, 6, 5},
}};

inline constexpr std::uint8_t PulsesMask = 0x03;  ///< before shifting by PulsesShift

/// A supply input, in the order shown by the console.
struct Supply {
  std::string_view Name;
  std::uint8_t Value;
  std::uint8_t Extension;  ///< register of the two lower bits of its 10-bit code
  int ExtensionShift;
  std::uint8_t LowLimit;
  std::uint8_t HighLimit;
  std::uint8_t Status;  ///< interrupt status register
  int StatusBit;
  float ByteScale;  ///< V per count of the 8-bit value and limit registers
  float CodeScale;  ///< V per count of the 10-bit code, a quarter of it
};
inline constexpr std::array<Supply, 5> Supplies{{
    {"5V", 0x23, ExtendedResolution1, 6, 0x4A, 0x4B, InterruptStatus1, 3, 0.026F, 0.0065F},
    {"12V", 0x24, ExtendedResolution2, 0, 0x4C, 0x4D, InterruptStatus2, 0, 0.0624F, 0.0156F},
    {"Vccp", 0x21, ExtendedResolution1, 2, 0x46, 0x47, InterruptStatus1, 1, 0.01172F, 0.00293F},
    {"Vcc", 0x22, ExtendedResolution1, 4, 0x48, 0x49, InterruptStatus1, 2, 0.0168F, 0.0042F},
    {"2.5V", 0x20, ExtendedResolution1, 0, 0x44, 0x45, InterruptStatus1, 0, 0.0128F, 0.0032F},
}};
inline constexpr std::size_t VccpSupply = 2;
inline constexpr std::size_t CurrentSupply = 4;  ///< 2.5V, or the processor's current

}  // namespace krx::chip
