// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simmeasure.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace krx {
namespace {

using Reg = SimRegisters;

constexpr int conversionPeriodSteps = 10;
constexpr int tachPeriodSteps = 100;
constexpr int fastTachPeriodSteps = 25;
constexpr double tachClock = 5'400'000;  // counts x RPM
constexpr double prochotCountMilliseconds = 22.76;

constexpr double fanRipple = 0.015;
constexpr double temperatureNoise = 0.15;
constexpr double voltageNoise = 0.001;
constexpr unsigned temperatureChannel = 4;  // after the four fans
constexpr unsigned voltageChannel = 7;

/// In the order of the voltage channels.
struct VoltageRow {
  std::uint8_t Value;
  std::uint8_t Extended;
  int ExtendedShift;
  double VoltsPerCount;  // of the 10-bit code
  std::uint8_t LowLimit;
  std::uint8_t Status;
  int StatusBit;
};
constexpr std::array<VoltageRow, 5> voltageRows{{
    {0x23, Reg::Extended1, 6, 0.0065, 0x4A, Reg::Status1, 3},
    {0x24, Reg::Extended2, 0, 0.0156, 0x4C, Reg::Status2, 0},
    {0x21, Reg::Extended1, 2, 0.00293, 0x46, Reg::Status1, 1},
    {0x22, Reg::Extended1, 4, 0.0042, 0x48, Reg::Status1, 2},
    {0x20, Reg::Extended1, 0, 0.0032, 0x44, Reg::Status1, 0},
}};
constexpr std::size_t channel5V = 0, channel25V = 4;

constexpr int outOfLimitBit = 7;                                 // of Status1
constexpr int overTemperatureBit = 1, fan1Bit = 2, fan4Bit = 5;  // of Status2
constexpr int diode1Bit = 6;

bool ThermEnabled(const Reg& registers) {
  return registers.Bit(Reg::Config3, 1);
}
bool ThermOn5V(const Reg& registers) {
  return ThermEnabled(registers) && registers.Bit(Reg::Config4, 1);
}
bool ThermOnTach4(const Reg& registers) {
  return ThermEnabled(registers) && !registers.Bit(Reg::Config4, 1);
}
bool AlertOn25V(const Reg& registers) {
  return registers.Bit(Reg::Config4, 0);
}

void PutBits(Reg& registers, std::uint8_t reg, int shift, int mask, int bits) {
  registers[reg] = static_cast<std::uint8_t>((registers[reg] & ~(mask << shift)) | ((bits & mask) << shift));
}

int Count(const Reg& registers, std::size_t low) {
  return registers[low] + 256 * registers[low + 1];
}

bool PulsesArrive(const Reg& registers, const ChipPins& pins, int tach) {
  if (tach == 3 && ThermOnTach4(registers)) return false;
  switch (pins.Tach[static_cast<std::size_t>(tach)]) {
    case ChipPins::TachWiring::Always:
      return true;
    case ChipPins::TachWiring::ThreeWire:
      return !registers.Bit(Reg::Config2, tach);
    case ChipPins::TachWiring::TwoWire:
      return registers.Bit(Reg::Config2, tach);
    case ChipPins::TachWiring::None:
      return false;
  }
  return false;
}

void ConvertVoltage(Reg& registers, const VoltageRow& row, double volts, bool pinInUse) {
  const int code =
      pinInUse ? 0 : static_cast<int>(std::clamp(std::floor(volts / row.VoltsPerCount + 0.5), 0.0, 1023.0));
  registers[row.Value] = static_cast<std::uint8_t>(code >> 2);
  PutBits(registers, row.Extended, row.ExtendedShift, 3, code);
  const int byte = code >> 2;
  const bool outside = byte < registers[row.LowLimit] || byte > registers[row.LowLimit + std::size_t{1}];
  PutBits(registers, row.Status, row.StatusBit, 1, outside && !pinInUse);
}

void CompareFans(Reg& registers) {
  for (int tach = 0; tach < 4; ++tach) {
    const auto pair = static_cast<std::size_t>(2 * tach);
    bool alarm = Count(registers, 0x28 + pair) > Count(registers, Reg::TachLimit + pair);
    // F4P stands for what is at the Tach4 pin.
    if (tach == 3 && ThermOnTach4(registers)) alarm = registers[Reg::ProchotStatus] > registers[Reg::ProchotLimit];
    PutBits(registers, Reg::Status2, fan1Bit + tach, 1, alarm);
  }
  static_assert(fan1Bit + 3 == fan4Bit);
}

/// Reached at the limit, left below limit - hysteresis. The lowest limit, 0x80, stands for none.
bool Overheats(const Reg& registers, const ZoneRegisters& zone, double celsius, bool before) {
  if (registers[zone.Therm] == 0x80) return false;
  return celsius >= registers.Signed(zone.Therm) - (before ? registers.HysteresisOf(zone) : 0);
}

}  // namespace

TemperatureCode EncodeTemperature(double celsius) {
  const auto quarters = static_cast<int>(std::floor(std::clamp(celsius, -128.0, 127.75) * 4 + 0.5));
  if (quarters >= 0) return {static_cast<std::uint8_t>(quarters / 4), static_cast<std::uint8_t>(quarters % 4)};
  // Without a whole degree there is no byte of 128 and above that could carry the sign: the nearer of 0 and -1.
  if (quarters > -4) return {static_cast<std::uint8_t>(quarters < -2 ? 0xFF : 0), 0};
  return {static_cast<std::uint8_t>(256 + quarters / 4), static_cast<std::uint8_t>(-quarters % 4)};
}

double DecodeTemperature(TemperatureCode code) {
  const double fraction = code.Fraction * 0.25;
  return code.Byte < 128 ? code.Byte + fraction : code.Byte - 256 - fraction;
}

void SimMeasure::Step(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step) {
  const int tachPeriod = registers.Bit(Reg::Config3, 3) ? fastTachPeriodSteps : tachPeriodSteps;
  NoticePulses(registers, plant, pins, step);
  if (++tachSteps_ >= tachPeriod) {
    tachSteps_ = 0;
    for (int tach = 0; tach < 4; ++tach) {
      MeasureTach(registers, plant, tach, arriving_[static_cast<std::size_t>(tach)], step);
    }
  }
  CountProchot(registers, plant, pins);
  if (!registers.Monitoring()) {
    conversionSteps_ = 0;
  } else if (++conversionSteps_ >= conversionPeriodSteps) {
    conversionSteps_ = 0;
    Convert(registers, plant, pins, step);
  }
}

void SimMeasure::Start(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step) {
  conversionSteps_ = 0;
  Convert(registers, plant, pins, step);
}

void SimMeasure::NoticePulses(SimRegisters& registers, const PlantState& plant, const ChipPins& pins,
                              std::int64_t step) {
  for (int tach = 0; tach < 4; ++tach) {
    bool& arriving = arriving_[static_cast<std::size_t>(tach)];
    const bool before = std::exchange(arriving, PulsesArrive(registers, pins, tach));
    if (arriving && !before) MeasureTach(registers, plant, tach, true, step);
  }
}

void SimMeasure::MeasureTach(SimRegisters& registers, const PlantState& plant, int tach, bool arriving,
                             std::int64_t step) const {
  const auto t = static_cast<std::size_t>(tach);
  const int programmed = ((registers[Reg::FanPulses] >> (2 * tach)) & 3) + 1;
  const double rpm = plant.Rpm[t] * (1 + noise_.At(step, static_cast<unsigned>(tach), fanRipple));
  int count = 0xFFFF;
  if (arriving && rpm > 1) {
    count = static_cast<int>(std::min(tachClock * programmed / (realPulses_[t] * rpm), 65535.0));
  }
  registers[0x28 + 2 * t] = static_cast<std::uint8_t>(count & 0xFF);
  registers[0x29 + 2 * t] = static_cast<std::uint8_t>(count >> 8);
}

void SimMeasure::CountProchot(SimRegisters& registers, const PlantState& plant, const ChipPins& pins) {
  const bool routed = (ThermOn5V(registers) && pins.ProchotOn5V) || (ThermOnTach4(registers) && pins.ProchotOnTach4);
  prochot_ = routed && plant.ProchotShare > 0;
  if (!prochot_) return;
  prochotMilliseconds_ += plant.ProchotShare * SimPlant::stepSeconds * 1000 / speed_;
  while (prochotMilliseconds_ >= prochotCountMilliseconds) {
    prochotMilliseconds_ -= prochotCountMilliseconds;
    if (registers[Reg::ProchotStatus] < 255) ++registers[Reg::ProchotStatus];
  }
}

void SimMeasure::Convert(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step) {
  measured_ = true;
  ConvertTemperatures(registers, plant, pins, step);
  for (std::size_t channel = 0; channel < voltageRows.size(); ++channel) {
    const unsigned noiseChannel = voltageChannel + static_cast<unsigned>(channel);
    const double volts = plant.Volts[channel] * (1 + noise_.At(step, noiseChannel, voltageNoise));
    const bool pinInUse =
        (channel == channel5V && ThermOn5V(registers)) || (channel == channel25V && AlertOn25V(registers));
    ConvertVoltage(registers, voltageRows[channel], volts, pinInUse);
  }
  CompareFans(registers);
  for (int diode = 0; diode < 2; ++diode) {
    PutBits(registers, Reg::Status2, diode1Bit + diode, 1, pins.DiodeOpen[static_cast<std::size_t>(diode)]);
  }
  PutBits(registers, Reg::Status1, outOfLimitBit, 1, registers[Reg::Status2] != 0);
}

void SimMeasure::ConvertTemperatures(SimRegisters& registers, const PlantState& plant, const ChipPins& pins,
                                     std::int64_t step) {
  for (std::size_t zone = 0; zone < zoneRegisters.size(); ++zone) {
    const ZoneRegisters& row = zoneRegisters[zone];
    diodeOpen_[zone] = zone > 0 && pins.DiodeOpen[zone - 1];
    const double noise = noise_.At(step, temperatureChannel + static_cast<unsigned>(zone), temperatureNoise);
    const double celsius = diodeOpen_[zone] ? -128 : plant.Celsius[zone] + registers.Signed(row.Offset) + noise;
    const TemperatureCode code = EncodeTemperature(celsius);
    celsius_[zone] = DecodeTemperature(code);
    registers[row.Value] = code.Byte;
    PutBits(registers, Reg::Extended2, row.ExtendedShift, 3, code.Fraction);
    const bool outside =
        celsius_[zone] < registers.Signed(row.LowLimit) || celsius_[zone] > registers.Signed(row.HighLimit);
    PutBits(registers, Reg::Status1, row.StatusBit, 1, outside);
    overheated_[zone] = Overheats(registers, row, celsius_[zone], overheated_[zone]);
  }
  const bool any = std::any_of(overheated_.begin(), overheated_.end(), [](bool zone) { return zone; });
  PutBits(registers, Reg::Status2, overTemperatureBit, 1, any);
}

}  // namespace krx
