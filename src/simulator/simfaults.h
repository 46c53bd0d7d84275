// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "simulator/simtrace.h"

namespace krx {

/// One fault to inject. The fields beside `What` apply only to the kinds that name them.
struct Fault {
  enum class Kind {
    FailTransfer,    ///< the Nth matching transfer fails without effect on chip and board
    ExtraTime,       ///< every bus transfer takes `Seconds` longer
    ChipAbsent,      ///< from `Seconds` after the start of the simulation no chip acknowledges
    StalledFan,      ///< fan `Index` (1..4) does not turn at any duty
    RunawayFan,      ///< fan `Index` (1..4) never stops
    HuntingFan,      ///< fan `Index` (1..4) turns unsteadily
    OpenDiode,       ///< remote diode `Index` (1, 2) is open
    WrongCompanyId,  ///< 0x3E reads `Value`
    StuckBits,       ///< a write does not change the bits `Value` of `Register`
  };

  Kind What = Kind::FailTransfer;

  // FailTransfer. Counted from the moment the fault is added, the first one is 1. Without Op the bus transfers are
  // counted (IsBusTransfer); with Op that operation; with Register only transfers of that register.
  int Nth = 1;
  bool Onward = false;  ///< the Nth and all later ones
  std::optional<Operation> Op = {};
  std::optional<std::uint8_t> Register = {};
  bool NoAck = false;  ///< throws NoAcknowledge instead of CommsError
  int Number = 57;
  std::string Text = "Device I/O error";

  double Seconds = 0;
  int Index = 1;
  std::uint8_t Value = 0;
};

/// The injected transfer faults and their countdowns.
class FaultPlan {
 public:
  void Add(const Fault& fault);
  void Clear();

  /// Counts this transfer; throws when an injected fault makes it fail.
  void Check(Operation op, std::uint8_t reg);

  /// Number of transfers failed by injection since the last Clear.
  int Fired() const { return fired_; }

 private:
  struct Countdown {
    Fault Plan;
    int Left = 0;
  };
  std::vector<Countdown> countdowns_;
  int fired_ = 0;
};

}  // namespace krx
