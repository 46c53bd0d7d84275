// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/busjournal.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "journal/journalmodule.h"
#include "journal/recordingmodule.h"
#include "journal/undo.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "support/boardbench.h"

namespace krx {
namespace {

/// The simulated computer seen through a journal.
struct JournalBench : BoardBench {
  explicit JournalBench(Medium medium = Medium::Board, bool readOnly = false) : BoardBench(medium) {
    Root.Change([this, readOnly] { return MakeJournalModule(Sim.MakeCommsModule(), Journal, readOnly); });
  }
  /// "15A/30 80>10 Duty": operation, address and register, old and new value, origin; "-" skipped, "!" failed.
  static std::string Text(const JournalEntry& entry) {
    return fmt::format("{}{:02X}/{:02X} {}>{:02X}{}{} {}", static_cast<int>(entry.Operation), entry.Address,
                       entry.Register, entry.OldValue ? fmt::format("{:02X}", *entry.OldValue) : "?", entry.Value,
                       entry.Skipped ? "-" : "", entry.Failure.empty() ? "" : "!", entry.Origin);
  }
  /// One run of a user's handler that writes these: register, byte.
  void Act(const std::string& name, std::initializer_list<std::pair<int, int>> writes) {
    const BusJournal::ActionScope scope(Journal, name);
    for (const auto& [reg, byte] : writes) WriteByte(Bus, static_cast<std::uint8_t>(reg), byte);
  }
  /// Presses undo: the traffic, followed by the action's name and the registers with a problem.
  std::string Undo(UndoResult (*undo)(Link&, BusJournal&) = UndoLastAction) {
    Traffic();
    const UndoResult result = undo(Bus, Journal);
    std::string text = Traffic() + " " + result.Origin;
    for (const UndoProblem& problem : result.Problems)
      text += fmt::format(" {:02X} {}", problem.Register, problem.Reason);
    return text;
  }

  BusJournal Journal{Time};
};

/// One of each kind of transfer that a console makes.
void Exercise(Link& link, Board& board) {
  WriteByte(link, 0x30, 0x10);
  UpdateBits(link, 0x5C, 0xE0, 0xE0);
  board.ReadAll();
  board.SetDiode(0, false);
  board.SetHeater(0, true);
}

TEST(BusJournal, ChangesNothingOnTheBusRecordsEveryTransferAndReadOnlySuppressesEveryWrite) {
  for (const auto medium : {TestBench::Medium::Board, TestBench::Medium::Smbus}) {
    const bool onBoard = medium == TestBench::Medium::Board;
    BoardBench plain(medium);
    JournalBench journaled(medium), reader(medium, true);
    for (BoardBench* const bench : std::initializer_list<BoardBench*>{&plain, &journaled, &reader}) {
      Exercise(bench->Bus, bench->Eval);
      EXPECT_EQ(bench->Sim.LiveHandles(), 0);
    }
    EXPECT_EQ(journaled.All(), plain.All());
    EXPECT_EQ(journaled.Journal.Count(), onBoard ? 10U : 3U) << "all but Complete";
    EXPECT_EQ(reader.BusTraffic(), onBoard ? "R5C V96 V94 V90 V92 ST" : "R5C");
    EXPECT_EQ(reader.Journal.SkippedCount(), onBoard ? 4U : 2U);
    EXPECT_TRUE(reader.Text(reader.Journal.Entries().front()).ends_with("/30 ?>10- "));
    reader.Act("A", {{0x64, 1}});
    EXPECT_EQ(reader.Undo(), " ") << "nothing was written";
    EXPECT_EQ(reader.Journal.UserWrites().size(), 1U);
  }
}

TEST(BusJournal, KnowsOldValuesOriginsAndFailures) {
  JournalBench bench;
  Link& link = bench.Bus;
  {
    const BusJournal::OriginScope outer(bench.Journal, "Outer");
    WriteByte(link, 0x64, 0x10);
    {
      const BusJournal::OriginScope inner(bench.Journal, "Inner");
      UpdateBits(link, 0x5C, 0x12, 0xF0);  // the other bits are preserved
    }
    WriteByte(link, 0x64, 0x20);
  }
  bench.FailTransfer(1);
  EXPECT_THROW(WriteByte(link, 0x64, 0x30), CommsError);
  WriteByte(link, 0x64, 0x40);  // the failed write may have reached the chip
  bench.Eval.SetDiode(0, true);
  bench.Eval.SetDiode(1, true);
  std::string entries;
  for (const JournalEntry& entry : bench.Journal.Entries()) entries += bench.Text(entry) + ";";
  EXPECT_EQ(entries,
            "15A/64 ?>10 Outer;05A/5C ?>62 Inner;15A/5C 62>70 Inner;15A/64 10>20 Outer;15A/64 20>30! ;15A/64 ?>40 ;"
            "294/00 ?>07 ;294/00 07>3F ;");
  for (const std::int64_t frequency : {1'000'000, 0}) {  // 0: with the fallback clock
    ManualClock clock;
    clock.CountsPerSecond = frequency;
    BusJournal journal(clock);
    journal.Add({});
    EXPECT_NEAR(journal.Entries().front().Seconds, 1e-6, 1e-9);
  }
}

TEST(BusJournal, KeepsTheUsersWritesSeparateFromTenThousandTransfers) {
  JournalBench bench;
  ReadByte(bench.Bus, 0x64);
  bench.Act("A", {{0x64, 0x10}});
  {
    const BusJournal::OriginScope cycle(bench.Journal, "Reading cycle");
    for (std::size_t read = 0; read < BusJournal::capacity; ++read) ReadByte(bench.Bus, 0x3E);
    bench.Eval.SetDiode(0, true);
  }
  EXPECT_EQ(bench.Journal.Entries().size(), BusJournal::capacity);
  EXPECT_EQ(bench.Journal.Entries().front().Number, 4U);
  ASSERT_EQ(bench.Journal.UserWrites().size(), 1U) << "not the cycle's byte for a switch";
  EXPECT_EQ(bench.Journal.UserWrites().front().Value, 0x10);
  EXPECT_EQ(bench.Undo(), "W64:80 A");
  bench.Journal.SetMark();
  for (std::size_t write = 0; write < BusJournal::capacity + 2; ++write) bench.Act("B", {{0x30, 0}});
  EXPECT_EQ(bench.Journal.UserWrites().size(), BusJournal::capacity);
  EXPECT_EQ(UndoToMark(bench.Bus, bench.Journal).Forgotten, 2U);
}

class UndoActions : public testing::Test, protected JournalBench {};

constexpr const char* neverRead = "previous value unknown; the written value is kept";

TEST_F(UndoActions, UndoesTheNewestActionAsAWholeAndGoesFurtherBackEachTime) {
  for (const std::uint8_t reg : std::initializer_list<std::uint8_t>{0x5C, 0x64, 0x65}) ReadByte(Bus, reg);
  WriteByte(Bus, 0x65, 0x81);  // by the console itself
  Act("A", {{0x64, 0x11}});
  Act("B", {{0x64, 0x12}, {0x5C, 0xE2}, {0x65, 0x14}, {0x64, 0x13}, {0x5C, 0x62}});  // the last restores
  Act("C", {{0x66, 0x13}});
  Act("D", {{0x65, 0x14}});
  EXPECT_EQ(Undo(), std::string(" C 66 ") + neverRead) << "D changed nothing";
  FailTransfer(1);
  EXPECT_EQ(Undo(), "W65:81! W64:11 B 65 Error: 57, Device I/O error");
  EXPECT_EQ(Undo(), "W65:81 B");
  EXPECT_EQ(Undo(), "W64:80 A");
  EXPECT_EQ(Text(Journal.Entries().back()), "15A/64 11>80 Undo");
  EXPECT_EQ(Undo(), " ") << "neither an undo nor what the console did itself";
  FailTransfer(1);
  EXPECT_THROW(Act("E", {{0x64, 0x30}}), CommsError);
  EXPECT_EQ(Undo(), "W64:80 E") << "the failed write may have reached the chip";
}

TEST_F(UndoActions, ToTheMarkRestoresEachRegisterWithOneWrite) {
  for (const std::uint8_t reg : std::initializer_list<std::uint8_t>{0x5C, 0x5D, 0x5E, 0x64}) ReadByte(Bus, reg);
  Act("A", {{0x5C, 0x01}});
  EXPECT_EQ(Undo(UndoToMark), " ") << "no mark is set";
  Act("Glitch", {{0x64, 0x20}});
  Journal.SetMark();
  {
    const BusJournal::ActionScope step(Journal, "Glitch", BusJournal::ActionScope::Run::Continued);
    WriteByte(Bus, 0x64, 0x21);
  }
  Act("B", {{0x5C, 0x02}, {0x65, 0x23}, {0x5E, 0x09}, {0x5E, 0x62}});
  Act("C", {{0x5D, 0x03}});
  Act("D", {{0x64, 0x22}});
  FailTransfer(1);
  EXPECT_EQ(Undo(UndoToMark), std::string("W5D:62! W5C:01 W64:20  5D Error: 57, Device I/O error 65 ") + neverRead);
  EXPECT_EQ(Undo(UndoToMark), "W5D:62 ");
  EXPECT_EQ(Undo(), "W64:80 Glitch") << "from before the mark";
}

TEST_F(UndoActions, AGestureIsOneActionAndAHandlerKeepsItsOwn) {
  ReadByte(Bus, 0x30);
  const auto drag = [&](int value, const char* name = "") {
    Act(name, {{0x30, value}});
    const BusJournal::OriginScope tick(Journal, "Reading cycle");
    ReadByte(Bus, 0x31);
  };
  const std::uint64_t first = Journal.BeginGesture("Slider");
  drag(1);
  drag(2);
  Journal.EndGesture(first);
  drag(3);
  Journal.BeginGesture("Slider");
  Journal.EndGesture(first);  // late
  drag(4);
  drag(5, "Box that the press left");
  {
    const BusJournal::ActionScope detection(Journal, "Detection");
    WriteByte(Bus, 0x30, 6);
    Journal.BeginGesture("Cancel");
    drag(7);
  }
  for (const char* expected :
       {"W30:05 Detection", "W30:04 Box that the press left", "W30:03 Slider", "W30:02 Slider", "W30:FF Slider", " "}) {
    EXPECT_EQ(Undo(), expected);
  }
}

TEST(RecordingLink, ReadsEachPlaceOnceAndSendsNothing) {
  for (const auto& [medium, traffic, written] :
       {std::tuple{TestBench::Medium::Board, "R5C! R5C V96 V94 V90 V92",
                   "W30 FF>10;W5C 62>E2;S94 3F>38;W30 10>10;W5C E2>E2;S94 38>38;"},
        {TestBench::Medium::Smbus, "R5C! R5C", "W30 FF>10;W5C 62>E2;W30 10>10;W5C E2>E2;"}}) {
    TestBench bench(medium);
    ReadByte(bench.Bus, 0x30);
    bench.Traffic();
    RecordingLink recording(bench.Bus);
    BoardState flags;
    OwedWrites owed(recording.Recording());
    Board board(recording.Recording(), flags, owed);
    bench.FailTransfer(1);
    EXPECT_THROW(ReadByte(recording.Recording(), 0x5C), CommsError);
    Exercise(recording.Recording(), board);
    Exercise(recording.Recording(), board);
    EXPECT_EQ(bench.BusTraffic(), traffic);
    EXPECT_EQ(bench.Sim.LiveHandles(), 0);
    std::string writes;
    for (const RecordedWrite& write : recording.Writes()) {
      writes += fmt::format("{}{:02X} {}>{:02X};", write.OfDevice ? "S" : "W", write.Address,
                            write.Old ? fmt::format("{:02X}", *write.Old) : "?", write.New);
    }
    EXPECT_EQ(writes, written);
  }
}

}  // namespace
}  // namespace krx
