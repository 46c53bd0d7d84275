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

constexpr std::size_t supply5V = 0;

bool ThermEnabled(const Reg& registers) {
  return registers.Has(chip::Configuration3, chip::ThermEnabled);
}
bool ThermOn5V(const Reg& registers) {
  return ThermEnabled(registers) && registers.Has(chip::Configuration4, chip::ThermOn5V);
}
bool ThermOnTach4(const Reg& registers) {
  return ThermEnabled(registers) && !registers.Has(chip::Configuration4, chip::ThermOn5V);
}
bool AlertOn25V(const Reg& registers) {
  return registers.Has(chip::Configuration4, chip::AlertOn25V);
}

void PutBits(Reg& registers, std::uint8_t reg, int shift, int mask, int bits) {
  registers[reg] = static_cast<std::uint8_t>((registers[reg] & ~(mask << shift)) | ((bits & mask) << shift));
}

int Count(const Reg& registers, std::size_t low) {
  return registers[low] + 256 * registers[low + 1];
}

bool PulsesArrive(const Reg& registers, const ChipPins& pins, int tach) {
  if (tach == 3 && ThermOnTach4(registers)) return false;
  const auto t = static_cast<std::size_t>(tach);
  const bool twoWire = registers.Has(chip::Configuration2, chip::Tachs[t].TwoWire);
  switch (pins.Tach[t]) {
    case ChipPins::TachWiring::Always:
      return true;
    case ChipPins::TachWiring::ThreeWire:
      return !twoWire;
    case ChipPins::TachWiring::TwoWire:
      return twoWire;
    case ChipPins::TachWiring::None:
      return false;
  }
  return false;
}

void ConvertVoltage(Reg& registers, const chip::Supply& row, double volts, bool pinInUse) {
  const int code =
      pinInUse
          ? 0
          : static_cast<int>(std::clamp(std::floor(volts / static_cast<double>(row.CodeScale) + 0.5), 0.0, 1023.0));
  registers[row.Value] = static_cast<std::uint8_t>(code >> 2);
  PutBits(registers, row.Extension, row.ExtensionShift, chip::ExtensionMask, code);
  const int byte = code >> 2;
  const bool outside = byte < registers[row.LowLimit] || byte > registers[row.HighLimit];
  PutBits(registers, row.Status, row.StatusBit, 1, outside && !pinInUse);
}

void CompareFans(Reg& registers) {
  for (int tach = 0; tach < 4; ++tach) {
    const chip::Tach& row = chip::Tachs[static_cast<std::size_t>(tach)];
    bool alarm = Count(registers, row.Low) > Count(registers, row.LimitLow);
    // F4P reports the function of the Tach4 pin.
    if (tach == 3 && ThermOnTach4(registers)) alarm = registers[chip::ThermTimer] > registers[chip::ThermTimerLimit];
    PutBits(registers, chip::InterruptStatus2, row.StatusBit, 1, alarm);
  }
}

/// Set at the limit, cleared below limit - hysteresis.
bool Overheats(const Reg& registers, const chip::Zone& zone, double celsius, bool before) {
  if (registers[zone.Therm] == chip::NoThermLimit) return false;
  return celsius >= registers.Signed(zone.Therm) - (before ? registers.HysteresisOf(zone) : 0);
}

}  // namespace

TemperatureCode EncodeTemperature(double celsius) {
  const auto quarters = static_cast<int>(std::floor(std::clamp(celsius, -128.0, 127.75) * 4 + 0.5));
  if (quarters >= 0) return {static_cast<std::uint8_t>(quarters / 4), static_cast<std::uint8_t>(quarters % 4)};
  // Between 0 and -1 the value byte cannot carry the sign: use the nearer of 0 and -1.
  if (quarters > -4) return {static_cast<std::uint8_t>(quarters < -2 ? 0xFF : 0), 0};
  return {static_cast<std::uint8_t>(256 + quarters / 4), static_cast<std::uint8_t>(-quarters % 4)};
}

double DecodeTemperature(TemperatureCode code) {
  const double fraction = code.Fraction * 0.25;
  return code.Byte < 128 ? code.Byte + fraction : code.Byte - 256 - fraction;
}

void SimMeasure::Step(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step) {
  const int tachPeriod = registers.Has(chip::Configuration3, chip::FastTachs) ? fastTachPeriodSteps : tachPeriodSteps;
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
  const chip::Tach& row = chip::Tachs[t];
  const int programmed = ((registers[chip::FanPulses] >> row.PulsesShift) & chip::PulsesMask) + 1;
  const double rpm = plant.Rpm[t] * (1 + noise_.At(step, static_cast<unsigned>(tach), fanRipple));
  int count = 0xFFFF;
  if (arriving && rpm > 1) {
    count = static_cast<int>(std::min(tachClock * programmed / (realPulses_[t] * rpm), 65535.0));
  }
  registers[row.Low] = static_cast<std::uint8_t>(count & 0xFF);
  registers[row.High] = static_cast<std::uint8_t>(count >> 8);
}

void SimMeasure::CountProchot(SimRegisters& registers, const PlantState& plant, const ChipPins& pins) {
  const bool routed = (ThermOn5V(registers) && pins.ProchotOn5V) || (ThermOnTach4(registers) && pins.ProchotOnTach4);
  prochot_ = routed && plant.ProchotShare > 0;
  if (!prochot_) return;
  prochotMilliseconds_ += plant.ProchotShare * SimPlant::stepSeconds * 1000 / speed_;
  while (prochotMilliseconds_ >= prochotCountMilliseconds) {
    prochotMilliseconds_ -= prochotCountMilliseconds;
    if (registers[chip::ThermTimer] < 255) ++registers[chip::ThermTimer];
  }
}

void SimMeasure::Convert(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step) {
  measured_ = true;
  ConvertTemperatures(registers, plant, pins, step);
  for (std::size_t channel = 0; channel < chip::Supplies.size(); ++channel) {
    const unsigned noiseChannel = voltageChannel + static_cast<unsigned>(channel);
    const double volts = plant.Volts[channel] * (1 + noise_.At(step, noiseChannel, voltageNoise));
    const bool pinInUse =
        (channel == supply5V && ThermOn5V(registers)) || (channel == chip::CurrentSupply && AlertOn25V(registers));
    ConvertVoltage(registers, chip::Supplies[channel], volts, pinInUse);
  }
  CompareFans(registers);
  for (int diode = 0; diode < 2; ++diode) {
    PutBits(registers, chip::InterruptStatus2, chip::Diode1Bit + diode, 1,
            pins.DiodeOpen[static_cast<std::size_t>(diode)]);
  }
  PutBits(registers, chip::InterruptStatus1, chip::OutOfLimitBit, 1, registers[chip::InterruptStatus2] != 0);
}

void SimMeasure::ConvertTemperatures(SimRegisters& registers, const PlantState& plant, const ChipPins& pins,
                                     std::int64_t step) {
  for (std::size_t zone = 0; zone < chip::Zones.size(); ++zone) {
    const chip::Zone& row = chip::Zones[zone];
    diodeOpen_[zone] = zone > 0 && pins.DiodeOpen[zone - 1];
    const double noise = noise_.At(step, temperatureChannel + static_cast<unsigned>(zone), temperatureNoise);
    const double celsius = diodeOpen_[zone] ? -128 : plant.Celsius[zone] + registers.Signed(row.Offset) + noise;
    const TemperatureCode code = EncodeTemperature(celsius);
    celsius_[zone] = DecodeTemperature(code);
    registers[row.Value] = code.Byte;
    PutBits(registers, chip::ExtendedResolution2, row.FractionShift, chip::ExtensionMask, code.Fraction);
    const bool outside =
        celsius_[zone] < registers.Signed(row.LowLimit) || celsius_[zone] > registers.Signed(row.HighLimit);
    PutBits(registers, chip::InterruptStatus1, row.StatusBit, 1, outside);
    overheated_[zone] = Overheats(registers, row, celsius_[zone], overheated_[zone]);
  }
  const bool any = std::any_of(overheated_.begin(), overheated_.end(), [](bool zone) { return zone; });
  PutBits(registers, chip::InterruptStatus2, chip::OverTemperatureBit, 1, any);
}

}  // namespace krx
