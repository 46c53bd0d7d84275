// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/recordingmodule.h"

#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {

/// Represents both media, since the SMBus waits are made by the real link. Selecting a port, mode or address has no
/// effect.
class RecordingLink::Device : public BusDevice {
 public:
  explicit Device(RecordingLink& owner) : owner_(owner) {}

  void SendByte(std::uint8_t address, std::uint8_t data) override { owner_.Record(true, address, data); }
  std::uint8_t ReceiveByte(std::uint8_t address) override { return owner_.ReceiveByte(address); }
  // Heaters are not part of a recording.
  void SetControlByte(std::uint8_t) override {}
  std::uint8_t ReadStatusByte() override { return 0; }
  void Complete() override {}
  void SetDeviceAddress(std::uint8_t) override {}
  void SetBusMode(bool) override {}
  bool GetBusMode() override { return false; }
  std::uint8_t ReadByteData(std::uint8_t, std::uint8_t reg) override { return owner_.ReadRegister(reg); }
  void WriteByteData(std::uint8_t, std::uint8_t reg, std::uint8_t data) override { owner_.Record(false, reg, data); }

 private:
  RecordingLink& owner_;
};

class RecordingLink::Adapter : public PrinterPortAdapter {
 public:
  explicit Adapter(RecordingLink& owner) : owner_(owner) {}

  std::uint8_t PortCount() override { return 1; }
  void SelectPort(std::uint8_t) override {}
  std::int32_t CurrentPort() override { return 0; }
  std::unique_ptr<BusDevice> ObtainBusDevice() override { return std::make_unique<Device>(owner_); }

 private:
  RecordingLink& owner_;
};

class RecordingLink::Module : public CommsModule {
 public:
  explicit Module(RecordingLink& owner) : owner_(owner) {}

  std::unique_ptr<PrinterPortAdapter> ObtainPrinterPortAdapter() override { return std::make_unique<Adapter>(owner_); }
  std::unique_ptr<SmbusController> ObtainSmbusController() override { throw CommsError(5, "A recording has no SMBus"); }
  void SelectMedium(int) override {}

 private:
  RecordingLink& owner_;
};

RecordingLink::RecordingLink(Link& real, Reads reads)
    : real_(real),
      reads_(reads),
      root_([this] { return std::make_unique<Module>(*this); }),
      link_(root_, clock_, pump_) {
  // Always the medium without waits, so that none is made twice; the board setting is that of the real link.
  link_.CommsMedium = 1;
  link_.EvalBoardMedium = real.EvalBoardMedium;
  link_.ChipAddress = real.ChipAddress;
}

RecordingLink::~RecordingLink() = default;

std::uint8_t RecordingLink::ReadRegister(std::uint8_t reg) {
  const auto known = known_.find({false, reg});
  if (known != known_.end()) return known->second;
  const auto seen = real_.Seen.Byte(reg);
  return known_[{false, reg}] = reads_ == Reads::FromSeen && seen ? *seen : ReadByte(real_, reg);
}

std::uint8_t RecordingLink::ReceiveByte(std::uint8_t address) {
  const auto known = known_.find({true, address});
  if (known != known_.end()) return known->second;
  const auto adapter = real_.Root().Get().ObtainPrinterPortAdapter();
  return known_[{true, address}] = adapter->ObtainBusDevice()->ReceiveByte(address);
}

void RecordingLink::Record(bool ofDevice, std::uint8_t address, std::uint8_t value) {
  RecordedWrite write{ofDevice, address, {}, value};
  if (const auto known = known_.find({ofDevice, address}); known != known_.end()) {
    write.Old = known->second;
  } else if (!ofDevice) {
    write.Old = real_.Seen.Byte(address);
  }
  writes_.push_back(write);
  known_[{ofDevice, address}] = value;
}

}  // namespace krx
