// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/fanconfig.h"

#include <cmath>
#include <span>

#include "board/boardsync.h"
#include "fans/fantables.h"
#include "journal/recordingmodule.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

std::uint8_t Shifted(std::uint8_t field, int by) {
  return static_cast<std::uint8_t>(field << by);
}
std::uint8_t AllBits(bool set) {
  return set ? 0xFF : 0x00;
}

std::string Item(std::span<const std::string_view> items, int code) {
  return std::string(items[static_cast<std::size_t>(code)]);
}

/// 1 to 4; empty when the text is not one of the items.
std::optional<int> Pulses(const std::string& text) {
  const auto code = CodeOf(text, pulseItems);
  if (!code) return std::nullopt;
  return *code + 1;
}

/// The leading number of the text; the dialog ensures that nothing follows.
float LimitRpm(const std::string& text) {
  return static_cast<float>(Val(text));
}

}  // namespace

std::optional<std::uint8_t> MinimumDutyByte(double percent) {
  if (!(percent >= 0 && percent <= 100)) return std::nullopt;
  // 255/100 and not 2.55, which is not exact in binary: 50 % would be just below the half and give 127.
  return static_cast<std::uint8_t>(CInt(percent * 255 / 100));
}

FanConfig::FanConfig(Link& link, Board& board, FanCommon& fans, std::array<std::uint8_t, 3>& behaviourCodes)
    : link_(link), board_(board), fans_(fans), behaviourCodes_(behaviourCodes) {}

void FanConfig::LoadFanSettings(std::size_t index, FanFields& fields) {
  if (index < pwmCount) LoadOutput(index, fields);
  if (index < fanCount) LoadTach(index, fields);
}

void FanConfig::LoadSeen(std::size_t index, FanFields& fields) {
  RecordingLink seen(link_, RecordingLink::Reads::FromSeen);
  FanConfig(seen.Recording(), board_, fans_, behaviourCodes_).LoadFanSettings(index, fields);
}

void FanConfig::LoadOutput(std::size_t k, FanFields& fields) {
  const chip::Output& output = chip::Outputs.at(k);
  const std::uint8_t configuration = ReadByte(link_, output.Configuration);
  fields.Behaviour = Item(behaviourItems, configuration >> chip::BehaviourShift);
  fields.ActiveHigh = (configuration & chip::PolarityMask) != 0;
  fields.SpinUp = Item(spinUpItems, configuration & chip::SpinUpMask);
  fields.MinimumDuty = std::to_string(CInt(ReadByte(link_, output.MinimumDuty) * 100.0 / 255));
  fields.HysteresisOn = (ReadByte(link_, chip::Acoustics1) & output.StayAtMinimum) == 0;
  fields.Frequency = Item(frequencyItems, ReadByte(link_, output.Frequency) & chip::FrequencyMask);
  fields.EnhancedAcoustics = (ReadByte(link_, output.Acoustics) & output.AcousticsEnable) != 0;
  fields.RampRate = Item(rampRateItems, ReadByte(link_, output.Acoustics) >> output.RampShift & chip::RampMask);
}

void FanConfig::LoadTach(std::size_t t, FanFields& fields) {
  const int high = ReadByte(link_, chip::Tachs.at(t).LimitHigh);
  const int count = high * 256 + ReadByte(link_, chip::Tachs.at(t).LimitLow);
  fields.TwoWire = (ReadByte(link_, chip::Configuration2) & chip::Tachs.at(t).TwoWire) != 0;
  const std::uint8_t pulses = ReadByte(link_, chip::FanPulses);
  // If the start-up could not read them, this is the first reading.
  if (!fans_.PulsesKnown) fans_.TakePulses(pulses);
  fields.TachLimit = std::to_string(CInt(fans_.Corrected(TachToRPM(static_cast<float>(count)), t)));
  fields.ProgrammedPulses = Item(pulseItems, pulses >> chip::Tachs.at(t).PulsesShift & chip::PulsesMask);
  fields.ActualPulses = std::to_string(CInt(fans_.ActualPulses.at(t)));
  fields.FanType = TypeOfLabel(fans_.FanLabel.at(t));
}

std::optional<FanRefusal> FanConfig::Check(const AllFanFields& fields) const {
  for (std::size_t k = 0; k < pwmCount; ++k) {
    if (Pending(FanSetting::MinimumDuty, k) && !MinimumDutyByte(Val(fields.at(k).MinimumDuty))) {
      return FanRefusal{"Invalid Min PWM Value", FanSetting::MinimumDuty, k};
    }
  }
  for (std::size_t t = 0; t < fanCount; ++t) {
    if (!Pending(FanSetting::TachLimit, t)) continue;
    // The limit is converted after the programmed pulses have been written.
    float programmed = fans_.ProgrammedPulses.at(t);
    if (Pending(FanSetting::ProgrammedPulses, t)) {
      programmed = static_cast<float>(Pulses(fields.at(t).ProgrammedPulses).value_or(CInt(programmed)));
    }
    try {
      TachLimitCount(LimitRpm(fields.at(t).TachLimit), programmed, fans_.ActualPulses.at(t));
    } catch (const CommsError&) {
      return FanRefusal{"Invalid Tach Limit", FanSetting::TachLimit, t};
    }
  }
  return std::nullopt;
}

void FanConfig::ApplyFanSettings(const AllFanFields& fields) {
  const auto forOutputs = [&](FanSetting setting, auto apply) {
    for (std::size_t k = 0; k < pwmCount; ++k) {
      if (Pending(setting, k)) apply(chip::Outputs.at(k), fields.at(k), k);
    }
  };
  const auto forTachs = [&](FanSetting setting, auto apply) {
    for (std::size_t t = 0; t < fanCount; ++t) {
      if (Pending(setting, t)) apply(fields.at(t), t);
    }
  };
  // Every step reads its register again, so that steps sharing a register do not undo each other.
  forOutputs(FanSetting::Behaviour,
             [&](const chip::Output&, const FanFields& fan, std::size_t k) { ApplyBehaviour(k, fan); });
  forOutputs(FanSetting::Frequency, [&](const chip::Output& output, const FanFields& fan, std::size_t) {
    if (const auto code = CodeOf(fan.Frequency, frequencyItems)) {
      UpdateBits(link_, output.Frequency, chip::FrequencyMask, *code);
    }
  });
  forOutputs(FanSetting::SpinUp, [&](const chip::Output& output, const FanFields& fan, std::size_t) {
    if (const auto code = CodeOf(fan.SpinUp, spinUpItems))
      UpdateBits(link_, output.Configuration, chip::SpinUpMask, *code);
  });
  forOutputs(FanSetting::MinimumDuty, [&](const chip::Output& output, const FanFields& fan, std::size_t) {
    if (const auto byte = MinimumDutyByte(Val(fan.MinimumDuty))) WriteByte(link_, output.MinimumDuty, *byte);
  });
  forTachs(FanSetting::ProgrammedPulses, [&](const FanFields& fan, std::size_t t) { ApplyPulses(t, fan); });
  forOutputs(FanSetting::Hysteresis, [&](const chip::Output& output, const FanFields& fan, std::size_t) {
    UpdateBits(link_, chip::Acoustics1, output.StayAtMinimum, AllBits(!fan.HysteresisOn));
  });
  forOutputs(FanSetting::Polarity, [&](const chip::Output& output, const FanFields& fan, std::size_t) {
    UpdateBits(link_, output.Configuration, chip::PolarityMask, AllBits(fan.ActiveHigh));
  });
  forTachs(FanSetting::TachSource, [&](const FanFields& fan, std::size_t t) { ApplyTachSource(t, fan); });
  forTachs(FanSetting::TachLimit, [&](const FanFields& fan, std::size_t t) { ApplyTachLimit(t, fan); });
  forOutputs(FanSetting::Acoustics, [&](const chip::Output& output, const FanFields& fan, std::size_t) {
    UpdateBits(link_, output.Acoustics, output.AcousticsEnable, AllBits(fan.EnhancedAcoustics));
  });
  forOutputs(FanSetting::RampRate, [&](const chip::Output& output, const FanFields& fan, std::size_t) {
    if (const auto code = RampRateCode(fan.RampRate)) {
      UpdateBits(link_, output.Acoustics, Shifted(chip::RampMask, output.RampShift), Shifted(*code, output.RampShift));
    }
  });
  forTachs(FanSetting::ActualPulses, [&](const FanFields& fan, std::size_t t) {
    if (const auto pulses = Pulses(fan.ActualPulses)) fans_.ActualPulses.at(t) = static_cast<float>(*pulses);
  });
  forTachs(FanSetting::FanType, [&](const FanFields& fan, std::size_t t) {
    if (const auto label = LabelOfType(fan.FanType)) fans_.FanLabel.at(t) = *label;
  });
}

void FanConfig::ApplyBehaviour(std::size_t k, const FanFields& fields) {
  const auto code = CodeOf(fields.Behaviour, behaviourItems);
  if (!code) return;
  UpdateBits(link_, chip::Outputs.at(k).Configuration, chip::BehaviourMask, Shifted(*code, chip::BehaviourShift));
  behaviourCodes_.at(k) = *code;
}

void FanConfig::ApplyPulses(std::size_t t, const FanFields& fields) {
  const auto pulses = Pulses(fields.ProgrammedPulses);
  if (!pulses) return;
  const int shift = chip::Tachs.at(t).PulsesShift;
  UpdateBits(link_, chip::FanPulses, Shifted(chip::PulsesMask, shift),
             Shifted(static_cast<std::uint8_t>(*pulses - 1), shift));
  // The byte holds all four fields, so the pulses of the other fans are known as well.
  if (const auto all = link_.Seen.Byte(chip::FanPulses); all && !fans_.PulsesKnown) fans_.TakePulses(*all);
  fans_.ProgrammedPulses.at(t) = static_cast<float>(*pulses);
}

void FanConfig::ApplyTachSource(std::size_t t, const FanFields& fields) {
  UpdateBits(link_, chip::Configuration2, chip::Tachs.at(t).TwoWire, AllBits(fields.TwoWire));
  RouteTach(board_, static_cast<int>(t), fields.TwoWire);
}

void FanConfig::ApplyTachLimit(std::size_t t, const FanFields& fields) {
  const int count = TachLimitCount(LimitRpm(fields.TachLimit), fans_.ProgrammedPulses.at(t), fans_.ActualPulses.at(t));
  // High byte first here; a dragged limit marker writes the low byte first.
  WriteByte(link_, chip::Tachs.at(t).LimitHigh, count >> 8);
  WriteByte(link_, chip::Tachs.at(t).LimitLow, count & 0xFF);
}

}  // namespace krx
