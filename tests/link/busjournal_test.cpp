// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/busjournal.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "link/commserror.h"
#include "link/journalmodule.h"
#include "link/recordingmodule.h"
#include "link/registeraccess.h"
#include "link/undo.h"
#include "support/boardbench.h"

namespace krx {
namespace {

/// The simulated computer seen through a journal.
struct JournalBench : TestBench {
  explicit JournalBench(Medium medium = Medium::Board, bool readOnly = false) : TestBench(medium), ReadOnly(readOnly) {
    Journaled.CommsMedium = Bus.CommsMedium;
    Journaled.EvalBoardMedium = Bus.EvalBoardMedium;
    Journaled.ChipAddress = Bus.ChipAddress;
  }
  /// "15A/30 80>10 Duty": operation, address and register, old and new value, origin; "-" skipped, "!" failed.
  std::string Entry(std::size_t index) const {
    const JournalEntry& entry = Journal.Entries().at(index);
    return fmt::format("{}{:02X}/{:02X} {}>{:02X}{}{} {}", static_cast<int>(entry.Operation), entry.Address,
                       entry.Register, entry.OldValue ? fmt::format("{:02X}", *entry.OldValue) : "?", entry.Value,
                       entry.Skipped ? "-" : "", entry.Failure.empty() ? "" : "!", entry.Origin);
  }

  bool ReadOnly;
  BusJournal Journal{Time};
  CommsRoot JournalRoot{[this] { return MakeJournalModule(Sim.MakeCommsModule(), Journal, ReadOnly); }};
  Link Journaled{JournalRoot, Time, Pump};
  BoardState Flags;
  Board Eval{Journaled, Flags};
};

/// Some of everything that a console does on a bus.
void Exercise(Link& link, Board& board) {
  WriteByte(link, 0x30, 0x10);
  UpdateBits(link, 0x5C, 0xE0, 0xE0);
  board.ReadAll();
  board.SetDiode(0, false);
  board.SetHeater(0, true);
}

TEST(BusJournal, ChangesNothingOnTheBusAndEntersEveryTransfer) {
  for (const auto medium : {TestBench::Medium::Board, TestBench::Medium::Smbus}) {
    BoardBench plain(medium);
    JournalBench journaled(medium);
    Exercise(plain.Bus, plain.Eval);
    Exercise(journaled.Journaled, journaled.Eval);
    EXPECT_EQ(journaled.Sim.Trace().Text(TraceFilter::All), plain.Sim.Trace().Text(TraceFilter::All));
    EXPECT_EQ(journaled.Sim.LiveHandles(), 0);
    EXPECT_EQ(journaled.Journal.Count(), medium == TestBench::Medium::Board ? 10U : 3U) << "all but Complete";
  }
}

TEST(BusJournal, KnowsOldValuesOriginsAndFailures) {
  JournalBench bench;
  {
    const BusJournal::OriginScope outer(bench.Journal, "Outer");
    WriteByte(bench.Journaled, 0x64, 0x10);
    {
      const BusJournal::OriginScope inner(bench.Journal, "Inner");
      UpdateBits(bench.Journaled, 0x5C, 0x10, 0x10);
    }
    WriteByte(bench.Journaled, 0x64, 0x20);
  }
  bench.FailTransfer(1);
  EXPECT_THROW(WriteByte(bench.Journaled, 0x64, 0x30), CommsError);
  WriteByte(bench.Journaled, 0x64, 0x40);
  bench.Eval.SetDiode(0, true);
  bench.Eval.SetDiode(1, true);
  EXPECT_EQ(bench.Entry(0), "15A/64 ?>10 Outer");
  EXPECT_EQ(bench.Entry(1), "05A/5C ?>62 Inner");
  EXPECT_EQ(bench.Entry(2), "15A/5C 62>72 Inner");
  EXPECT_EQ(bench.Entry(3), "15A/64 10>20 Outer");
  EXPECT_EQ(bench.Entry(4), "15A/64 20>30! ");
  EXPECT_EQ(bench.Entry(5), "15A/64 ?>40 ") << "the failed write may have arrived";
  EXPECT_EQ(bench.Entry(7), "294/00 07>3F ");
}

TEST(BusJournal, ReadOnlyHoldsEveryWriteBackAndCountsIt) {
  for (const auto medium : {TestBench::Medium::Board, TestBench::Medium::Smbus}) {
    JournalBench bench(medium, true);
    Exercise(bench.Journaled, bench.Eval);
    EXPECT_EQ(bench.BusTraffic(), medium == TestBench::Medium::Board ? "R5C V96 V94 V90 V92 ST" : "R5C");
    EXPECT_EQ(bench.Journal.SkippedCount(), medium == TestBench::Medium::Board ? 4U : 2U);
    EXPECT_TRUE(bench.Entry(0).ends_with("/30 ?>10- "));
    EXPECT_TRUE(UndoLastWrite(bench.Journaled, bench.Journal).Written.empty());
  }
}

TEST(BusJournal, KeepsTheLastTenThousandTransfersAndTheWritesBeyondThem) {
  JournalBench bench;
  UpdateBits(bench.Journaled, 0x64, 0xFF, 0x10);
  for (std::size_t read = 0; read < BusJournal::capacity; ++read) ReadByte(bench.Journaled, 0x3E);
  EXPECT_EQ(bench.Journal.Entries().size(), BusJournal::capacity);
  EXPECT_EQ(bench.Journal.Entries().front().Number, 3U);
  EXPECT_EQ(UndoLastWrite(bench.Journaled, bench.Journal).Written.size(), 1U);
  EXPECT_EQ(bench.Peek(0x64), 0x80);
  bench.Journal.SetMark();
  for (std::size_t write = 0; write < BusJournal::capacity + 2; ++write) WriteByte(bench.Journaled, 0x30, 0);
  EXPECT_EQ(UndoToMark(bench.Journaled, bench.Journal).Forgotten, 2U);
}

TEST(Undo, TakesTheLastWriteBackAndGoesFurtherBackEachTime) {
  JournalBench bench;
  for (const std::uint8_t reg : {std::uint8_t{0x64}, std::uint8_t{0x65}}) ReadByte(bench.Journaled, reg);
  WriteByte(bench.Journaled, 0x64, 0x11);
  WriteByte(bench.Journaled, 0x64, 0x12);
  WriteByte(bench.Journaled, 0x66, 0x13);
  WriteByte(bench.Journaled, 0x65, 0x14);
  bench.Traffic();
  bench.FailTransfer(1);
  UndoResult result = UndoLastWrite(bench.Journaled, bench.Journal);
  ASSERT_EQ(result.Problems.size(), 1U);
  EXPECT_EQ(result.Problems[0].Reason, "Error: 57, Device I/O error");
  UndoLastWrite(bench.Journaled, bench.Journal);
  result = UndoLastWrite(bench.Journaled, bench.Journal);
  ASSERT_EQ(result.Problems.size(), 1U) << "0x66 was never read";
  EXPECT_EQ(result.Problems[0].Register, 0x66);
  UndoLastWrite(bench.Journaled, bench.Journal);
  UndoLastWrite(bench.Journaled, bench.Journal);
  EXPECT_EQ(bench.Traffic(), "W65:80! W65:80 W64:11 W64:80");
  EXPECT_EQ(bench.Entry(bench.Journal.Entries().size() - 1), "15A/64 11>80 Undo");
  EXPECT_TRUE(UndoLastWrite(bench.Journaled, bench.Journal).Written.empty()) << "an undo is not undone";
}

TEST(Undo, ToTheMarkGivesEachRegisterItsByteOfThenWithOneWrite) {
  JournalBench bench;
  UpdateBits(bench.Journaled, 0x5C, 0xFF, 0x01);
  bench.Journal.SetMark();
  UpdateBits(bench.Journaled, 0x64, 0xFF, 0x21);
  UpdateBits(bench.Journaled, 0x5C, 0xFF, 0x02);
  WriteByte(bench.Journaled, 0x64, 0x22);
  WriteByte(bench.Journaled, 0x65, 0x23);
  UpdateBits(bench.Journaled, 0x5D, 0xFF, 0x03);
  bench.Traffic();
  bench.FailTransfer(1);
  UndoResult result = UndoToMark(bench.Journaled, bench.Journal);
  EXPECT_EQ(bench.Traffic(), "W5D:62! W5C:01 W64:80");
  ASSERT_EQ(result.Problems.size(), 2U);
  EXPECT_EQ(result.Problems[0].Register, 0x5D);
  EXPECT_EQ(result.Problems[1].Register, 0x65);
  result = UndoToMark(bench.Journaled, bench.Journal);
  EXPECT_EQ(bench.Traffic(), "W5D:62");
  EXPECT_EQ(result.Written.size(), 1U);
}

TEST(RecordingLink, ReadsEachPlaceOnceAndSendsNothing) {
  for (const auto medium : {TestBench::Medium::Board, TestBench::Medium::Smbus}) {
    TestBench bench(medium);
    RecordingLink recording(bench.Bus);
    BoardState flags;
    Board board(recording.Recording(), flags);
    bench.FailTransfer(1);
    EXPECT_THROW(ReadByte(recording.Recording(), 0x5C), CommsError);
    Exercise(recording.Recording(), board);
    Exercise(recording.Recording(), board);
    EXPECT_EQ(bench.BusTraffic(), medium == TestBench::Medium::Board ? "R5C! R5C V96 V94 V90 V92" : "R5C! R5C");
    EXPECT_EQ(bench.Sim.LiveHandles(), 0);
    std::string writes;
    for (const RecordedWrite& write : recording.Writes()) {
      writes += fmt::format("{}{:02X} {}>{:02X};", write.OfDevice ? "S" : "W", write.Address,
                            write.Old ? fmt::format("{:02X}", *write.Old) : "?", write.New);
    }
    EXPECT_EQ(writes, medium == TestBench::Medium::Board ? "W30 ?>10;W5C 62>E2;S94 3F>38;W30 10>10;W5C E2>E2;S94 38>38;"
                                                         : "W30 ?>10;W5C 62>E2;W30 10>10;W5C E2>E2;");
  }
}

}  // namespace
}  // namespace krx
