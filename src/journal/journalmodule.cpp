// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal/journalmodule.h"

#include <utility>

#include "link/commserror.h"

namespace krx {
namespace {

/// Records the transfers of one bus.
class Recorder {
 public:
  Recorder(BusJournal& journal, bool printerPort, bool readOnly)
      : journal_(journal), printerPort_(printerPort), readOnly_(readOnly) {}

  template <typename Transfer>
  std::uint8_t Read(BusOperation operation, std::uint8_t address, std::uint8_t reg, Transfer transfer) {
    JournalEntry entry = Entry(operation, address, reg);
    Run(entry, [&] { entry.Value = transfer(); });
    return entry.Value;
  }

  template <typename Transfer>
  void Write(BusOperation operation, std::uint8_t address, std::uint8_t reg, std::uint8_t value, Transfer transfer) {
    JournalEntry entry = Entry(operation, address, reg);
    entry.Value = value;
    entry.Skipped = readOnly_;
    Run(entry, [&] {
      if (!readOnly_) transfer();
    });
  }

  bool ReadOnly() const { return readOnly_; }

 private:
  JournalEntry Entry(BusOperation operation, std::uint8_t address, std::uint8_t reg) const {
    JournalEntry entry;
    entry.Operation = operation;
    entry.PrinterPort = printerPort_;
    entry.Address = address;
    entry.Register = reg;
    return entry;
  }

  template <typename Transfer>
  void Run(JournalEntry& entry, Transfer transfer) {
    try {
      transfer();
    } catch (const CommsError& error) {
      entry.Failure = error.what();
      journal_.Add(entry);
      throw;
    }
    journal_.Add(entry);
  }

  BusJournal& journal_;
  bool printerPort_;
  bool readOnly_;
};

class JournalBusDevice : public BusDevice {
 public:
  JournalBusDevice(std::unique_ptr<BusDevice> inner, Recorder recorder)
      : inner_(std::move(inner)), recorder_(recorder) {}

  void SendByte(std::uint8_t address, std::uint8_t data) override {
    recorder_.Write(BusOperation::SendByte, address, 0, data, [&] { inner_->SendByte(address, data); });
  }
  std::uint8_t ReceiveByte(std::uint8_t address) override {
    return recorder_.Read(BusOperation::ReceiveByte, address, 0, [&] { return inner_->ReceiveByte(address); });
  }
  void SetControlByte(std::uint8_t value) override {
    recorder_.Write(BusOperation::ControlByte, 0, 0, value, [&] { inner_->SetControlByte(value); });
  }
  std::uint8_t ReadStatusByte() override {
    return recorder_.Read(BusOperation::StatusByte, 0, 0, [&] { return inner_->ReadStatusByte(); });
  }
  void SetDeviceAddress(std::uint8_t address) override { inner_->SetDeviceAddress(address); }
  void SetBusMode(bool mode) override { inner_->SetBusMode(mode); }
  bool GetBusMode() override { return inner_->GetBusMode(); }
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override {
    return recorder_.Read(BusOperation::ReadRegister, address, reg, [&] { return inner_->ReadByteData(address, reg); });
  }
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override {
    recorder_.Write(BusOperation::WriteRegister, address, reg, data,
                    [&] { inner_->WriteByteData(address, reg, data); });
  }
  void Complete() override {
    // It completes a control-byte change, which was suppressed.
    if (!recorder_.ReadOnly()) inner_->Complete();
  }

 private:
  std::unique_ptr<BusDevice> inner_;
  Recorder recorder_;
};

class JournalAdapter : public PrinterPortAdapter {
 public:
  JournalAdapter(std::unique_ptr<PrinterPortAdapter> inner, Recorder recorder)
      : inner_(std::move(inner)), recorder_(recorder) {}

  std::uint8_t PortCount() override { return inner_->PortCount(); }
  void SelectPort(std::uint8_t port) override { inner_->SelectPort(port); }
  std::int32_t CurrentPort() override { return inner_->CurrentPort(); }
  std::unique_ptr<BusDevice> ObtainBusDevice() override {
    return std::make_unique<JournalBusDevice>(inner_->ObtainBusDevice(), recorder_);
  }

 private:
  std::unique_ptr<PrinterPortAdapter> inner_;
  Recorder recorder_;
};

class JournalController : public SmbusController {
 public:
  JournalController(std::unique_ptr<SmbusController> inner, Recorder recorder)
      : inner_(std::move(inner)), recorder_(recorder) {}

  std::string ChipsetReport() override { return inner_->ChipsetReport(); }
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override {
    recorder_.Write(BusOperation::WriteRegister, address, reg, data,
                    [&] { inner_->WriteByteData(address, reg, data); });
  }
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override {
    return recorder_.Read(BusOperation::ReadRegister, address, reg, [&] { return inner_->ReadByteData(address, reg); });
  }
  void SetTargetAddress(std::uint8_t address) override { inner_->SetTargetAddress(address); }

 private:
  std::unique_ptr<SmbusController> inner_;
  Recorder recorder_;
};

class JournalModule : public CommsModule {
 public:
  JournalModule(std::unique_ptr<CommsModule> inner, BusJournal& journal, bool readOnly)
      : inner_(std::move(inner)), journal_(journal), readOnly_(readOnly) {}

  std::unique_ptr<PrinterPortAdapter> ObtainPrinterPortAdapter() override {
    return std::make_unique<JournalAdapter>(inner_->ObtainPrinterPortAdapter(), Recorder(journal_, true, readOnly_));
  }
  std::unique_ptr<SmbusController> ObtainSmbusController() override {
    return std::make_unique<JournalController>(inner_->ObtainSmbusController(), Recorder(journal_, false, readOnly_));
  }
  void SelectMedium(int medium) override { inner_->SelectMedium(medium); }
  BusHost* Host() override { return inner_->Host(); }

 private:
  std::unique_ptr<CommsModule> inner_;
  BusJournal& journal_;
  bool readOnly_;
};

}  // namespace

std::unique_ptr<CommsModule> MakeJournalModule(std::unique_ptr<CommsModule> inner, BusJournal& journal, bool readOnly) {
  return std::make_unique<JournalModule>(std::move(inner), journal, readOnly);
}

}  // namespace krx
