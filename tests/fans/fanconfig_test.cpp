// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/fanconfig.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "fans/applypreview.h"
#include "fans/fantables.h"
#include "registers/conversions.h"
#include "support/fanbench.h"

namespace krx {
namespace {

TEST(FanTables, TextsAreCodesAndTheListsHoldTheSameItems) {
  for (const std::string_view item : behaviourList) EXPECT_TRUE(CodeOf(item, behaviourItems)) << item;
  EXPECT_EQ(CodeOf("  Always Off ", behaviourItems), 4);
  EXPECT_EQ(CodeOf("Fastest of Remote 1,2", behaviourItems), 5);
  EXPECT_EQ(CodeOf("", spinUpItems), std::nullopt);
  EXPECT_EQ(CodeOf("667 ms", spinUpItems), 4);
  EXPECT_EQ(CodeOf("88.2 Hz", frequencyItems), 7);
  EXPECT_EQ(RampRateCode(" 24"), 6);
  EXPECT_EQ(RampRateCode("4"), std::nullopt);
  EXPECT_EQ(RampRateCode(""), std::nullopt);
  EXPECT_EQ(LabelOfType("Front Chassis"), "Fr. Chas.");
  EXPECT_EQ(LabelOfType("Fan1"), std::nullopt);
  EXPECT_EQ(TypeOfLabel("Unused"), "Not Used");
  EXPECT_EQ(TypeOfLabel("Fan1"), "Fan1");
}

TEST(FanConfig, PercentsBecomeTheBytesThatLoadAsTheSamePercent) {
  for (const auto& [percent, byte] : {std::pair{0, 0},
                                      {10, 26},
                                      {15, 38},
                                      {20, 51},
                                      {30, 76},
                                      {45, 115},
                                      {50, 128},
                                      {70, 178},
                                      {90, 230},
                                      {100, 255}}) {
    EXPECT_EQ(MinimumDutyByte(percent), byte) << percent;
    FanBench bench;
    bench.Poke(0x64, static_cast<std::uint8_t>(byte));
    bench.Config.LoadFanSettings(0, bench.Fields[0]);
    EXPECT_EQ(bench.Fields[0].MinimumDuty, std::to_string(percent));
  }
}

TEST(FanConfig, LoadsEachFieldFromItsOwnBits) {
  FanBench bench;
  for (const auto& [reg, value] : std::initializer_list<std::pair<std::uint8_t, std::uint8_t>>{{0x5D, 0x5E},
                                                                                               {0x5E, 0xE1},
                                                                                               {0x60, 0x0F},
                                                                                               {0x61, 0xC8},
                                                                                               {0x62, 0xA0},
                                                                                               {0x63, 0xE4},
                                                                                               {0x65, 128},
                                                                                               {0x66, 255},
                                                                                               {0x56, 0x30},
                                                                                               {0x57, 0x2A},
                                                                                               {0x73, 0x0A},
                                                                                               {0x7B, 0xE4}}) {
    bench.Poke(reg, value);
  }
  bench.Fans.FanLabel = {"Fan1", "Fr. Chas.", "mine", "Unused"};
  bench.Fans.ProgrammedPulses = {1, 2, 3, 4};
  bench.Fans.ActualPulses[3] = 2;
  const auto load = [&](std::size_t index) {
    FanFields fan;
    bench.Config.LoadFanSettings(index, fan);
    return fmt::format("{}/{}/{}/{}/{}/{}/{}/{} {}/{}/{}/{}/{}", fan.Behaviour, fan.ActiveHigh, fan.SpinUp,
                       fan.MinimumDuty, fan.HysteresisOn, fan.Frequency, fan.EnhancedAcoustics, fan.RampRate,
                       fan.TachLimit, fan.TwoWire, fan.ProgrammedPulses, fan.ActualPulses, fan.FanType);
  };
  EXPECT_EQ(load(1), "Remote2 Control/true/2 sec/50/true/88.2 Hz/true/24 1000/true/2/1/Front Chassis");
  EXPECT_EQ(bench.Traffic(), "R5D R65 R62 R60 R63 R63 R57 R56 R73 R7B");
  EXPECT_EQ(load(2), "Manual Control/false/100 ms/100/false/11 Hz/false/8 0/false/3/1/mine");
  EXPECT_EQ(bench.Traffic(), "R5E R66 R62 R61 R63 R63 R59 R58 R73 R7B");
  load(0);
  EXPECT_EQ(bench.Traffic(), "R5C R64 R62 R5F R62 R62 R55 R54 R73 R7B");
  EXPECT_TRUE(load(3).ends_with("/ 0/true/4/2/Not Used"));
  EXPECT_EQ(load(4), "/false///false//false/ /false///CPU Fan");
  EXPECT_EQ(bench.Traffic(), "R5B R5A R73 R7B");
}

TEST(FanConfig, EverySettingWritesItsOwnBitsOnly) {
  using S = FanSetting;
  using F = FanFields;
  using Edit = std::function<void(FanBench&)>;
  const auto text = [](S setting, std::size_t fan, std::string F::*field, const char* value) -> Edit {
    return [=](FanBench& bench) { bench.Edit(setting, fan, field, value); };
  };
  const auto mark = [](S setting, std::size_t fan, bool F::*field, bool on) -> Edit {
    return [=](FanBench& bench) { bench.Edit(setting, fan, field, on); };
  };
  struct Row {
    std::uint8_t Register, Value;
    Edit Change;
    const char* Traffic;
  };
  const Row rows[] = {
      {0x5D, 0x1A, text(S::Behaviour, 1, &F::Behaviour, " Manual Control "), "R5D W5D:FA"},
      {0x5D, 0x1A, text(S::Behaviour, 1, &F::Behaviour, "Sometimes"), ""},
      {0x60, 0xC5, text(S::Frequency, 1, &F::Frequency, "88.2 Hz"), "R60 W60:C7"},
      {0x60, 0xCD, text(S::Frequency, 1, &F::Frequency, "11 Hz"), "R60 W60:C8"},
      {0x5E, 0xFF, text(S::SpinUp, 2, &F::SpinUp, "100 ms"), "R5E W5E:F9"},
      {0x64, 0x00, text(S::MinimumDuty, 0, &F::MinimumDuty, "50"), "W64:80"},
      {0x7B, 0x15, text(S::ProgrammedPulses, 3, &F::ProgrammedPulses, "4"), "R7B W7B:D5"},
      {0x7B, 0xFF, text(S::ProgrammedPulses, 1, &F::ProgrammedPulses, "1"), "R7B W7B:F3"},
      {0x62, 0x1F, mark(S::Hysteresis, 2, &F::HysteresisOn, false), "R62 W62:9F"},
      {0x62, 0xFF, mark(S::Hysteresis, 2, &F::HysteresisOn, true), "R62 W62:7F"},
      {0x62, 0xFF, mark(S::Hysteresis, 0, &F::HysteresisOn, true), "R62 W62:DF"},
      {0x5C, 0xFF, mark(S::Polarity, 0, &F::ActiveHigh, false), "R5C W5C:EF"},
      {0x73, 0xF0, mark(S::TachSource, 0, &F::TwoWire, true), "R73 W73:F1 V90 S90:A5"},
      {0x73, 0xFF, mark(S::TachSource, 1, &F::TwoWire, false), "R73 W73:FD V90 S90:40"},
      {0x73, 0x00, mark(S::TachSource, 3, &F::TwoWire, true), "R73 W73:08 V92 S92:A0"},
      {0x73, 0x00, text(S::TachLimit, 3, &F::TachLimit, "0"), "W5B:FF W5A:FF"},
      {0x73, 0x00, text(S::TachLimit, 0, &F::TachLimit, "1000"), "W55:15 W54:18"},
      {0x73, 0x00, text(S::TachLimit, 1, &F::TachLimit, " 3012 RPM"), "W57:07 W56:01"},
      {0x73, 0x00, text(S::TachLimit, 1, &F::TachLimit, "RPM"), "W57:FF W56:FF"},
      {0x62, 0xF7, mark(S::Acoustics, 0, &F::EnhancedAcoustics, true), "R62 W62:FF"},
      {0x63, 0x8F, mark(S::Acoustics, 1, &F::EnhancedAcoustics, false), "R63 W63:0F"},
      {0x63, 0xF7, mark(S::Acoustics, 2, &F::EnhancedAcoustics, true), "R63 W63:FF"},
      {0x62, 0xFF, text(S::RampRate, 0, &F::RampRate, "1"), "R62 W62:F8"},
      {0x63, 0x8B, text(S::RampRate, 1, &F::RampRate, "24"), "R63 W63:EB"},
      {0x63, 0x8B, text(S::RampRate, 2, &F::RampRate, "24"), "R63 W63:8E"},
  };
  for (const Row& row : rows) {
    FanBench bench;
    bench.Poke(row.Register, row.Value);
    *bench.Sim.Board().Device(0x90) = 0xA0;
    row.Change(bench);
    EXPECT_EQ(bench.Apply(), row.Traffic);
  }
}

/// Everything edited on fans 1 and 2, and the tach input of fan 4.
void EditMuch(FanBench& bench) {
  using S = FanSetting;
  using F = FanFields;
  for (const std::size_t fan : {std::size_t{1}, std::size_t{0}}) {
    bench.Edit(S::Behaviour, fan, &F::Behaviour, "Manual Control");
    bench.Edit(S::Frequency, fan, &F::Frequency, "11 Hz");
    bench.Edit(S::SpinUp, fan, &F::SpinUp, "None");
    bench.Edit(S::MinimumDuty, fan, &F::MinimumDuty, "30");
    bench.Edit(S::Hysteresis, fan, &F::HysteresisOn, false);
    bench.Edit(S::Polarity, fan, &F::ActiveHigh, fan == 0);
    bench.Edit(S::Acoustics, fan, &F::EnhancedAcoustics, true);
    bench.Edit(S::RampRate, fan, &F::RampRate, "48");
  }
  for (const std::size_t tach : {std::size_t{3}, std::size_t{0}}) {
    bench.Edit(S::ProgrammedPulses, tach, &F::ProgrammedPulses, "2");
    bench.Edit(S::TachSource, tach, &F::TwoWire, true);
    bench.Edit(S::TachLimit, tach, &F::TachLimit, "1000");
    bench.Edit(S::ActualPulses, tach, &F::ActualPulses, "4");
    bench.Edit(S::FanType, tach, &F::FanType, tach == 0 ? "CPU" : "Fan4");
  }
}
constexpr const char* muchTraffic =
    "R5C W5C:E2 R5D W5D:E2 R5F W5F:C0 R60 W60:C0 R5C W5C:E0 R5D W5D:E0 W64:4C W65:4C R7B W7B:55 R7B W7B:55 "
    "R62 W62:20 R62 W62:60 R5C W5C:F0 R5D W5D:E0 R73 W73:01 V90 S90:05 R73 W73:09 V92 S92:A0 "
    "W55:2A W54:30 W5B:2A W5A:30 R62 W62:68 R63 W63:80 R62 W62:6F R63 W63:F0";

TEST(FanConfig, ThirteenStepsInOrderEachOnTopOfTheOnesBefore) {
  FanBench bench;
  EditMuch(bench);
  EXPECT_EQ(bench.Apply(), muchTraffic) << "the limit goes by the pulses programmed now and the fan's of before";
  EXPECT_EQ(bench.Fans.ProgrammedPulses, (std::array<float, 4>{2, 1, 1, 2}));
  EXPECT_EQ(bench.Fans.ActualPulses, (std::array<float, 4>{4, 1, 1, 4}));
  EXPECT_EQ(bench.Fans.FanLabel, (std::array<std::string, 4>{"CPU Fan", "Fan2", "Fan3", "Fan4"}));
  EXPECT_EQ(bench.Codes, (std::array<std::uint8_t, 3>{7, 7, 3}));
  EXPECT_TRUE(bench.Fans.PendingChange.Has(FanSetting::Behaviour, 0)) << "the flags stay";
}

TEST(FanConfig, SpeedsAreMultipliedByTheProgrammedPulsesBeforeTheyAreDivided) {
  FanBench bench;
  bench.Fans.ProgrammedPulses[0] = 4;
  bench.Fans.ActualPulses[0] = 3;
  bench.Edit(FanSetting::TachLimit, 0, &FanFields::TachLimit, "11891");
  EXPECT_EQ(bench.Apply(), "W55:02 W54:5D") << "605.4999, where the quotient first gives 605.5 and 606";
  EXPECT_EQ(TachLimitCount(11891, bench.Fans.PulseCorrection(0)), 606) << "as the gauge does";
  bench.Poke(0x54, 0x73), bench.Poke(0x55, 0x2E);  // 11891 counts: the same division the other way
  bench.Config.LoadFanSettings(0, bench.Fields[0]);
  EXPECT_EQ(bench.Fields[0].TachLimit, "605");
}

TEST(FanConfig, PulsesThatTheStartCouldNotReadAreKnownWithTheFirstByteSeen) {
  FanBench loading;
  loading.Fans.PulsesKnown = false;
  loading.Poke(0x7B, 0xE4);
  loading.Poke(0x56, 0xE8), loading.Poke(0x57, 0x03);
  loading.Config.LoadFanSettings(1, loading.Fields[1]);
  EXPECT_EQ(loading.Fields[1].TachLimit, "10800") << "two pulses";
  FanBench applying;
  applying.Fans.PulsesKnown = false;
  applying.Poke(0x7B, 0xE4);
  applying.Edit(FanSetting::ProgrammedPulses, 3, &FanFields::ProgrammedPulses, "1");
  EXPECT_EQ(applying.Apply(), "R7B W7B:24");
  EXPECT_TRUE(applying.Fans.PulsesKnown);
  EXPECT_EQ(applying.Fans.ProgrammedPulses, (std::array<float, 4>{1, 2, 3, 1}));
}

TEST(FanConfig, AFailedTransferStopsThereAndLaterStepsSetNothing) {
  for (int nth = 1; nth <= WordCount(muchTraffic); ++nth) {
    FanBench bench;
    EditMuch(bench);
    EXPECT_EQ(UpToFailure(bench, nth, [&] { bench.Config.ApplyFanSettings(bench.Fields); }),
              FirstFailing(muchTraffic, nth));
    EXPECT_EQ(bench.Codes[0], nth <= 2 ? 3 : 7);
    EXPECT_EQ(bench.Fans.ProgrammedPulses[3], nth <= 18 ? 1 : 2);
    EXPECT_EQ(bench.Fans.FanLabel[0], "Fan1");
  }
}

TEST(FanConfig, OnTheSmbusTheTachSourceIsWrittenWithoutTheBoard) {
  FanBench bench(TestBench::Medium::Smbus);
  bench.Edit(FanSetting::TachSource, 0, &FanFields::TwoWire, true);
  EXPECT_EQ(bench.Apply(), "R73 W73:01");
}

TEST(ApplyPreview, ListsEveryWriteOfAnApplyAndMakesOnlyItsReads) {
  FanBench bench;
  bench.Model.Open();
  EditMuch(bench);
  const FanCommon before = bench.Fans;
  bench.BusTraffic();
  const ApplyPreview preview = PreviewApply(bench.Bus, bench.Fans, bench.Fields);
  EXPECT_EQ(bench.BusTraffic(), "R5C R5D R5F R60 R7B R62 R73 V90 V92 R63");
  EXPECT_EQ(bench.Fans.ActualPulses, before.ActualPulses);
  EXPECT_EQ(bench.Fans.FanLabel, before.FanLabel);
  std::string planned, made;
  for (const PlannedWrite& write : preview.Writes) planned += fmt::format("{:02X} ", write.New);
  for (std::string_view text = muchTraffic; text.find(':') != text.npos; text.remove_prefix(text.find(':') + 3)) {
    made += std::string(text.substr(text.find(':') + 1, 2)) + " ";
  }
  EXPECT_EQ(planned, made);
  EXPECT_EQ(PlannedWriteText(preview.Writes[0]), "5Ch PWM1 Configuration Register: 62h -> E2h");
  EXPECT_EQ(PlannedWriteText(preview.Writes[6]), "64h PWM1 Min. Duty Cycle: 80h -> 4Ch");
  EXPECT_EQ(PlannedWriteText(preview.Writes[15]), "90h switches U5: 00h -> 05h");
  bench.Edit(FanSetting::MinimumDuty, 0, &FanFields::MinimumDuty, "200");
  EXPECT_EQ(PreviewApply(bench.Bus, bench.Fans, bench.Fields).Refusal->Message, "Invalid Min PWM Value");
}

}  // namespace
}  // namespace krx
