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
/// reference; link/registeraccess.h provides the complete sequences.
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

  RegisterImage Seen;           ///< every byte transferred by this link
  bool WritesHeldBack = false;  ///< read-only run: writes are suppressed but succeed, and Seen keeps its byte

  std::function<bool()> EndAsked;  ///< true once the program is asked to end; unset: never

  /// For a sequence that only reads and may therefore stop anywhere. While one is alive and the program was asked to
  /// end, ReadRegister and ThrowIfGivenUp throw GivenUp: on a hung bus each further read would take up to a second.
  class MayGiveUp {
   public:
    explicit MayGiveUp(LinkNewComPort06& link) : link_(link) { ++link_.mayGiveUp_; }
    ~MayGiveUp() { --link_.mayGiveUp_; }
    MayGiveUp(const MayGiveUp&) = delete;
    MayGiveUp& operator=(const MayGiveUp&) = delete;

   private:
    LinkNewComPort06& link_;
  };

  /// For parts of such a sequence that do not read through this link.
  void ThrowIfGivenUp() const;

  /// Reads the register at AddressPointer into RegisterData. On the SMBus it first waits 5 ms in Delay. Throws Overflow
  /// before any wait when an operand does not fit a byte, CommsError when the transfer fails; RegisterData then keeps
  /// its value. AddressPointer is unchanged on return, whatever ran during the wait.
  void ReadRegister();

  /// Writes WriteData to the register at AddressPointer; errors and waits as ReadRegister. AddressPointer and WriteData
  /// are unchanged on return.
  void WriteRegister();

  /// Seconds from an arbitrary origin; always 0 on a platform without a performance counter.
  double ElapsedSeconds();

  /// Returns after at least `seconds`, handling events meanwhile. Zero and negative values return at once.
  void Delay(double seconds);

  /// The same, but like the wait inside a transfer: user input stays queued and no other handler accesses the chip.
  void DelayHoldingInput(double seconds);

  /// From now on waits just sleep and no listener is called: for the end of the program, when windows and display may
  /// be partly destroyed.
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
