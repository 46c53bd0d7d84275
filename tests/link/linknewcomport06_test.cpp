// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linknewcomport06.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>

#include "link/commserror.h"
#include "link/registeraccess.h"
#include "simulator/simwords.h"
#include "support/testbench.h"

namespace krx {
namespace {

/// Waits return after at most 2 ms and are recorded with the transfers: "~" with user input held, "." without.
struct LinkBench : TestBench {
  /// The printer port is medium 1, everything else the SMBus.
  explicit LinkBench(int medium = 1, SimOptions options = {})
      : TestBench(medium == 1 ? Medium::Board : Medium::Smbus, std::move(options)) {
    Bus.CommsMedium = static_cast<std::uint8_t>(medium);
    Pump.Longest = 0.002;
    Pump.OnPump = [this] {
      noted_ += All() + (Pump.LastMode == PumpMode::HoldUserInput ? "~" : ".");
      if (const auto handler = std::exchange(Handler, nullptr)) handler();
    };
  }
  std::string Log() { return std::exchange(noted_, {}) + All(); }
  /// Register, byte to write and byte read.
  std::string Operands() const {
    return fmt::format("{:X} {} {}", Bus.AddressPointer, Bus.WriteData, Bus.RegisterData);
  }
  std::function<void()> Handler;  ///< runs in the next wait

 private:
  std::string noted_;
};

TEST(Link, ThePrinterPortTransfersAtOnceAndEveryOtherMediumIsTheSmbusAfterFiveMilliseconds) {
  for (const int medium : {1, 0, 2, 255}) {
    LinkBench bench(medium);
    bench.Poke(0x45, 0xF1);
    const double start = bench.Time.Seconds();
    EXPECT_EQ(ReadByte(bench.Bus, 0x45), 0xF1);
    EXPECT_EQ(bench.Bus.RegisterData, 0xF1) << "never negative";
    WriteByte(bench.Bus, 0x30, 0xC0);
    EXPECT_NEAR(bench.Time.Seconds() - start, medium == 1 ? 0.00005 : 0.01005, 0.00006);
    EXPECT_EQ(bench.Log(), medium == 1 ? "A D R45 A D W30:C0" : "~~~H R45~~~H W30:C0") << "medium " << medium;
    EXPECT_EQ(bench.Sim.LiveHandles(), 0);
  }
}

TEST(Link, AnOperandOutsideAByteOverflowsBeforeAnyWaitOrTraffic) {
  for (const int medium : {0, 1}) {
    LinkBench bench(medium);
    for (const auto& [reg, chip] : {std::pair{-1, 0x2E}, {256, 0x2E}, {0x30, -1}, {0x30, 256}}) {
      bench.Bus.AddressPointer = static_cast<std::int16_t>(reg);
      bench.Bus.ChipAddress = static_cast<std::int16_t>(chip);
      EXPECT_THROW(bench.Bus.ReadRegister(), Overflow);
      EXPECT_THROW(bench.Bus.WriteRegister(), Overflow);
    }
    bench.Bus.ChipAddress = 0x2E;
    bench.Bus.WriteData = 256;
    EXPECT_THROW(bench.Bus.WriteRegister(), Overflow);
    for (const int value : {-1, 65536, -65536}) EXPECT_THROW(WriteByte(bench.Bus, 0x30, value), Overflow);
    EXPECT_EQ(bench.Log(), "");
    EXPECT_FALSE(bench.Bus.TransferInProgress());
  }
  EXPECT_EQ(Overflow().BoxText(), "Error: 6, Overflow");
  EXPECT_EQ(CommsError(-9, "odd").BoxText(), "Error:-9, odd");
}

TEST(RegisterAccess, UpdateBitsReadsOnceWritesOnceAndKeepsTheNeighbours) {
  TestBench bench;
  bench.Poke(0x5C, 0xA5);
  UpdateBits(bench.Bus, 0x5C, 0x1E, 0xFF);
  UpdateBits(bench.Bus, 0x5C, 0xE0, 0x00);
  EXPECT_EQ(bench.Traffic(), "R5C W5C:BF R5C W5C:1F");
}

TEST(Link, AFailedTransferIsNotRepeatedReleasesEverythingAndKeepsTheLastReading) {
  for (const int medium : {0, 1}) {
    LinkBench bench(medium);
    bench.Poke(0x4E, 44);
    ReadByte(bench.Bus, 0x4E);
    bench.Poke(0x4E, 55);
    bench.Log();
    bench.Sim.AddFault(*ParseFault("fail=1+,noack"));
    EXPECT_THROW(bench.Bus.ReadRegister(), NoAcknowledge);
    EXPECT_THROW(WriteByte(bench.Bus, 0x30, 9), NoAcknowledge);
    EXPECT_EQ(bench.Operands(), "30 9 44");
    EXPECT_EQ(bench.Log(), medium == 1 ? "A D R4E! A D W30:09!" : "~~~H R4E!~~~H W30:09!");
    EXPECT_EQ(bench.Sim.LiveHandles(), 0);
    EXPECT_FALSE(bench.Bus.TransferInProgress());
    bench.Sim.ClearFaults();
    EXPECT_EQ(ReadByte(bench.Bus, 0x4E), 55) << "the next transfer works";
  }
}

TEST(Link, AHandlerThatRunsDuringTheWaitChangesNeitherTheTransferNorItsOperands) {
  SimOptions two;
  two.SmbusChips = {{0x2E}, {0x2D}};
  LinkBench bench(0, two);
  bench.Poke(0x4E, 40);
  const auto handler = [&] {
    EXPECT_TRUE(bench.Bus.TransferInProgress());
    UpdateBits(bench.Bus, 0x55, 0x0F, 0x00);
    bench.Bus.ChipAddress = 0x2D;
  };
  bench.Handler = handler;
  ReadByte(bench.Bus, 0x4E);
  EXPECT_EQ(bench.Operands(), "4E 0 40");
  EXPECT_EQ(bench.Peek(0x55), 0xF0);

  bench.Bus.ChipAddress = 0x2E;
  bench.Handler = handler;
  WriteByte(bench.Bus, 0x4E, 77);
  EXPECT_EQ(bench.Peek(0x4E), 77) << "not the other chip's";
  EXPECT_EQ(bench.Operands(), "4E 77 240");

  bench.Handler = [&] {
    bench.Bus.AddressPointer = 0x7F;
    throw CommsError(1, "from a handler");
  };
  EXPECT_THROW(ReadByte(bench.Bus, 0x26), CommsError);
  EXPECT_EQ(bench.Bus.AddressPointer, 0x26);
  EXPECT_FALSE(bench.Bus.TransferInProgress());
}

TEST(Link, TheRootObjectIsCreatedOnFirstUseAndAFailureToCreateItIsRetried) {
  TestBench bench;
  int attempts = 0;
  bench.Root.Change([&]() -> std::unique_ptr<CommsModule> {
    if (++attempts == 1) throw CommsError(429, "no library");
    return bench.Sim.MakeCommsModule();
  });
  EXPECT_EQ(attempts, 0);
  EXPECT_THROW(ReadByte(bench.Bus, 0x26), CommsError);
  for (int reads = 0; reads < 2; ++reads) EXPECT_NO_THROW(ReadByte(bench.Bus, 0x26));
  EXPECT_EQ(attempts, 2);
}

TEST(Link, ReadingsAreAbandonedBetweenTwoTransfersOnceTheEndIsRequested) {
  for (bool asked : {true, false}) {
    LinkBench bench(0);
    bench.Handler = [&] { asked = true; };  // at the latest during the wait
    bench.Bus.EndAsked = [&] { return asked; };
    {
      const Link::MayGiveUp readings(bench.Bus);
      EXPECT_THROW(ReadByte(bench.Bus, 0x26), GivenUp);
      EXPECT_NO_THROW(WriteByte(bench.Bus, 0x30, 1)) << "restores are still made";
      EXPECT_EQ(bench.Log().find('R'), std::string::npos);
    }
    EXPECT_NO_THROW(ReadByte(bench.Bus, 0x26)) << "nor does a read-modify-write";
  }
}

TEST(Delay, ReturnsAfterTheRequestedTimeAndHandlesEventsMeanwhile) {
  for (const std::int64_t counts : {1'000'000, 0}) {  // 0: no counter, fallback clock
    LinkBench bench;
    bench.Time.CountsPerSecond = counts;
    for (const double seconds : {0.0, -1.0, std::nan("")}) bench.Bus.Delay(seconds);
    EXPECT_EQ(bench.Log(), "");
    const double start = bench.Time.Seconds();
    bench.Bus.Delay(0.005);
    EXPECT_NEAR(bench.Time.Seconds() - start, 0.00505, 0.00005);
    EXPECT_EQ(bench.Log(), "...") << "outside a transfer input is delivered";
    bench.Bus.Delay(0.00005);
    EXPECT_EQ(bench.Log().find('.'), 0U) << "a very short wait handles events too";
    EXPECT_EQ(bench.Bus.ElapsedSeconds() > 0, counts > 0);
  }
}

TEST(Link, RemembersTheByteLastSeenOfEachRegisterAndNotifiesItsListeners) {
  TestBench bench;
  using Told = std::vector<std::pair<int, std::optional<std::uint8_t>>>;
  Told told;
  {
    const auto subscription = bench.Bus.Seen.Subscribe([&](int reg, auto byte) { told.emplace_back(reg, byte); });
    EXPECT_EQ(bench.Bus.Seen.Byte(0x3E), std::nullopt);
    ReadByte(bench.Bus, 0x3E);
    WriteByte(bench.Bus, 0x64, 0x4C);
    bench.Sim.AddFault(*ParseFault("fail=1+,op=write"));
    EXPECT_THROW(WriteByte(bench.Bus, 0x64, 0x00), CommsError);
    EXPECT_EQ(bench.Bus.Seen.Byte(0x64), std::nullopt) << "it may have reached the chip";
    bench.Bus.WritesHeldBack = true;
    EXPECT_THROW(WriteByte(bench.Bus, 0x3E, 0x00), CommsError);
    EXPECT_EQ(bench.Bus.Seen.Byte(0x3E), 0x41) << "a suppressed write does not reach the chip";
  }
  ReadByte(bench.Bus, 0x3F);
  EXPECT_EQ(told, (Told{{0x3E, 0x41}, {0x64, 0x4C}, {0x64, std::nullopt}}));
}

}  // namespace
}  // namespace krx
