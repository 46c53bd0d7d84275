// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulator/simbus.h"

#include "link/commserror.h"

namespace krx {
namespace {

constexpr int noDeviceNumber = 53;
constexpr int badPortNumber = 68;

NoAcknowledge Silence() {
  return NoAcknowledge(noDeviceNumber, "No acknowledge");
}

}  // namespace

void SimBus::Wait(double seconds) {
  if (!(seconds > 0)) return;
  sim_.slowedSeconds_ += seconds;
  if (sim_.options_.Wait) return sim_.options_.Wait(seconds);
  const double end = sim_.Seconds() + seconds;
  while (sim_.Seconds() < end) {
  }
}

template <typename Action>
void SimBus::Perform(Operation op, std::uint8_t address, std::uint8_t reg, std::uint8_t data, Action action) {
  if (IsBusTransfer(op)) Wait(sim_.extraSeconds_);
  Transfer& entry = sim_.trace_.Add({sim_.Seconds(), op, address, reg, data, true});
  sim_.plan_.Check(op, reg);
  action(entry);
  entry.Failed = false;
}

SimChip& SimBus::Find(bool smbus, std::uint8_t port, std::uint8_t address) {
  Simulation::Side& side = smbus ? sim_.smbusSide_ : sim_.boardSide_;
  sim_.Advance(side);
  const bool absent = sim_.absentFrom_ && sim_.Seconds() >= *sim_.absentFrom_;
  for (const auto& unit : side.Units) {
    if (absent || unit->Address != address) continue;
    if (smbus) return unit->Chip;
    if (unit->Port != port || unit->Board == nullptr || !sim_.options_.BoardPresent) continue;
    const bool mode = unit->Board->BusMode;
    if (unit->Modes == BusModes::Both || (unit->Modes == BusModes::TrueOnly) == mode) return unit->Chip;
  }
  throw Silence();
}

std::uint8_t SimBus::ReadChip(bool smbus, std::uint8_t port, std::uint8_t address, std::uint8_t reg) {
  std::uint8_t value = 0;
  Perform(Operation::ReadByteData, address, reg, 0, [&](Transfer& entry) {
    // The delay added by a slow= fault does not count as the reader's time.
    value = Find(smbus, port, address).Read(reg, sim_.Seconds() - sim_.slowedSeconds_);
    if (reg == chip::CompanyId) value = sim_.companyId_.value_or(value);
    entry.Data = value;
  });
  return value;
}

void SimBus::WriteChip(bool smbus, std::uint8_t port, std::uint8_t address, std::uint8_t reg, std::uint8_t data) {
  Perform(Operation::WriteByteData, address, reg, data, [&](Transfer&) {
    SimChip& chip = Find(smbus, port, address);
    const int stuck = sim_.stuckBits_[reg];
    if (stuck == 0xFF) return;
    chip.Write(reg, static_cast<std::uint8_t>((data & ~stuck) | (chip.Peek(reg) & stuck)));
  });
}

SimBoard& SimBus::Board(std::uint8_t port) {
  if (port >= sim_.boards_.size()) throw CommsError(badPortNumber, "Printer port unavailable");
  sim_.Advance(sim_.boardSide_);
  return sim_.boards_[port];
}

std::uint8_t& SimBus::SwitchDevice(std::uint8_t port, std::uint8_t address) {
  std::uint8_t* device = sim_.options_.BoardPresent ? Board(port).Device(address) : nullptr;
  if (device == nullptr) throw Silence();
  return *device;
}

namespace {

/// Counts the objects handed out, so that a test can detect a handle that was not released.
class Handle {
 public:
  explicit Handle(Simulation& simulation) : bus_(simulation) { ++bus_.LiveHandles(); }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  ~Handle() { --bus_.LiveHandles(); }

 protected:
  SimBus bus_;
};

class Device : public BusDevice, private Handle {
 public:
  Device(Simulation& simulation, std::uint8_t port) : Handle(simulation), port_(port) {}

  void SendByte(std::uint8_t address, std::uint8_t data) override {
    bus_.Perform(Operation::SendByte, address, 0, data, [&](Transfer&) { bus_.SwitchDevice(port_, address) = data; });
  }
  std::uint8_t ReceiveByte(std::uint8_t address) override {
    std::uint8_t value = 0;
    bus_.Perform(Operation::ReceiveByte, address, 0, 0,
                 [&](Transfer& entry) { entry.Data = value = bus_.SwitchDevice(port_, address); });
    return value;
  }
  void SetControlByte(std::uint8_t value) override {
    bus_.Perform(Operation::SetControlByte, 0, 0, value, [&](Transfer&) { bus_.Board(port_).SetControlByte(value); });
  }
  std::uint8_t ReadStatusByte() override {
    std::uint8_t value = 0;
    bus_.Perform(Operation::ReadStatusByte, 0, 0, 0,
                 [&](Transfer& entry) { entry.Data = value = bus_.Board(port_).StatusByte(); });
    return value;
  }
  void SetDeviceAddress(std::uint8_t address) override {
    bus_.Perform(Operation::SetDeviceAddress, address, 0, 0, [](Transfer&) {});
  }
  void SetBusMode(bool mode) override {
    bus_.Perform(Operation::SetBusMode, 0, 0, mode ? 1 : 0, [&](Transfer&) { bus_.Board(port_).BusMode = mode; });
  }
  bool GetBusMode() override {
    bool mode = false;
    bus_.Perform(Operation::GetBusMode, 0, 0, 0, [&](Transfer& entry) {
      mode = bus_.Board(port_).BusMode;
      entry.Data = mode ? 1 : 0;
    });
    return mode;
  }
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override {
    return bus_.ReadChip(false, port_, address, reg);
  }
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override {
    bus_.WriteChip(false, port_, address, reg, data);
  }
  void Complete() override {
    bus_.Perform(Operation::Complete, 0, 0, 0, [](Transfer&) {});
  }

 private:
  std::uint8_t port_;
};

class Adapter : public PrinterPortAdapter, private Handle {
 public:
  explicit Adapter(Simulation& simulation) : Handle(simulation), simulation_(simulation) {}

  std::uint8_t PortCount() override {
    bus_.Perform(Operation::PortCount, 0, 0, 0, [&](Transfer& entry) { entry.Data = bus_.Options().Ports; });
    return bus_.Options().Ports;
  }
  void SelectPort(std::uint8_t port) override {
    bus_.Perform(Operation::SelectPort, 0, 0, port, [&](Transfer&) {
      bus_.Board(port);
      bus_.SelectedPort() = port;
    });
  }
  std::int32_t CurrentPort() override {
    bus_.Perform(Operation::CurrentPort, 0, 0, 0, [&](Transfer& entry) { entry.Data = bus_.SelectedPort(); });
    return bus_.SelectedPort();
  }
  std::unique_ptr<BusDevice> ObtainBusDevice() override {
    bus_.Perform(Operation::ObtainBusDevice, 0, 0, 0, [&](Transfer&) { bus_.Board(bus_.SelectedPort()); });
    return std::make_unique<Device>(simulation_, bus_.SelectedPort());
  }

 private:
  Simulation& simulation_;
};

class Controller : public SmbusController, private Handle {
 public:
  explicit Controller(Simulation& simulation) : Handle(simulation) {}

  std::string ChipsetReport() override {
    bus_.Perform(Operation::ChipsetReport, 0, 0, 0, [](Transfer&) {});
    return bus_.Options().ChipsetReport;
  }
  void WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) override {
    bus_.WriteChip(true, 0, address, reg, data);
  }
  std::uint8_t ReadByteData(std::uint8_t address, std::uint8_t reg) override {
    return bus_.ReadChip(true, 0, address, reg);
  }
  void SetTargetAddress(std::uint8_t address) override {
    bus_.Perform(Operation::SetTargetAddress, address, 0, 0, [](Transfer&) {});
  }
};

class Module : public CommsModule {
 public:
  explicit Module(Simulation& simulation) : simulation_(simulation), bus_(simulation) {}

  std::unique_ptr<PrinterPortAdapter> ObtainPrinterPortAdapter() override {
    bus_.Perform(Operation::ObtainPrinterPortAdapter, 0, 0, 0, [](Transfer&) {});
    return std::make_unique<Adapter>(simulation_);
  }
  std::unique_ptr<SmbusController> ObtainSmbusController() override {
    bus_.Perform(Operation::ObtainSmbusController, 0, 0, 0, [](Transfer&) {});
    return std::make_unique<Controller>(simulation_);
  }
  void SelectMedium(int medium) override {
    bus_.Perform(Operation::SelectMedium, 0, 0, static_cast<std::uint8_t>(medium), [](Transfer&) {});
  }

 private:
  Simulation& simulation_;
  SimBus bus_;
};

}  // namespace

std::unique_ptr<CommsModule> MakeSimBus(Simulation& simulation) {
  return std::make_unique<Module>(simulation);
}

}  // namespace krx
