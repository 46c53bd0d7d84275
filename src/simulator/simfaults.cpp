// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simfaults.h"

#include "link/commserror.h"

namespace krx {

void FaultPlan::Add(const Fault& fault) {
  countdowns_.push_back({fault, fault.Nth});
}

void FaultPlan::Clear() {
  countdowns_.clear();
  fired_ = 0;
}

void FaultPlan::Check(Operation op, std::uint8_t reg) {
  const Fault* failing = nullptr;
  for (Countdown& countdown : countdowns_) {
    const Fault& plan = countdown.Plan;
    if (plan.Op ? *plan.Op != op : !IsBusTransfer(op)) continue;
    const bool hasRegister = op == Operation::ReadByteData || op == Operation::WriteByteData;
    if (plan.Register && !(hasRegister && *plan.Register == reg)) continue;
    if (countdown.Left > 0) --countdown.Left;
    if (countdown.Left == 0) {
      failing = &plan;
      if (!plan.Onward) countdown.Left = -1;
    }
  }
  if (failing == nullptr) return;
  ++fired_;
  if (failing->NoAck) throw NoAcknowledge(failing->Number, failing->Text);
  throw CommsError(failing->Number, failing->Text);
}

}  // namespace krx
