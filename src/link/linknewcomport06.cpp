// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linknewcomport06.h"

#include <algorithm>
#include <exception>

#include "link/commserror.h"

namespace krx {
namespace {

constexpr std::uint8_t printerPortMedium = 1;
constexpr double smbusWaitSeconds = 0.005;

/// The end of a wait is a busy loop: an event handled in it would make the wait late.
constexpr double spinSeconds = 0.0001;

std::uint8_t ToByte(std::int16_t value) {
  if (value < 0 || value > 255) throw Overflow();
  return static_cast<std::uint8_t>(value);
}

}  // namespace

/// Marks a transfer as running and restores the caller's operands at its end, since handlers that ran during its wait
/// have set their own.
class LinkNewComPort06::TransferScope {
 public:
  explicit TransferScope(LinkNewComPort06& link)
      : link_(link), addressPointer_(link.AddressPointer), writeData_(link.WriteData) {
    ++link_.transfers_;
  }
  /// The bus is accessed from here on; a transfer abandoned earlier does not count.
  void Begin() {
    begun_ = true;
    ++link_.transferCount_;
  }
  ~TransferScope() {
    --link_.transfers_;
    if (begun_) {
      // Compared, because a transfer may run while another exception is propagating.
      link_.lastTransferFailed_ = std::uncaught_exceptions() > exceptions_;
      if (!link_.lastTransferFailed_) ++link_.successCount_;
    }
    link_.AddressPointer = addressPointer_;
    link_.WriteData = writeData_;
  }
  TransferScope(const TransferScope&) = delete;
  TransferScope& operator=(const TransferScope&) = delete;

 private:
  LinkNewComPort06& link_;
  std::int16_t addressPointer_;
  std::int16_t writeData_;
  int exceptions_ = std::uncaught_exceptions();
  bool begun_ = false;
};

LinkNewComPort06::LinkNewComPort06(CommsRoot& root, Clock& clock, EventPump& pump)
    : root_(root), clock_(clock), pump_(&pump) {}

void LinkNewComPort06::ReadRegister() {
  const std::uint8_t chip = ToByte(ChipAddress);
  const std::uint8_t reg = ToByte(AddressPointer);
  TransferScope scope(*this);
  ThrowIfGivenUp();
  if (CommsMedium == printerPortMedium) {
    scope.Begin();
    const auto adapter = root_.Get().ObtainPrinterPortAdapter();
    const auto device = adapter->ObtainBusDevice();
    RegisterData = device->ReadByteData(chip, reg);
  } else {
    Delay(smbusWaitSeconds);
    ThrowIfGivenUp();
    scope.Begin();
    const auto controller = root_.Get().ObtainSmbusController();
    RegisterData = controller->ReadByteData(chip, reg);
  }
  Seen.Saw(reg, static_cast<std::uint8_t>(RegisterData));
}

void LinkNewComPort06::WriteRegister() {
  const std::uint8_t data = ToByte(WriteData);
  const std::uint8_t chip = ToByte(ChipAddress);
  const std::uint8_t reg = ToByte(AddressPointer);
  TransferScope scope(*this);
  scope.Begin();
  try {
    if (CommsMedium == printerPortMedium) {
      const auto adapter = root_.Get().ObtainPrinterPortAdapter();
      const auto device = adapter->ObtainBusDevice();
      device->WriteByteData(chip, reg, data);
    } else {
      Delay(smbusWaitSeconds);
      const auto controller = root_.Get().ObtainSmbusController();
      controller->WriteByteData(chip, reg, data);
    }
  } catch (...) {
    if (!WritesHeldBack) Seen.Forget(reg);
    throw;
  }
  if (!WritesHeldBack) Seen.Saw(reg, data);
}

void LinkNewComPort06::ThrowIfGivenUp() const {
  if (mayGiveUp_ > 0 && EndAsked && EndAsked()) throw GivenUp();
}

double LinkNewComPort06::ElapsedSeconds() {
  if (perfClock_.Frequency == 0) perfClock_.Frequency = clock_.Frequency();
  perfClock_.Counter = clock_.Counter();
  if (perfClock_.Frequency == 0) return 0;
  return static_cast<double>(perfClock_.Counter) / static_cast<double>(perfClock_.Frequency);
}

void LinkNewComPort06::Delay(double seconds) {
  if (!(seconds > 0)) return;
  const double start = ElapsedSeconds();
  const bool counting = perfClock_.Frequency != 0;
  const auto now = [&] { return counting ? ElapsedSeconds() : clock_.FallbackSeconds(); };
  const double end = (counting ? start : clock_.FallbackSeconds()) + seconds;
  const PumpMode mode = TransferInProgress() ? PumpMode::HoldUserInput : PumpMode::Everything;
  while (true) {
    const double left = end - now();
    if (!(left > 0)) return;
    // A wait no longer than the busy loop would otherwise handle no events at all.
    if (left > spinSeconds || seconds <= spinSeconds) pump_->Pump(std::max(left - spinSeconds, 0.0), mode);
  }
}

void LinkNewComPort06::DelayHoldingInput(double seconds) {
  ++transfers_;
  Delay(seconds);
  --transfers_;
}

void LinkNewComPort06::LeaveWindowsAlone() {
  pump_ = &sleeping_;
  Seen.TellNobody();
}

}  // namespace krx
