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

using enum FanSetting;

TEST(FanTables, TheListOfBehavioursHasTheSameItems) {
  for (const std::string_view item : behaviourList) EXPECT_TRUE(CodeOf(item, behaviourItems)) << item;
}

TEST(FanConfig, PercentsBecomeTheBytesThatLoadAsTheSamePercent) {
  FanBench bench;
  const std::pair<int, int> rows[] = {{0, 0},    {10, 26},  {15, 38},  {20, 51},
                                      {50, 128}, {70, 178}, {90, 230}, {100, 255}};
  for (const auto& [percent, byte] : rows) {
    EXPECT_EQ(MinimumDutyByte(percent), byte) << percent;
    bench.Poke(0x64, byte);
    bench.Config.LoadFanSettings(0, bench.Fields[0]);
    EXPECT_EQ(bench.Fields[0].MinimumDuty, std::to_string(percent));
  }
}

TEST(FanConfig, LoadsEachFieldFromItsOwnBits) {
  FanBench bench;
  bench.Poke("5D:5E 5E:E1 60:0F 61:C8 62:A0 63:E4 65:80 66:FF 56:30 57:2A 73:0A 7B:E4");
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
  const std::tuple<const char*, FanSetting, std::size_t, const char*, const char*> rows[] = {
      {"5D:1A", Behaviour, 1, " Manual Control ", "R5D W5D:FA"},
      {"5D:1A", Behaviour, 1, "Sometimes", ""},
      {"60:C5", Frequency, 1, "88.2 Hz", "R60 W60:C7"},
      {"60:CD", Frequency, 1, "11 Hz", "R60 W60:C8"},
      {"5E:FF", SpinUp, 2, "100 ms", "R5E W5E:F9"},
      {"7B:FF", ProgrammedPulses, 1, "1", "R7B W7B:F3"},
      {"62:1F", Hysteresis, 2, "off", "R62 W62:9F"},
      {"62:FF", Hysteresis, 2, "on", "R62 W62:7F"},
      {"62:FF", Hysteresis, 0, "on", "R62 W62:DF"},
      {"5C:FF", Polarity, 0, "off", "R5C W5C:EF"},
      {"73:F0", TachSource, 0, "on", "R73 W73:F1 V90 S90:A5"},
      {"73:FF", TachSource, 1, "off", "R73 W73:FD V90 S90:40"},
      {"73:00", TachSource, 3, "on", "R73 W73:08 V92 S92:A0"},
      {"", TachLimit, 3, "0", "W5B:FF W5A:FF"},
      {"", TachLimit, 0, "1000", "W55:15 W54:18"},
      {"", TachLimit, 1, " 3012 RPM", "W57:07 W56:01"},
      {"", TachLimit, 1, "RPM", "W57:FF W56:FF"},
      {"62:F7", Acoustics, 0, "on", "R62 W62:FF"},
      {"63:8F", Acoustics, 1, "off", "R63 W63:0F"},
      {"63:F7", Acoustics, 2, "on", "R63 W63:FF"},
      {"62:FF", RampRate, 0, "1", "R62 W62:F8"},
      {"62:FF", RampRate, 0, "4", ""},
      {"63:8B", RampRate, 1, " 24", "R63 W63:EB"},
      {"63:8B", RampRate, 2, "24", "R63 W63:8E"},
  };
  for (const auto& [before, setting, fan, value, traffic] : rows) {
    FanBench bench;
    bench.Poke(before);
    *bench.Sim.Board().Device(0x90) = 0xA0;
    bench.Edit(fan, {{setting, value}});
    EXPECT_EQ(bench.Apply(), traffic);
  }
}

/// Everything edited on fans 1 and 2, and the tach input of fan 4.
void EditMuch(FanBench& bench) {
  for (const std::size_t fan : {1U, 0U}) {
    bench.Edit(fan, {{Behaviour, "Manual Control"}, {Frequency, "11 Hz"}, {SpinUp, "None"}, {MinimumDuty, "30"}});
    bench.Edit(fan, {{Hysteresis, "off"}, {Polarity, fan == 0 ? "on" : "off"}, {Acoustics, "on"}, {RampRate, "48"}});
  }
  for (const std::size_t tach : {3U, 0U}) {
    bench.Edit(tach, {{ProgrammedPulses, "2"}, {TachSource, "on"}, {TachLimit, "1000"}, {ActualPulses, "4"}});
    bench.Edit(tach, {{FanType, tach == 0 ? "CPU" : "Fan4"}});
  }
}
constexpr const char* muchTraffic =
    "R5C W5C:E2 R5D W5D:E2 R5F W5F:C0 R60 W60:C0 R5C W5C:E0 R5D W5D:E0 W64:4C W65:4C R7B W7B:55 R7B W7B:55 "
    "R62 W62:20 R62 W62:60 R5C W5C:F0 R5D W5D:E0 R73 W73:01 V90 S90:05 R73 W73:09 V92 S92:A0 "
    "W55:2A W54:30 W5B:2A W5A:30 R62 W62:68 R63 W63:80 R62 W62:6F R63 W63:F0";

TEST(FanConfig, ThirteenStepsInOrderEachOnTopOfTheOnesBefore) {
  FanBench bench;
  EditMuch(bench);
  EXPECT_EQ(bench.Apply(), muchTraffic) << "the limit uses the new programmed pulses and the previous actual ones";
  EXPECT_EQ(bench.Fans.ProgrammedPulses, (std::array<float, 4>{2, 1, 1, 2}));
  EXPECT_EQ(bench.Fans.ActualPulses, (std::array<float, 4>{4, 1, 1, 4}));
  EXPECT_EQ(bench.Fans.FanLabel, (std::array<std::string, 4>{"CPU Fan", "Fan2", "Fan3", "Fan4"}));
  EXPECT_EQ(bench.Codes, (std::array<std::uint8_t, 3>{7, 7, 3}));
  EXPECT_TRUE(bench.Fans.PendingChange.Has(Behaviour, 0)) << "the flags stay";
}

TEST(FanConfig, SpeedsAreMultipliedByTheProgrammedPulsesBeforeTheyAreDivided) {
  FanBench bench;
  bench.Fans.ProgrammedPulses[0] = 4;
  bench.Fans.ActualPulses[0] = 3;
  bench.Edit(0, {{TachLimit, "11891"}});
  EXPECT_EQ(bench.Apply(), "W55:02 W54:5D") << "605.4999, where the quotient first gives 605.5 and 606";
  EXPECT_EQ(TachLimitCount(11891, bench.Fans.PulseCorrection(0)), 606) << "as the gauge does";
  bench.Poke("54:73 55:2E");  // 11891 counts: the same division the other way
  bench.Config.LoadFanSettings(0, bench.Fields[0]);
  EXPECT_EQ(bench.Fields[0].TachLimit, "605");
}

TEST(FanConfig, PulsesThatTheStartCouldNotReadAreKnownWithTheFirstByteSeen) {
  FanBench loading;
  loading.Fans.PulsesKnown = false;
  loading.Poke("7B:E4 56:E8 57:03");
  loading.Config.LoadFanSettings(1, loading.Fields[1]);
  EXPECT_EQ(loading.Fields[1].TachLimit, "10800") << "two pulses";
  FanBench applying;
  applying.Fans.PulsesKnown = false;
  applying.Poke("7B:E4");
  applying.Edit(3, {{ProgrammedPulses, "1"}});
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

TEST(ApplyPreview, ListsEveryWriteOfAnApplyAndMakesOnlyItsReads) {
  FanBench bench;
  bench.Model.Open();
  EditMuch(bench);
  bench.BusTraffic();
  const ApplyPreview preview = PreviewApply(bench.Bus, bench.Fans, bench.Fields);
  EXPECT_EQ(bench.BusTraffic(), "R5C R5D R5F R60 R7B R62 R73 V90 V92 R63");
  std::string planned;
  for (const PlannedWrite& write : preview.Writes) planned += fmt::format("{:02X} ", write.New);
  EXPECT_EQ(planned, "E2 E2 C0 C0 E0 E0 4C 4C 55 55 20 60 F0 E0 01 05 09 A0 2A 30 2A 30 68 80 6F F0 ");
  const std::pair<std::size_t, const char*> texts[] = {
      {0, "5Ch PWM1 Configuration Register: 62h → E2h (PWM1 behaviour: Always On → Manual Control)"},
      {6, "64h PWM1 Min. Duty Cycle: 80h → 4Ch (PWM1 minimum duty: 50.2 % → 29.8 %)"},
      {7, "65h PWM2 Min. Duty Cycle: ? → 4Ch (PWM2 minimum duty: ? → 29.8 %)"},
      {10, "62h Enhance Acoustics Reg 1: 00h → 20h (PWM1 hysteresis: on → off)"},
      {15, "90h switches U5: 00h → 05h"},
      {17, "92h switches U6: 00h → A0h"}};
  for (const auto& [write, text] : texts) EXPECT_EQ(PlannedWriteText(preview.Writes.at(write)), text);
  bench.Edit(0, {{MinimumDuty, "200"}});
  EXPECT_EQ(PreviewApply(bench.Bus, bench.Fans, bench.Fields).Refusal->Message, "Invalid Min PWM Value");
}

}  // namespace
}  // namespace krx
