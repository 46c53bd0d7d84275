// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/linuxcomms.h"

#include <fmt/format.h>

#include <vector>

#include "link/linux/i2cadapters.h"
#include "link/linux/i2cdevsmbus.h"
#include "link/linux/parportboard.h"

namespace krx {

namespace {

class SmbusHandle : public SmbusController {
 public:
  explicit SmbusHandle(I2cDevSmbus& bus) : bus_(bus) {}
  std::string ChipsetReport() override { return bus_.ChipsetReport(); }
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override {
    bus_.WriteByteData(address, reg, data);
  }
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override { return bus_.ReadByteData(address, reg); }
  void SetTargetAddress(std::uint8_t address) override { bus_.SetTargetAddress(address); }

 private:
  I2cDevSmbus& bus_;
};

class BoardHandle : public BusDevice {
 public:
  explicit BoardHandle(ParportBoard& board) : board_(board) {}
  void SendByte(std::uint8_t address, std::uint8_t data) override { board_.SendByte(address, data); }
  std::uint8_t ReceiveByte(std::uint8_t address) override { return board_.ReceiveByte(address); }
  void SetControlByte(std::uint8_t value) override { board_.SetControlByte(value); }
  std::uint8_t ReadStatusByte() override { return board_.ReadStatusByte(); }
  void SetDeviceAddress(std::uint8_t) override {}  // every operation names its address
  void SetBusMode(bool mode) override { board_.SetBusMode(mode); }
  bool GetBusMode() override { return board_.GetBusMode(); }
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override {
    return board_.ReadByteData(address, reg);
  }
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override {
    board_.WriteByteData(address, reg, data);
  }
  void Complete() override {}  // a control byte is on the lines when SetControlByte returns

 private:
  ParportBoard& board_;
};

class AdapterHandle : public PrinterPortAdapter {
 public:
  explicit AdapterHandle(ParportBoard& board) : board_(board) {}
  std::uint8_t PortCount() override { return board_.PortCount(); }
  void SelectPort(std::uint8_t port) override { board_.SelectPort(port); }
  std::int32_t CurrentPort() override { return board_.CurrentPort(); }
  std::unique_ptr<BusDevice> ObtainBusDevice() override { return std::make_unique<BoardHandle>(board_); }

 private:
  ParportBoard& board_;
};

class RealLinuxComms : private RealKernel, public LinuxComms {
 public:
  RealLinuxComms(const LinuxOptions& options, Clock& clock) : LinuxComms(options, *this, clock) {}
};

}  // namespace

struct LinuxComms::Buses {
  I2cDevSmbus Smbus;
  ParportBoard Board;
};

LinuxComms::LinuxComms(const LinuxOptions& options, Kernel& kernel, Clock& clock)
    : buses_(new Buses{{kernel, options.Roots, options.Smbus, options.Force},
                       {kernel, clock, options.Roots, options.Wiring, options.PrinterPort}}) {}

LinuxComms::~LinuxComms() = default;

std::unique_ptr<PrinterPortAdapter> LinuxComms::ObtainPrinterPortAdapter() {
  return std::make_unique<AdapterHandle>(buses_->Board);
}

std::unique_ptr<SmbusController> LinuxComms::ObtainSmbusController() {
  return std::make_unique<SmbusHandle>(buses_->Smbus);
}

void LinuxComms::SelectMedium(int medium) {
  if (medium == 1) {
    buses_->Smbus.Close();
  } else {
    buses_->Board.Close();
  }
}

std::unique_ptr<CommsModule> MakeLinuxComms(const LinuxOptions& options, Clock& clock) {
  return std::make_unique<RealLinuxComms>(options, clock);
}

std::optional<std::string> FindLinuxBus(const LinuxOptions& options) {
  std::vector<std::string> found;
  for (const I2cAdapter& adapter : ListI2cAdapters(options.Roots)) {
    const bool wanted = options.Smbus ? adapter.Number == *options.Smbus : IsHostSmbus(adapter);
    if (wanted) found.push_back(fmt::format("{}, i2c-{}", adapter.Name, adapter.Number));
  }
  if (found.empty() && options.Smbus) found.push_back(fmt::format("i2c-{}", *options.Smbus));
  const auto ports = options.PrinterPort ? std::vector{*options.PrinterPort} : ListPrinterPorts(options.Roots);
  for (const int port : ports) found.push_back(fmt::format("printer port {}", port));
  if (found.empty()) return std::nullopt;
  return fmt::format("{}", fmt::join(found, " and "));
}

}  // namespace krx
