// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/visualmodel.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "console/visualbench.h"
#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

using Medium = TestBench::Medium;

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

  bench.Work.Display.EasySetupUsed = true;
  bench.Model.EnterVisualDisplay();
  EXPECT_EQ(bench.Traffic(), "R78 R78 R30");
  EXPECT_EQ(bench.Timers.Take(), "T- V+");

  bench.Work.Log.TimerStateAtLogStart = true;
  bench.Model.EnterVisualDisplay();
  EXPECT_EQ(bench.Timers.Take(), "T-");
  bench.Model.EnterReadWrite();
  EXPECT_EQ(bench.Timers.Take(), "V- T-");
}

TEST(VisualModel, PinFunctionsDecideWhatIsSeen) {
  struct Row {
    int Config3, Config4;
    bool Fan4, FiveVolts, Fan4Trace, Therm, Volts25;
    const char* Strip2Caption;
  };
  for (const Row& row :
       {Row{0x00, 0x00, true, true, true, false, true, ""}, Row{0x02, 0x02, true, false, true, true, true, "THERM %"},
        Row{0x02, 0x00, false, true, false, true, true, "THERM %"},
        Row{0x00, 0x01, true, true, true, false, false, ""}}) {
    VisualBench bench;
    bench.Work.BoardFlags.VidProbeSteady = true;
    bench.Poke(0x78, static_cast<std::uint8_t>(row.Config3));
    bench.Poke(0x7D, static_cast<std::uint8_t>(row.Config4));
    bench.Model.EnterVisualDisplay();
    const VisualState& state = bench.Model.State();
    EXPECT_EQ(state.ChannelShown[6], row.Fan4);
    EXPECT_EQ(state.ChannelShown[7], row.FiveVolts);
    EXPECT_EQ(state.TraceShown[6], row.Fan4Trace);
    EXPECT_EQ(state.TraceShown[8], row.Therm);
    EXPECT_TRUE(state.TraceShown[0]);
    EXPECT_EQ(state.ChannelShown[11], row.Volts25);
    EXPECT_EQ(state.TraceShown[13], row.Volts25);
    EXPECT_EQ(state.Strip2Caption, row.Strip2Caption);
    EXPECT_EQ(state.Strip3Caption, "2.5V");
  }
}

TEST(VisualModel, SelectingAChannelReadsItsLimitsAndAFansDuty) {
  struct Row {
    std::size_t Channel;
    const char* Traffic;
    Strip Shown;
    int Pwm;
  };
  const std::vector<Row> rows{{0, "R50 R51", Strip::Strip2, 1},     {3, "R54 R55 R30", Strip::Strip2, 1},
                              {4, "R56 R57 R31", Strip::Strip2, 2}, {5, "R58 R59 R32", Strip::Strip2, 3},
                              {6, "R5A R5B R32", Strip::Strip2, 3}, {8, "R4C R4D", Strip::Strip3, 3},
                              {11, "R44 R45", Strip::Strip3, 3}};
  VisualBench bench(Medium::Smbus);
  bench.Work.Display.PwmManual = {false, true, false};
  WriteByte(bench.Bus, 0x5D, 0xE2);
  WriteByte(bench.Bus, 0x31, 0x80);
  bench.Traffic();
  const VisualState& state = bench.Model.State();
  for (const Row& row : rows) {
    bench.Model.SelectChannel(row.Channel);
    EXPECT_EQ(bench.Traffic(), row.Traffic);
    EXPECT_EQ(bench.Timers.Take(), "V+");
    EXPECT_EQ(state.ShownStrip, row.Shown);
    EXPECT_EQ(state.PanelCaption, "Fan" + std::to_string(row.Pwm) + " PWM");
    EXPECT_EQ(state.SliderCaption, "Fan" + std::to_string(row.Pwm));
    EXPECT_EQ(state.SliderShown, row.Pwm == 2);
    EXPECT_EQ(state.Marks[row.Channel], CaptionMark::Selected);
    if (row.Channel == 4) {
      EXPECT_EQ(state.SliderValue, 128);
      EXPECT_EQ(state.DutyCycleText, "50%");
    }
  }
  EXPECT_EQ(state.Marks[3], CaptionMark::Plain);
  bench.Work.Power.PowerMode = true;
  bench.Model.SelectChannel(11);
  EXPECT_EQ(state.ShownStrip, Strip::Strip2);
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

TEST(VisualModel, EasySetupWritesInOrderAndSelectsTheLocalTemperature) {
  VisualBench bench;
  bench.Poke(0x40, 0x10);
  bench.Model.EasySetup();
  EXPECT_EQ(bench.Traffic(),
            "R40 W40:11 W50:0A W4E:0A W52:0A W51:50 W4F:50 W53:50 W68:28 W67:28 W69:28 W34:3C W33:3C W35:3C "
            "R78 R78 R50 R51");
  EXPECT_EQ(bench.Timers.Take(), "V+ V+");
  EXPECT_TRUE(bench.Work.Display.EasySetupUsed);
  EXPECT_EQ(bench.Model.State().Gauge.High(), 80);
}

TEST(VisualModel, TheSliderWritesByMedium) {
  for (const Medium medium : {Medium::Board, Medium::Smbus}) {
    const bool board = medium == Medium::Board;
    VisualBench bench(medium);
    bench.Work.Display.PwmManual.fill(true);
    bench.Model.SelectChannel(6);
    bench.Traffic();
    bench.Timers.Take();
    bench.Model.SliderPressed();
    bench.Model.SliderMoving(255);
    EXPECT_EQ(bench.Traffic(), board ? "W32:FF" : "");
    EXPECT_EQ(bench.Work.Measured.DutyTexts[2], board ? "100%" : "");
    bench.Model.SliderMoving(0);
    bench.Traffic();
    bench.Model.SliderReleased();
    bench.Model.SliderReleasedAfterMove(0);
    EXPECT_EQ(bench.Traffic(), board ? "" : "W32:00");
    EXPECT_EQ(bench.Work.Measured.DutyTexts[2], "0%");
    EXPECT_EQ(bench.Model.State().DutyCycleText, "0%");
    EXPECT_EQ(bench.Timers.Take(), "V- V+");
    bench.Model.SliderPressed();
    bench.Model.SliderReleased();
    EXPECT_EQ(bench.Traffic(), "") << "a press alone";
  }
}

TEST(VisualModel, ATickMovesTheSliderUnlessItIsHeld) {
  VisualBench bench;
  bench.Work.Display.SelectedPwm = 2;  // the first output that a fresh cycle reads
  bench.Poke(0x31, 0x80);
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
  for (const int reg : {0x67, 0x68, 0x69, 0x33, 0x34, 0x35}) bench.Poke(static_cast<std::uint8_t>(reg), byte++);
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
  bench.Poke(0x78, 0x02);  // THERM on the Tach4 pin: no fan 4
  bench.Model.EnterVisualDisplay();
  bench.Poke(0x41, 0x20);
  bench.Poke(0x42, 0x28);
  bench.Model.Tick();
  const AlarmReport report = bench.Model.ReportAlarms();
  EXPECT_EQ(report.Count, 2);
  EXPECT_EQ(report.Details, "Local: out of limits\nFan 2: out of limits");
  EXPECT_TRUE(report.Old) << "0x40 was read and says so";
  bench.Poke(0x41, 0);
  bench.Poke(0x42, 0);
  bench.Model.Tick();
  EXPECT_EQ(bench.Model.ReportAlarms().Count, 0);
}

TEST(VisualModel, AnyFailedTransferOfAnyHandlerLeavesTheNextTickWorking) {
  struct Handler {
    const char* Name;
    std::function<void(VisualBench&)> Run;
  };
  const std::vector<Handler> handlers{
      {"enter", [](VisualBench& b) { b.Model.EnterVisualDisplay(); }},
      {"tick", [](VisualBench& b) { b.Model.Tick(); }},
      {"temperature", [](VisualBench& b) { b.Model.SelectChannel(1); }},
      {"fan", [](VisualBench& b) { b.Model.SelectChannel(6); }},
      {"easy setup", [](VisualBench& b) { b.Model.EasySetup(); }},
      {"slider",
       [](VisualBench& b) {
         b.Model.SliderMoving(7);
         b.Model.SliderReleasedAfterMove(7);
       }},
      {"marker",
       [](VisualBench& b) {
         b.Model.MarkerMoving(Marker::Low, 1000);
         b.Model.MarkerReleased(Marker::Low, 1000);
       }},
  };
  for (const Medium medium : {Medium::Board, Medium::Smbus}) {
    for (const Handler& handler : handlers) {
      for (int nth = 1;; ++nth) {
        SCOPED_TRACE(handler.Name + std::string(" transfer ") + std::to_string(nth));
        VisualBench bench(medium);
        bench.Work.BoardFlags.VidProbeSteady = true;
        bench.Poke(0x78, 0x03);
        bench.Model.SelectChannel(3);
        bench.Work.Measured.FanSpeeds.fill(-1);
        bench.Advance(1);  // the THERM period is over
        bench.Bus.RegisterData = 0x55;
        bench.FailTransfer(nth);
        bool failed = false;
        try {
          handler.Run(bench);
        } catch (const CommsError& error) {
          failed = true;
          EXPECT_EQ(error.Number(), 57);
        }
        ASSERT_EQ(failed, bench.Sim.FaultsFired() == 1) << "a failure is reported, and only that";
        if (!failed) {
          EXPECT_GT(nth, 1);
          break;
        }
        if (nth == 1) {
          EXPECT_EQ(bench.Bus.RegisterData, 0x55);
        }
        EXPECT_FALSE(bench.Bus.TransferInProgress());
        EXPECT_EQ(bench.Sim.LiveHandles(), 0);
        EXPECT_FALSE(bench.Model.State().Gauge.IsMoved(Marker::Low));
        for (const float speed : bench.Work.Measured.FanSpeeds) EXPECT_TRUE(speed == -1 || speed >= 0);
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
