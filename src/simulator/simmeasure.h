// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>

#include "simulator/simboard.h"
#include "simulator/simnoise.h"
#include "simulator/simplant.h"
#include "simulator/simregisters.h"

namespace krx {

/// The chip's converters: fills the value registers 0x20 to 0x2F, 0x76, 0x77 and 0x79 and the interrupt status.
///
/// Temperatures and voltages are converted when STRT is set and then every 100 ms, the tachometers when their pulses
/// arrive and then every second (250 ms with FAST) regardless of STRT. THERM time is measured in the reader's time,
/// since it is compared with a period of the reader's clock. A pin used as THERM input or alert output is not measured:
/// voltages read 0, the tachometer 0xFFFF, and their alarms stay clear.
class SimMeasure {
 public:
  SimMeasure(SimNoise noise, std::array<double, 4> realPulses, double speed)
      : noise_(noise), realPulses_(realPulses), speed_(speed) {}

  void Step(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step);
  /// Converts at once: STRT has just been set.
  void Start(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step);
  /// Measures the tachometers whose pulses have just begun to arrive.
  void NoticePulses(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step);

  /// True once something has been converted; RDY shows it while STRT is set.
  bool Measured() const { return measured_; }
  /// The last conversion of a zone, offset included, as shown in its registers.
  double Celsius(std::size_t zone) const { return celsius_[zone]; }
  /// The zone has reached its THERM limit and not yet fallen below limit - hysteresis.
  bool Overheated(std::size_t zone) const { return overheated_[zone]; }
  /// The zone's remote diode was open at the last conversion.
  bool DiodeOpen(std::size_t zone) const { return diodeOpen_[zone]; }
  /// The processor-hot signal reaches the THERM input and is asserted now.
  bool Prochot() const { return prochot_; }

 private:
  void MeasureTach(SimRegisters& registers, const PlantState& plant, int tach, bool arriving, std::int64_t step) const;
  void CountProchot(SimRegisters& registers, const PlantState& plant, const ChipPins& pins);
  void Convert(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step);
  void ConvertTemperatures(SimRegisters& registers, const PlantState& plant, const ChipPins& pins, std::int64_t step);

  SimNoise noise_;
  std::array<double, 4> realPulses_;
  double speed_;  ///< simulated seconds per second of the reader
  int conversionSteps_ = 0;
  int tachSteps_ = 0;
  bool measured_ = false;
  bool prochot_ = false;
  double prochotMilliseconds_ = 0;  // remainder below one count
  std::array<double, 3> celsius_{-128, -128, -128};
  std::array<bool, 3> overheated_{};
  std::array<bool, 3> diodeOpen_{};
  std::array<bool, 4> arriving_{};
};

/// Value byte and the two fraction bits. The fraction of a negative temperature counts away from zero (-10.25 is 0xF6
/// and 01), so -0.25 to -0.75 cannot be represented.
struct TemperatureCode {
  std::uint8_t Byte;
  std::uint8_t Fraction;
};
TemperatureCode EncodeTemperature(double celsius);
double DecodeTemperature(TemperatureCode code);

}  // namespace krx
