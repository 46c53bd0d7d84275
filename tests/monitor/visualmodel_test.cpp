// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/visualmodel.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <functional>

#include "link/commserror.h"
#include "link/registeraccess.h"
#include "support/visualbench.h"

namespace krx {
namespace {

TEST(Channels, CaptionsFollowTheLabelsAndReadoutsCarryTheirUnits) {
  FanCommon fans;
  fans.FanLabel = {"CPU Fan", "Fan2", "Int. Circ.", "My fan"};
  Measurements measured;
  measured.Temperatures[1] = -10.25F;
  measured.FanSpeeds[3] = 2399.6F;
  measured.Voltages = {5.04F, 0, 1.5F, 3.312F, 1.2F};
  PowerSettings power;
  const auto texts = [&](std::initializer_list<std::size_t> wanted) {
    std::string all;
    for (const std::size_t channel : wanted)
      all += ChannelCaption(channel, fans, power.PowerMode) + " " + ReadoutText(channel, measured, power) + "|";
    return all;
  };
  EXPECT_EQ(texts({1, 3, 4, 5, 6}), "Remote 1 -10.25C|CPU Fan 0 RPM|Fan 2 0 RPM|Int. Circ. 0 RPM|Fan 4 2400 RPM|");
  EXPECT_EQ(texts({10, 11}), "Vcc 3.312 V|2.5V 1.200 V|");
  power.PowerMode = true;
  EXPECT_EQ(texts({10, 11}), "Vcc 3.312 V|Current 0.00 A|") << "not -400 A";
  power.PowerEquation = false;
  EXPECT_EQ(texts({11}), "Current 16.00 A|");
}

TEST(VisualModel, EnteringStartsTheTimerOnlyWhileTheChipMonitors) {
  VisualBench bench;
  const auto enter = [&] {
    bench.BusTraffic(), bench.Timers.Take();
    bench.Model.EnterVisualDisplay();
    return bench.Traffic() + " " + bench.Timers.Take();
  };
  bench.Work.Display.SelectedChannel = 5;
  bench.Poke(0x40, 0x00);
  EXPECT_EQ(enter(), "R78 R78 R31 R40 T-");
  EXPECT_EQ(bench.Model.State().Marks[0], CaptionMark::FirstShown);
  EXPECT_EQ(bench.Work.Display.SelectedChannel, 0);
  bench.Poke(0x40, 0x01);
  bench.Work.Display.SelectedChannel = 5;
  EXPECT_EQ(enter(), "R78 R78 R32 R40 T- V+");
  EXPECT_EQ(bench.Work.Display.SelectedChannel, 5) << "only the first visit selects channel 0";
  bench.Model.EasySetup();
  EXPECT_EQ(bench.Timers.Take(), "V+ V+");
  EXPECT_EQ(enter(), "R78 R78 R30 T- V+") << "after Easy Setup the chip is read in any case";
  bench.Work.Log.TimerStateAtLogStart = true;
  EXPECT_EQ(enter(), "R78 R78 R31 T-");
  bench.Model.EnterReadWrite();
  EXPECT_EQ(bench.Timers.Take(), "V- T-");
}

TEST(VisualModel, PinFunctionsDetermineWhatIsShown) {
  /// Fan 4 and its trace, 5V, THERM's trace, 2.5V and its trace, the charts' captions.
  const auto seen = [](int config3, int config4) {
    VisualBench bench;
    bench.Work.BoardFlags.VidProbeSteady = true;
    bench.Poke({{0x78, config3}, {0x7D, config4}});
    bench.Model.EnterVisualDisplay();
    const VisualState& state = bench.Model.State();
    const auto& channel = state.ChannelShown;
    const auto& trace = state.TraceShown;
    return fmt::format("{:d}{:d}{:d}{:d}{:d}{:d} {}|{}", channel[6], trace[6], channel[7], trace[8], channel[11],
                       trace[13], state.Strip2Caption, state.Strip3Caption);
  };
  EXPECT_EQ(seen(0x00, 0x00), "111011 |2.5V");
  EXPECT_EQ(seen(0x02, 0x02), "110111 THERM %|2.5V");
  EXPECT_EQ(seen(0x02, 0x00), "001111 THERM %|2.5V");
  EXPECT_EQ(seen(0x00, 0x01), "111000 |2.5V");
}

TEST(VisualModel, AFanShowsItsOutputsPanelAndEachChannelItsChart) {
  VisualBench bench;
  bench.Work.Display.PwmManual = {false, true, false};
  WriteByte(bench.Bus, 0x5D, 0xE2);
  WriteByte(bench.Bus, 0x31, 0x80);
  const VisualState& state = bench.Model.State();
  const auto select = [&](std::size_t channel) {
    bench.Model.SelectChannel(channel);
    return fmt::format("Strip{}|{}|{}{}|{}", state.ShownStrip == Strip::Strip2 ? 2 : 3, state.PanelCaption,
                       state.SliderCaption, state.SliderShown ? " slider" : "", state.SliderValue);
  };
  EXPECT_EQ(select(0), "Strip2|Fan1 PWM|Fan1|255");
  EXPECT_EQ(select(3), "Strip2|Fan1 PWM|Fan1|255");
  EXPECT_EQ(select(4), "Strip2|Fan2 PWM|Fan2 slider|128");
  EXPECT_EQ(select(6), "Strip2|Fan3 PWM|Fan3|128");
  EXPECT_EQ(select(11), "Strip3|Fan3 PWM|Fan3|128");
  bench.Work.Power.PowerMode = true;
  EXPECT_EQ(select(11), "Strip2|Fan3 PWM|Fan3|128");
  EXPECT_EQ(state.Gauge.Scale().Maximum, 180);
}

TEST(VisualModel, AChannelWhoseLimitsCannotBeReadShowsItsOwnValue) {
  VisualBench bench;
  bench.Model.SelectChannel(0);
  bench.Work.Measured.Voltages[0] = 5;
  bench.FailTransfer(1);
  EXPECT_THROW(bench.Model.SelectChannel(7), CommsError);
  EXPECT_EQ(bench.Model.State().Readout, "5.000 V");
  bench.Work.Measured.Voltages.fill(4.5F);  // by an unfinished tick
  bench.Model.ShowSeen();
  EXPECT_EQ(bench.Model.State().Readout, "4.500 V");
  EXPECT_EQ(bench.Model.State().ShownStrip, Strip::Strip3);
  EXPECT_FALSE(bench.Model.State().Gauge.IsDraggable(Marker::High)) << "the other channel's limit";
}

TEST(VisualModel, ATickMovesTheSliderUnlessItIsHeld) {
  VisualBench bench;
  bench.Work.Display.SelectedPwm = 2;  // the first output read by a new cycle
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

TEST(VisualModel, ZonesShowTheBytesLastSeen) {
  VisualBench bench;
  const VisualState& state = bench.Model.State();
  const auto shown = [&] {
    return fmt::format("{} {}", fmt::join(state.TminTexts, " "), fmt::join(state.OpPointTexts, " "));
  };
  EXPECT_EQ(shown(), "– – – – – –");
  bench.Poke({{0x67, 0xFE}, {0x68, 0xFF}, {0x69, 0}, {0x33, 1}, {0x34, 2}, {0x35, 3}});
  for (int tick = 0; tick < 3; ++tick) bench.Model.Tick();
  EXPECT_EQ(shown(), "-1 -2 0 2 1 3");
  bench.Work.Zones.ZoneOpEnable[1] = false;
  bench.Model.ShowReadings();
  EXPECT_EQ(shown(), "-1 Disabled 0 2 Disabled 3");
}

TEST(VisualModel, TheReportCountsTheAlarmsOfShownChannels) {
  VisualBench bench;
  EXPECT_EQ(bench.Model.ReportAlarms().Count, std::nullopt);
  bench.Poke({{0x78, 0x02}, {0x41, 0x20}, {0x42, 0x28}});  // THERM on the Tach4 pin: no fan 4
  bench.Model.EnterVisualDisplay();
  bench.Model.Tick();
  const AlarmReport report = bench.Model.ReportAlarms();
  EXPECT_EQ(report.Count, 2);
  EXPECT_EQ(report.Details, "Local: out of limits\nFan 2: out of limits");
  EXPECT_TRUE(report.Old) << "according to 0x40";
}

TEST(VisualModel, AnyFailedTransferOfAnyHandlerLeavesTheNextTickWorking) {
  const std::function<void(VisualModel&)> handlers[] = {
      &VisualModel::EnterVisualDisplay,
      &VisualModel::Tick,
      &VisualModel::EasySetup,
      [](VisualModel& model) { model.SelectChannel(6); },
      [](VisualModel& model) { model.SliderMoving(7), model.SliderReleasedAfterMove(7); },
      [](VisualModel& model) { model.MarkerMoving(Marker::Low, 1000), model.MarkerReleased(Marker::Low, 1000); },
  };
  for (const Medium medium : {Medium::Board, Medium::Smbus}) {
    for (const auto& handler : handlers) {
      for (int nth = 1, fired = 1; fired == 1; ++nth) {
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
