// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/visualmodel.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>

#include "console/visualbench.h"
#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

using Medium = TestBench::Medium;

TEST(Channels, FansAreCalledByTheirPlaceOrTheirNumber) {
  FanCommon fans;
  fans.FanLabel = {"CPU Fan", "Fan2", "Int. Circ.", "My fan"};
  std::string captions;
  for (std::size_t fan = 3; fan < 7; ++fan) captions += ChannelCaption(fan, fans, false) + "|";
  EXPECT_EQ(captions + ChannelCaption(11, fans, false), "CPU Fan|Fan 2|Int. Circ.|Fan 4|2.5V");
}

TEST(Channels, ReadoutsCarryTheirUnits) {
  Measurements measured;
  measured.Temperatures[1] = -10.25F;
  measured.FanSpeeds[3] = 2399.6F;
  measured.Voltages = {5.04F, 0, 1.5F, 3.312F, 1.2F};
  PowerSettings power;
  std::string readouts;
  for (const std::size_t channel : {1U, 6U, 10U, 11U}) readouts += ReadoutText(channel, measured, power) + "|";
  power.PowerMode = true;
  readouts += ReadoutText(11, measured, power) + "|";  // -400 A
  power.PowerEquation = false;
  EXPECT_EQ(readouts + ReadoutText(11, measured, power), "-10.25C|2400 RPM|3.312 V|1.200 V|0.00 A|16.00 A");
}

TEST(VisualModel, EnteringStartsTheTimerOnlyWhileTheChipMonitors) {
  VisualBench bench;
  bench.Poke(0x40, 0x00);
  bench.Model.EnterVisualDisplay();
  EXPECT_EQ(bench.Traffic(), "R78 R78 R31 R40");
  EXPECT_EQ(bench.Timers.Take(), "T-");
  EXPECT_EQ(bench.Model.State().Marks[0], CaptionMark::FirstShown);

  bench.Poke(0x40, 0x01);
  bench.Work.Display.SelectedChannel = 5;
  bench.Model.EnterVisualDisplay();
  EXPECT_EQ(bench.Traffic(), "R78 R78 R32 R40");
  EXPECT_EQ(bench.Timers.Take(), "T- V+");
  EXPECT_EQ(bench.Work.Display.SelectedChannel, 5) << "only the first visit selects channel 0";

  bench.Model.EasySetup();
  EXPECT_EQ(bench.Timers.Take(), "V+ V+");
  bench.Traffic();
  bench.Model.EnterVisualDisplay();
  EXPECT_EQ(bench.Traffic(), "R78 R78 R30") << "a chip that was set up is read, whatever it says";
  EXPECT_EQ(bench.Timers.Take(), "T- V+");

  bench.Work.Log.TimerStateAtLogStart = true;
  bench.Model.EnterVisualDisplay();
  EXPECT_EQ(bench.Timers.Take(), "T-");
  bench.Model.EnterReadWrite();
  EXPECT_EQ(bench.Timers.Take(), "V- T-");
}

TEST(VisualModel, PinFunctionsDecideWhatIsSeen) {
  const struct {
    int Config3, Config4;
    const char* Seen;  ///< fan 4 and its trace, 5V, THERM's trace, 2.5V and its trace, the caption
  } rows[] = {
      {0x00, 0x00, "111011"}, {0x02, 0x02, "110111THERM %"}, {0x02, 0x00, "001111THERM %"}, {0x00, 0x01, "111000"}};
  for (const auto& row : rows) {
    VisualBench bench;
    bench.Work.BoardFlags.VidProbeSteady = true;
    bench.Poke(0x78, row.Config3);
    bench.Poke(0x7D, row.Config4);
    bench.Model.EnterVisualDisplay();
    const VisualState& state = bench.Model.State();
    std::string seen;
    for (const bool is : {state.ChannelShown[6], state.TraceShown[6], state.ChannelShown[7], state.TraceShown[8],
                          state.ChannelShown[11], state.TraceShown[13]})
      seen += is ? '1' : '0';
    EXPECT_EQ(seen + state.Strip2Caption, row.Seen);
    EXPECT_EQ(state.Strip3Caption, "2.5V");
  }
}

TEST(VisualModel, AFanBringsItsOutputsPanelAndEachChannelItsChart) {
  const struct {
    std::size_t Channel;
    Strip Shown;
    int Pwm;
  } rows[] = {{0, Strip::Strip2, 1}, {3, Strip::Strip2, 1}, {4, Strip::Strip2, 2},
              {6, Strip::Strip2, 3}, {8, Strip::Strip3, 3}, {11, Strip::Strip3, 3}};
  VisualBench bench;
  bench.Work.Display.PwmManual = {false, true, false};
  WriteByte(bench.Bus, 0x5D, 0xE2);
  WriteByte(bench.Bus, 0x31, 0x80);
  const VisualState& state = bench.Model.State();
  for (const auto& row : rows) {
    bench.Model.SelectChannel(row.Channel);
    EXPECT_EQ(state.ShownStrip, row.Shown);
    EXPECT_EQ(state.PanelCaption, state.SliderCaption + " PWM");
    EXPECT_EQ(state.SliderCaption, "Fan" + std::to_string(row.Pwm));
    EXPECT_EQ(state.SliderShown, row.Pwm == 2);
    EXPECT_EQ(state.SliderValue, row.Channel < 4 ? 255 : 128);
  }
  bench.Work.Power.PowerMode = true;
  bench.Model.SelectChannel(11);
  EXPECT_EQ(state.ShownStrip, Strip::Strip2);
  EXPECT_EQ(state.Gauge.Scale().Maximum, 180);
}

TEST(VisualModel, AChannelWhoseLimitsCannotBeReadShowsItsOwnValue) {
  VisualBench bench;
  bench.Model.SelectChannel(0);
  bench.Work.Measured.Voltages[0] = 5;
  bench.FailTransfer(1);
  EXPECT_THROW(bench.Model.SelectChannel(7), CommsError);
  EXPECT_EQ(bench.Model.State().Readout, "5.000 V");
  EXPECT_EQ(bench.Model.State().ShownStrip, Strip::Strip3);
  EXPECT_FALSE(bench.Model.State().Gauge.IsDraggable(Marker::High)) << "the other channel's limit";
}

TEST(VisualModel, ATickMovesTheSliderUnlessItIsHeld) {
  VisualBench bench;
  bench.Work.Display.SelectedPwm = 2;  // the first output that a fresh cycle reads
  bench.Model.ShowReadings();
  EXPECT_EQ(bench.Model.State().PwmText + bench.Model.State().DutyCycleText, "––") << "never read";
  WriteByte(bench.Bus, 0x31, 0x80);
  bench.Model.ShowReadings();
  EXPECT_EQ(bench.Model.State().PwmText + bench.Model.State().DutyCycleText, "50%50%");
  bench.Model.SliderPressed();
  bench.Model.SliderMoving(10);
  bench.Poke(0x31, 0x80);
  bench.Model.Tick();
  EXPECT_EQ(bench.Model.State().SliderValue, 10);
  EXPECT_EQ(bench.Model.State().PwmText, "50%");
  bench.Model.SliderReleased();
  bench.Model.Tick();
  EXPECT_EQ(bench.Model.State().SliderValue, 128) << "127.5, the half to even";
}

TEST(VisualModel, ZonesShowWhatWasSeenOfThem) {
  VisualBench bench;
  using Texts = std::array<std::string, 3>;
  EXPECT_EQ(bench.Model.State().TminTexts, (Texts{"–", "–", "–"}));
  std::uint8_t byte = 0xFE;
  for (const int reg : {0x67, 0x68, 0x69, 0x33, 0x34, 0x35}) bench.Poke(reg, byte++);
  for (int tick = 0; tick < 3; ++tick) bench.Model.Tick();
  EXPECT_EQ(bench.Model.State().TminTexts, (Texts{"-1", "-2", "0"}));
  EXPECT_EQ(bench.Model.State().OpPointTexts, (Texts{"2", "1", "3"}));
  bench.Work.Zones.ZoneOpEnable[1] = false;
  bench.Model.ShowReadings();
  EXPECT_EQ(bench.Model.State().TminTexts, (Texts{"-1", "Disabled", "0"}));
  EXPECT_EQ(bench.Model.State().OpPointTexts, (Texts{"2", "Disabled", "3"}));
}

TEST(VisualModel, TheReportCountsTheAlarmsOfShownChannels) {
  VisualBench bench;
  EXPECT_EQ(bench.Model.ReportAlarms().Count, std::nullopt);
  // THERM on the Tach4 pin: no fan 4.
  for (const auto& [reg, byte] : {std::pair{0x78, 0x02}, {0x41, 0x20}, {0x42, 0x28}}) bench.Poke(reg, byte);
  bench.Model.EnterVisualDisplay();
  bench.Model.Tick();
  const AlarmReport report = bench.Model.ReportAlarms();
  EXPECT_EQ(report.Count, 2);
  EXPECT_EQ(report.Details, "Local: out of limits\nFan 2: out of limits");
  EXPECT_TRUE(report.Old) << "0x40 was read and says so";
}

void DragSliderAndMarker(VisualModel& model) {
  model.SliderMoving(7);
  model.SliderReleasedAfterMove(7);
  model.MarkerMoving(Marker::Low, 1000);
  model.MarkerReleased(Marker::Low, 1000);
}

TEST(VisualModel, AnyFailedTransferOfAnyHandlerLeavesTheNextTickWorking) {
  const std::function<void(VisualModel&)> handlers[] = {
      &VisualModel::EnterVisualDisplay,
      &VisualModel::Tick,
      &VisualModel::EasySetup,
      [](VisualModel& model) { model.SelectChannel(6); },
      DragSliderAndMarker,
  };
  for (const Medium medium : {Medium::Board, Medium::Smbus}) {
    for (const auto& handler : handlers) {
      int fired = 1;
      for (int nth = 1; fired == 1; ++nth) {
        SCOPED_TRACE(fmt::format("handler {} transfer {}", &handler - handlers, nth));
        VisualBench bench(medium);
        bench.Work.BoardFlags.VidProbeSteady = true;
        bench.Poke(0x78, 0x03);
        bench.Model.SelectChannel(3);
        bench.Advance(1);  // the THERM period is over
        bench.FailTransfer(nth);
        bool failed = false;
        try {
          handler(bench.Model);
        } catch (const CommsError&) {
          failed = true;
        }
        fired = bench.Sim.FaultsFired();
        ASSERT_EQ(failed, fired == 1) << "a failure is reported, and only that";
        EXPECT_FALSE(bench.Model.State().Gauge.IsMoved(Marker::Low));
        bench.Sim.ClearFaults();
        bench.Traffic();
        bench.Model.Tick();
        EXPECT_EQ(bench.Traffic().substr(0, 4), "R77 ");
      }
    }
  }
}

}  // namespace
}  // namespace krx
