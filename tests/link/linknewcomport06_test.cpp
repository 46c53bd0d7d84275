// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linknewcomport06.h"

#include <gtest/gtest.h>

#include <cmath>

#include "link/registeraccess.h"
#include "simulator/simwords.h"
#include "support/fakecomms.h"
#include "support/testbench.h"

namespace krx {
namespace {

using Diary = std::vector<std::string>;

/// A chip on each medium: the printer port (1) takes 8-bit addresses, the SMBus 7-bit ones.
void Select(Link& link, int medium) {
  link.CommsMedium = static_cast<std::uint8_t>(medium);
  link.ChipAddress = medium == 1 ? 0x5A : 0x2D;
}

/// Register, byte to write and byte read.
std::string Operands(const Link& link) {
  return fmt::format("{:X} {} {}", link.AddressPointer, link.WriteData, link.RegisterData);
}

TEST(Link, ThePrinterPortTransfersAtOnceAndEveryOtherMediumIsTheSmbusAfterFiveMilliseconds) {
  for (const int medium : {1, 0, 2, 255}) {
    FakeBench bench;
    Select(bench.Link, medium);
    bench.Bus.Registers[0x3E] = 0xF1;
    ReadByte(bench.Link, 0x3E);
    EXPECT_EQ(bench.Link.RegisterData, 0xF1) << "never negative";
    WriteByte(bench.Link, 0x30, 0xC0);
    const std::string wait = "wait, input held";
    EXPECT_EQ(bench.Bus.Diary,
              medium == 1 ? (Diary{"port read 5A 3E", "port write 5A 30 C0"})
                          : (Diary{wait, wait, wait, "smbus read 2D 3E", wait, wait, wait, "smbus write 2D 30 C0"}))
        << "medium " << medium;
    EXPECT_NEAR(static_cast<double>(bench.Time.Now), medium == 1 ? 0 : 10150, medium == 1 ? 0 : 150);
    EXPECT_EQ(bench.Bus.LiveObjects, 0);
  }
}

TEST(Link, AnOperandOutsideAByteOverflowsBeforeAnyWaitOrTraffic) {
  for (const int medium : {0, 1}) {
    FakeBench bench;
    bench.Link.CommsMedium = static_cast<std::uint8_t>(medium);
    for (const auto& [reg, chip] : {std::pair{-1, 0x2D}, {256, 0x2D}, {0x30, -1}, {0x30, 256}}) {
      bench.Link.AddressPointer = static_cast<std::int16_t>(reg);
      bench.Link.ChipAddress = static_cast<std::int16_t>(chip);
      EXPECT_THROW(bench.Link.ReadRegister(), Overflow);
      EXPECT_THROW(bench.Link.WriteRegister(), Overflow);
    }
    Select(bench.Link, medium);
    bench.Link.WriteData = 256;
    EXPECT_THROW(bench.Link.WriteRegister(), Overflow);
    for (const int value : {-1, 65536, -65536}) EXPECT_THROW(WriteByte(bench.Link, 0x30, value), Overflow);
    EXPECT_EQ(bench.Bus.Diary, Diary{});
    EXPECT_FALSE(bench.Link.TransferInProgress());
  }
  EXPECT_EQ(Overflow().BoxText(), "Error: 6, Overflow");
  EXPECT_EQ(CommsError(-9, "odd").BoxText(), "Error:-9, odd");
}

TEST(Link, AFailedTransferIsNotRepeatedReleasesEverythingAndKeepsTheLastReading) {
  for (const int medium : {0, 1}) {
    FakeBench bench;
    Select(bench.Link, medium);
    bench.Bus.Registers[0x26] = 44;
    ReadByte(bench.Link, 0x26);
    bench.Bus.Registers[0x26] = 55;
    bench.Bus.Failing = true;
    bench.Bus.Diary.clear();
    EXPECT_THROW(bench.Link.ReadRegister(), NoAcknowledge);
    EXPECT_THROW(WriteByte(bench.Link, 0x30, 9), NoAcknowledge);
    EXPECT_EQ(Operands(bench.Link), "30 9 44");
    EXPECT_EQ(std::ranges::count(bench.Bus.Diary, "wait, input held"), std::ssize(bench.Bus.Diary) - 2);
    EXPECT_EQ(bench.Bus.LiveObjects, 0);
    EXPECT_FALSE(bench.Link.TransferInProgress());
    bench.Bus.Failing = false;
    EXPECT_EQ(ReadByte(bench.Link, 0x26), 55) << "the next transfer works";
  }
}

TEST(Link, AHandlerThatRunsDuringTheWaitChangesNeitherTheTransferNorItsOperands) {
  FakeBench bench;
  Select(bench.Link, 0);
  bench.Bus.Registers[0x26] = 40;
  bench.Bus.Registers[0x41] = 0xFF;
  const auto handler = [&] {
    EXPECT_TRUE(bench.Link.TransferInProgress());
    UpdateBits(bench.Link, 0x41, 0x0F, 0x00);
    bench.Link.ChipAddress = 0x2E;
  };
  bench.Pump.Handler = handler;
  ReadByte(bench.Link, 0x26);
  EXPECT_EQ(Operands(bench.Link), "26 0 40");
  EXPECT_EQ(bench.Bus.Diary.back(), "smbus read 2D 26");
  EXPECT_EQ(bench.Bus.Registers[0x41], 0xF0);

  Select(bench.Link, 0);
  bench.Pump.Handler = handler;
  WriteByte(bench.Link, 0x30, 77);
  EXPECT_EQ(bench.Bus.Diary.back(), "smbus write 2D 30 4D");
  EXPECT_EQ(Operands(bench.Link), "30 77 240");

  bench.Pump.Handler = [&] {
    bench.Link.AddressPointer = 0x7F;
    throw CommsError(1, "from a handler");
  };
  EXPECT_THROW(ReadByte(bench.Link, 0x26), CommsError);
  EXPECT_EQ(bench.Link.AddressPointer, 0x26);
  EXPECT_FALSE(bench.Link.TransferInProgress());
}

TEST(Link, TheRootObjectIsMadeOnFirstUseOnlyAndAFailureToMakeItIsTriedAgain) {
  FakeBench bench;
  int attempts = 0;
  bench.Root.Change([&]() -> std::unique_ptr<CommsModule> {
    if (++attempts == 1) throw CommsError(429, "no library");
    return std::make_unique<FakeComms>(bench.Bus);
  });
  EXPECT_EQ(attempts, 0);
  EXPECT_THROW(ReadByte(bench.Link, 0x26), CommsError);
  for (int reads = 0; reads < 2; ++reads) EXPECT_NO_THROW(ReadByte(bench.Link, 0x26));
  EXPECT_EQ(attempts, 2);
}

TEST(Link, ReadingsAreGivenUpBetweenTwoTransfersOnceTheEndIsAskedFor) {
  for (bool asked : {true, false}) {
    FakeBench bench;
    bench.Link.CommsMedium = 0;
    bench.Pump.Handler = [&] { asked = true; };  // at the latest during the wait
    bench.Link.EndAsked = [&] { return asked; };
    {
      const Link::MayGiveUp readings(bench.Link);
      EXPECT_THROW(ReadByte(bench.Link, 0x26), GivenUp);
      EXPECT_EQ(std::ranges::count(bench.Bus.Diary, "smbus read 5A 26"), 0);
      EXPECT_NO_THROW(WriteByte(bench.Link, 0x30, 1)) << "what has to be put back is put back";
    }
    EXPECT_NO_THROW(ReadByte(bench.Link, 0x26)) << "nor what reads to write";
  }
}

TEST(Delay, ReturnsAfterTheTimeAskedForAndLetsEventsRunMeanwhile) {
  FakeBench bench;
  for (const double seconds : {0.0, -1.0, std::nan("")}) bench.Link.Delay(seconds);
  EXPECT_EQ(bench.Bus.Diary, Diary{});
  const double start = bench.Link.ElapsedSeconds();
  bench.Link.Delay(0.005);
  EXPECT_NEAR(bench.Link.ElapsedSeconds() - start, 0.0051, 0.0001);
  EXPECT_EQ(bench.Bus.Diary, (Diary{"wait", "wait", "wait"})) << "outside a transfer nothing is held back";
  bench.Link.Delay(0.00005);
  EXPECT_GT(bench.Bus.Diary.size(), 3U) << "a very short wait handles events too";

  FakeBench uncounted;  // by another clock
  uncounted.Time.CountsPerSecond = 0;
  uncounted.Link.Delay(0.005);
  EXPECT_NEAR(static_cast<double>(uncounted.Time.Now), 5150, 150);
  EXPECT_EQ(uncounted.Link.ElapsedSeconds(), 0.0);
}

TEST(Link, RemembersTheByteLastSeenOfEachRegisterAndTellsItsListeners) {
  TestBench bench;
  std::vector<std::pair<int, std::optional<std::uint8_t>>> told;
  {
    const auto subscription = bench.Bus.Seen.Subscribe([&](int reg, auto byte) { told.emplace_back(reg, byte); });
    EXPECT_EQ(bench.Bus.Seen.Byte(0x3E), std::nullopt);
    ReadByte(bench.Bus, 0x3E);
    WriteByte(bench.Bus, 0x64, 0x4C);
    bench.Sim.AddFault(*ParseFault("fail=1+,op=write"));
    EXPECT_THROW(WriteByte(bench.Bus, 0x64, 0x00), CommsError);
    EXPECT_EQ(bench.Bus.Seen.Byte(0x64), std::nullopt) << "it may have arrived";
    bench.Bus.WritesHeldBack = true;
    EXPECT_THROW(WriteByte(bench.Bus, 0x3E, 0x00), CommsError);
    EXPECT_EQ(bench.Bus.Seen.Byte(0x3E), 0x41) << "the chip never gets a byte that is held back";
  }
  ReadByte(bench.Bus, 0x3F);
  EXPECT_EQ(told, (decltype(told){{0x3E, 0x41}, {0x64, 0x4C}, {0x64, std::nullopt}}));
}

}  // namespace
}  // namespace krx
