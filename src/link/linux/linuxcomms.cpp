// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/linuxcomms.h"

#include <fmt/format.h>

#include <cerrno>
#include <vector>

#include "link/commserror.h"
#include "link/linux/i2cadapters.h"
#include "link/linux/i2cdevsmbus.h"
#include "link/linux/parportboard.h"

namespace krx {

namespace {

constexpr const char* leftAlone = "SMBus not used: only a printer port was selected";

class SmbusHandle : public SmbusController {
 public:
  SmbusHandle(I2cDevSmbus& bus, bool used) : bus_(bus), used_(used) {}
  std::string ChipsetReport() override { return used_ ? bus_.ChipsetReport() : leftAlone; }
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override {
    bus_.WriteByteData(address, reg, data);
  }
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override { return bus_.ReadByteData(address, reg); }
  void SetTargetAddress(std::uint8_t address) override { bus_.SetTargetAddress(address); }

 private:
  I2cDevSmbus& bus_;
  bool used_;
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
  AdapterHandle(ParportBoard& board, bool used) : board_(board), used_(used) {}
  std::uint8_t PortCount() override { return used_ ? board_.PortCount() : std::uint8_t{0}; }
  void SelectPort(std::uint8_t port) override { board_.SelectPort(port); }
  std::int32_t CurrentPort() override { return board_.CurrentPort(); }
  std::unique_ptr<BusDevice> ObtainBusDevice() override { return std::make_unique<BoardHandle>(board_); }

 private:
  ParportBoard& board_;
  bool used_;
};

class RealLinuxComms : private RealKernel, public LinuxComms {
 public:
  RealLinuxComms(const LinuxOptions& options, Clock& clock) : LinuxComms(options, *this, clock) {}
};

}  // namespace

struct LinuxComms::Buses {
  I2cDevSmbus Smbus;
  ParportBoard Board;
  bool UsesSmbus, UsesPrinterPorts;
};

LinuxComms::LinuxComms(const LinuxOptions& options, Kernel& kernel, Clock& clock)
    : buses_(new Buses{{kernel, options.Roots, options.Smbus, options.Force},
                       {kernel, clock, options.Roots, options.Wiring, options.PrinterPort},
                       options.UsesSmbus(),
                       options.UsesPrinterPorts()}) {}

LinuxComms::~LinuxComms() = default;

std::unique_ptr<PrinterPortAdapter> LinuxComms::ObtainPrinterPortAdapter() {
  return std::make_unique<AdapterHandle>(buses_->Board, buses_->UsesPrinterPorts);
}

std::unique_ptr<SmbusController> LinuxComms::ObtainSmbusController() {
  return std::make_unique<SmbusHandle>(buses_->Smbus, buses_->UsesSmbus);
}

void LinuxComms::SelectMedium(int medium) {
  if (medium == 1) {
    buses_->Smbus.Close();
  } else {
    buses_->Board.Close();
  }
}

std::vector<SmbusAdapter> LinuxComms::SmbusAdapters() {
  if (!buses_->UsesSmbus) throw CommsError(ENODEV, leftAlone);
  return buses_->Smbus.Adapters();
}

void LinuxComms::UseSmbusAdapter(int number) {
  buses_->Smbus.Use(number);
}

int LinuxComms::PortNumber(int port) {
  return buses_->Board.PortNumber(port);
}

std::optional<std::string> LinuxComms::SmbusHolder(std::uint8_t address, WriteRight right) {
  return buses_->Smbus.Holder(address, right);
}

std::optional<std::string> LinuxComms::PortHolder(WriteRight right) {
  return buses_->Board.Holder(right);
}

std::unique_ptr<CommsModule> MakeLinuxComms(const LinuxOptions& options, Clock& clock) {
  return std::make_unique<RealLinuxComms>(options, clock);
}

std::optional<std::string> FindLinuxBus(const LinuxOptions& options) {
  std::vector<std::string> found;
  if (options.UsesSmbus()) {
    for (const SmbusAdapter& adapter : SearchedAdapters(options.Roots, options.Smbus)) found.push_back(adapter.Label);
  }
  if (options.UsesPrinterPorts()) {
    const auto ports = options.PrinterPort ? std::vector{*options.PrinterPort} : ListPrinterPorts(options.Roots);
    for (const int port : ports) found.push_back(fmt::format("printer port {}", port));
  }
  if (found.empty()) return std::nullopt;
  return fmt::format("{}", fmt::join(found, " and "));
}

}  // namespace krx
