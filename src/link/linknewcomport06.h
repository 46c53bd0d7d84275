// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>

#include "link/clock.h"
#include "link/commsroot.h"
#include "link/eventpump.h"
#include "link/registerimage.h"

namespace krx {

/// The link state and the two routines through which every byte to and from the chip passes. The convention: set
/// AddressPointer (and WriteData), call, and after a read take RegisterData. Made once per process and handed out by
/// reference; link/registeraccess.h has the whole sequences.
class LinkNewComPort06 {
 public:
  LinkNewComPort06(CommsRoot& root, Clock& clock, EventPump& pump);
  LinkNewComPort06(const LinkNewComPort06&) = delete;
  LinkNewComPort06& operator=(const LinkNewComPort06&) = delete;

  std::int16_t AddressPointer = 0;   ///< register of the next transfer, 0..255
  std::int16_t WriteData = 0;        ///< byte of the next write, 0..255
  std::int16_t RegisterData = 0;     ///< byte of the last successful read, 0..255
  std::int16_t ChipAddress = 0;      ///< 8-bit form on the printer port, 7-bit form on the SMBus
  std::uint8_t CommsMedium = 0;      ///< 1: evaluation board at the printer port; anything else: SMBus
  std::int16_t EvalBoardMedium = 0;  ///< integer copy of CommsMedium for the windows

  RegisterImage Seen;  ///< every byte that a transfer of this link carried
  bool WritesHeldBack =
      false;  ///< a read-only run: a write succeeds, but the chip never gets it, and Seen keeps its byte

  std::function<bool()> EndAsked;  ///< true once the program is to end; unset: never

  /// For a sequence that may stop anywhere, since it only reads. As long as one lives and an end was asked for, no read
  /// begins any more: on a bus that hangs each costs up to a second. ReadRegister then throws GivenUp, and
  /// so does ThrowIfGivenUp.
  class MayGiveUp {
   public:
    explicit MayGiveUp(LinkNewComPort06& link) : link_(link) { ++link_.mayGiveUp_; }
    ~MayGiveUp() { --link_.mayGiveUp_; }
    MayGiveUp(const MayGiveUp&) = delete;
    MayGiveUp& operator=(const MayGiveUp&) = delete;

   private:
    LinkNewComPort06& link_;
  };

  /// For such a sequence where it goes on without a read of this link.
  void ThrowIfGivenUp() const;

  /// Reads the register at AddressPointer into RegisterData. On the SMBus it first waits 5 ms in Delay. Throws
  /// Overflow before any wait when an operand does not fit a byte, CommsError when the transfer fails; RegisterData
  /// then keeps its value. AddressPointer is on return what it was on entry, whatever ran during the wait.
  void ReadRegister();

  /// Writes WriteData to the register at AddressPointer; errors and waits as ReadRegister. AddressPointer and
  /// WriteData are on return what they were on entry.
  void WriteRegister();

  /// Seconds from an arbitrary origin; always 0 on a platform without a performance counter.
  double ElapsedSeconds();

  /// Returns after at least `seconds`, handling events meanwhile. Zero and negative values handle none.
  void Delay(double seconds);

  /// The same, but as in a transfer's own wait: user input stays queued and nobody else gets the chip.
  void DelayHoldingInput(double seconds);

  /// From now on waits just sleep and nobody is told of the bytes that pass: for an end of the program at which windows
  /// and display may be half gone.
  void LeaveWindowsAlone();

  /// True inside ReadRegister, WriteRegister and DelayHoldingInput, waits included.
  bool TransferInProgress() const { return transfers_ > 0; }

  /// Transfers of the whole run, failed ones included.
  std::uint64_t TransferCount() const { return transferCount_; }

  std::uint64_t SuccessCount() const { return successCount_; }
  bool LastTransferFailed() const { return lastTransferFailed_; }

  CommsRoot& Root() { return root_; }

 private:
  CommsRoot& root_;
  Clock& clock_;
  SleepingPump sleeping_;
  EventPump* pump_;
  PerfClock perfClock_;
  int transfers_ = 0;
  int mayGiveUp_ = 0;
  std::uint64_t transferCount_ = 0;
  std::uint64_t successCount_ = 0;
  bool lastTransferFailed_ = false;

  class TransferScope;
};

using Link = LinkNewComPort06;

}  // namespace krx
