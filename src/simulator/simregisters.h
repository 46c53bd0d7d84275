// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace krx {

struct ZoneRegisters;

/// The chip's register bytes and the names of those that the model itself looks at. Zones are numbered Local,
/// Remote1, Remote2; the chip keeps their registers in the order Remote1, Local, Remote2.
struct SimRegisters {
  static constexpr std::uint8_t Duty = 0x30;  ///< 0x30 to 0x32
  static constexpr std::uint8_t DynamicTmin1 = 0x36;
  static constexpr std::uint8_t DynamicTmin2 = 0x37;
  static constexpr std::uint8_t DeviceId = 0x3D;
  static constexpr std::uint8_t CompanyId = 0x3E;
  static constexpr std::uint8_t Revision = 0x3F;
  static constexpr std::uint8_t Config1 = 0x40;
  static constexpr std::uint8_t Status1 = 0x41;
  static constexpr std::uint8_t Status2 = 0x42;
  static constexpr std::uint8_t Vid = 0x43;
  static constexpr std::uint8_t TachLimit = 0x54;  ///< four pairs, low byte first
  static constexpr std::uint8_t PwmConfig = 0x5C;  ///< 0x5C to 0x5E
  static constexpr std::uint8_t Acoustics1 = 0x62;
  static constexpr std::uint8_t Acoustics2 = 0x63;
  static constexpr std::uint8_t MinDuty = 0x64;  ///< 0x64 to 0x66
  static constexpr std::uint8_t Config2 = 0x73;
  static constexpr std::uint8_t Extended1 = 0x76;
  static constexpr std::uint8_t Extended2 = 0x77;
  static constexpr std::uint8_t Config3 = 0x78;
  static constexpr std::uint8_t ProchotStatus = 0x79;
  static constexpr std::uint8_t ProchotLimit = 0x7A;
  static constexpr std::uint8_t FanPulses = 0x7B;
  static constexpr std::uint8_t Config4 = 0x7D;

  static constexpr std::uint8_t Start = 0x01;  ///< STRT of Config1
  static constexpr std::uint8_t Ready = 0x04;  ///< RDY of Config1

  static constexpr int FullSpeedBit = 3;    ///< FSPD of Config1
  static constexpr int NoSpinUpBit = 5;     ///< DisableSpinUp of Config1
  static constexpr int AlertOnPwm2Bit = 0;  ///< ALERT of Config3

  std::array<std::uint8_t, 256> Bytes{};

  std::uint8_t& operator[](std::size_t reg) { return Bytes[reg]; }
  std::uint8_t operator[](std::size_t reg) const { return Bytes[reg]; }
  int Signed(std::size_t reg) const { return static_cast<std::int8_t>(Bytes[reg]); }
  bool Bit(std::size_t reg, int bit) const { return ((Bytes[reg] >> bit) & 1) != 0; }
  int HysteresisOf(const ZoneRegisters& zone) const;  ///< °C
  bool Monitoring() const { return (Bytes[Config1] & Start) != 0; }
};

/// The registers of a temperature zone.
struct ZoneRegisters {
  std::uint8_t Value;
  int ExtendedShift;  ///< of its two bits in 0x77
  std::uint8_t LowLimit;
  std::uint8_t HighLimit;
  int StatusBit;  ///< in 0x41
  std::uint8_t Tmin;
  std::uint8_t Therm;
  std::uint8_t Offset;
  std::uint8_t Trange;
  std::uint8_t OpPoint;
  std::uint8_t Hysteresis;
  int HysteresisShift;
};
inline constexpr std::array<ZoneRegisters, 3> zoneRegisters{{
    {0x26, 4, 0x50, 0x51, 5, 0x68, 0x6B, 0x71, 0x60, 0x34, 0x6D, 0},
    {0x25, 2, 0x4E, 0x4F, 4, 0x67, 0x6A, 0x70, 0x5F, 0x33, 0x6D, 4},
    {0x27, 6, 0x52, 0x53, 6, 0x69, 0x6C, 0x72, 0x61, 0x35, 0x6E, 4},
}};

inline int SimRegisters::HysteresisOf(const ZoneRegisters& zone) const {
  return (Bytes[zone.Hysteresis] >> zone.HysteresisShift) & 0x0F;
}

/// Which zones drive an output, by behaviour code: bit 0 Local, bit 1 Remote1, bit 2 Remote2. No zone: the code is
/// not an automatic one.
inline constexpr std::array<std::uint8_t, 8> behaviourZones{0b010, 0b001, 0b100, 0, 0, 0b101, 0b111, 0};

/// The bytes after power-on. Values that are measured read "not measured" (temperatures 0x80, counts 0xFFFF).
SimRegisters ResetRegisters();

/// The bits that a write changes: 0 for read-only and unlisted registers.
std::uint8_t WritableBits(std::uint8_t reg);

}  // namespace krx
