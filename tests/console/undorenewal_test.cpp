// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/undorenewal.h"

#include <gtest/gtest.h>

#include "journal/journalmodule.h"
#include "link/registeraccess.h"
#include "support/visualbench.h"

namespace krx {
namespace {

/// The console without windows, with a journal.
struct UndoBench : VisualBench {
  explicit UndoBench(Medium medium = Medium::Board) : VisualBench(medium) {
    Root.Change([this] { return MakeJournalModule(Sim.MakeCommsModule(), Journal, false); });
    StartUp(Work);
    for (int reg = 0x20; reg < 0x80; ++reg) ReadByte(Bus, static_cast<std::uint8_t>(reg));
    BusTraffic();
  }
  void Act(const std::function<void()>& handler) {
    const BusJournal::ActionScope scope(Journal, "A");
    handler();
  }
  /// What "Undo last action" does to bus and state.
  std::string Undo() {
    BusTraffic();
    RenewAfterUndo(Work, UndoLastAction(Bus, Journal).Written);
    Model.Relabel();
    return BusTraffic();
  }
  BusJournal Journal{Time};
};

TEST(UndoRenewal, OfAnApplyPulsesBehavioursAndTachRoutingFollowTheChip) {
  for (const Medium medium : {Medium::Board, Medium::Smbus}) {
    UndoBench bench(medium);
    const std::array<float, 4> pulses = bench.Work.Fans.ProgrammedPulses;
    AllFanFields fields;
    for (FanFields& fan : fields) fan.ProgrammedPulses = "4", fan.TwoWire = true, fan.Behaviour = "Manual Control";
    PendingChanges& pending = bench.Work.Fans.PendingChange;
    pending.Set(FanSetting::ProgrammedPulses, 3);
    pending.Set(FanSetting::TachSource, 1);
    pending.Set(FanSetting::Behaviour, 0);
    bench.Act([&] { bench.Work.FanSettings.ApplyFanSettings(fields); });
    EXPECT_EQ(bench.Undo(), medium == Medium::Board ? "W73:00 W7B:55 W5C:62 V90 S90:52" : "W73:00 W7B:55 W5C:62");
    EXPECT_EQ(bench.Work.Fans.ProgrammedPulses, pulses);
    EXPECT_EQ(bench.Work.Display.BehaviourCode[0], 3);
    // Pulses written elsewhere are taken with F5 only, and undoing that write does not make them wrong.
    bench.Act([&] { WriteByte(bench.Bus, 0x7B, 0); });
    EXPECT_EQ(bench.Work.Fans.ProgrammedPulses, pulses);
    EXPECT_EQ(bench.Undo(), "W7B:55");
    EXPECT_EQ(bench.Work.Fans.ProgrammedPulses, pulses);
  }
}

TEST(UndoRenewal, OfEasySetupAndOfADragNothingIsWrittenAgain) {
  for (const Medium medium : {Medium::Board, Medium::Smbus}) {
    UndoBench bench(medium);
    bench.Poke(0x40, 0x10);
    bench.Act([&] { bench.Model.EasySetup(); });
    EXPECT_EQ(bench.Traffic().substr(0, 10), "R40 W40:11");
    EXPECT_EQ(bench.Undo(),
              "W35:64 W33:64 W34:64 W69:5A W67:5A W68:5A W53:7F W4F:7F W51:7F W52:81 W4E:81 W50:81 W40:10");
    EXPECT_EQ(bench.Model.State().Gauge.Low(), -127);
    const std::uint64_t drag = bench.Journal.BeginGesture("limits");
    for (const int value : {20, 30, 40}) {
      bench.Act([&] { bench.Model.MarkerMoving(Marker::Low, value); });
      const BusJournal::OriginScope tick(bench.Journal, "Reading cycle");
      bench.Model.Tick();
    }
    bench.Act([&] { bench.Model.MarkerReleased(Marker::Low, 40); });
    bench.Journal.EndGesture(drag);
    EXPECT_EQ(bench.Peek(0x50), 40);
    EXPECT_EQ(bench.Undo(), "W50:81") << "the high limit had kept its byte";
    bench.Act([&] { bench.Model.MarkerMoving(Marker::High, 60); });
    bench.Act([&] { bench.Model.MarkerReleased(Marker::High, 60); });
    EXPECT_EQ(bench.Traffic(), "W50:81 W51:3C") << "not the undone 40";
  }
}

TEST(UndoRenewal, EachByteUpdatesItsValueEvenWhileTheCycleIsStopped) {
  UndoBench bench;
  const Measurements& measured = bench.Work.Measured;
  for (const std::uint8_t reg : std::initializer_list<std::uint8_t>{0x30, 0x67, 0x34, 0x6E, 0x6D}) {
    WriteByte(bench.Bus, reg, 0xFC);
    bench.Act([&] { WriteByte(bench.Bus, reg, 1); });
    bench.Undo();
  }
  EXPECT_EQ(measured.DutyTexts, (std::array<std::string, 3>{"99%", "", ""}));
  EXPECT_EQ(bench.Work.Zones.ZoneTmin, (std::array<std::int16_t, 3>{0, -4, 0}));
  EXPECT_EQ(bench.Work.Zones.ZoneOpPoint, (std::array<std::int16_t, 3>{-4, 0, 0}));
  EXPECT_EQ(measured.ZoneHysteresis, (std::array{12, 15, 15}));
}

}  // namespace
}  // namespace krx
