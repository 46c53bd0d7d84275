// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/parportboard.h"

#include <fmt/format.h>

#include <array>
#include <cerrno>
#include <utility>

#include "link/commserror.h"
#include "link/commsmodule.h"

namespace krx {

namespace {

struct HeaterLines {
  std::uint8_t Mask;  ///< in control byte and status byte
  std::optional<PortLine> PortLines::*Out;
  std::optional<PortLine> PortLines::*In;
};

constexpr std::array heaters{HeaterLines{heaterMasks[0], &PortLines::Heater1Out, &PortLines::Heater1In},
                             HeaterLines{heaterMasks[1], &PortLines::Heater2Out, &PortLines::Heater2In}};

/// Releases the port however the transaction ends.
class Claimed {
 public:
  explicit Claimed(ParportNode& node) : node_(node) { node_.Claim(); }
  ~Claimed() { node_.Release(); }
  Claimed(const Claimed&) = delete;
  Claimed& operator=(const Claimed&) = delete;

 private:
  ParportNode& node_;
};

}  // namespace

ParportBoard::ParportBoard(Kernel& kernel, Clock& clock, KernelRoots roots, const PortWiring& wiring,
                           std::optional<int> port)
    : clock_(clock), roots_(std::move(roots)), wiring_(wiring), onlyPort_(port), node_(kernel, roots_) {}

std::vector<int> ParportBoard::Ports() const {
  if (onlyPort_) return {*onlyPort_};
  return ListPrinterPorts(roots_);
}

std::uint8_t ParportBoard::PortCount() const {
  return static_cast<std::uint8_t>(Ports().size());
}

void ParportBoard::SelectPort(std::uint8_t port) {
  if (port >= PortCount()) throw CommsError(ENODEV, fmt::format("printer port {} does not exist", port));
  if (port == selected_) return;
  Close();
  selected_ = port;
  if (control_) control_ = 0;
  used_ = false;
}

void ParportBoard::SendByte(std::uint8_t address, std::uint8_t data) {
  Transaction(Purpose::Write, [&](LineDriver&, TwoWireMaster& bus) { bus.Send(address, std::array{data}); });
}

std::uint8_t ParportBoard::ReceiveByte(std::uint8_t address) {
  std::uint8_t data = 0;
  Transaction(Purpose::Read, [&](LineDriver&, TwoWireMaster& bus) { data = bus.Receive(address); });
  return data;
}

std::uint8_t ParportBoard::ReadByteData(std::uint8_t address, std::uint8_t reg) {
  std::uint8_t data = 0;
  Transaction(Purpose::Read, [&](LineDriver&, TwoWireMaster& bus) { data = bus.ReadRegister(address, reg); });
  return data;
}

void ParportBoard::WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) {
  Transaction(Purpose::Write, [&](LineDriver&, TwoWireMaster& bus) { bus.Send(address, std::array{reg, data}); });
}

void ParportBoard::SetControlByte(std::uint8_t value) {
  const std::uint8_t before = control_.value_or(0);
  control_ = value;
  if (!used_ && value == 0) return;
  try {
    Transaction(Purpose::Write, [](LineDriver&, TwoWireMaster&) {});
  } catch (const CommsError&) {
    // The next transaction must not switch on a heater whose switching was reported as failed.
    control_ = value & before;
    throw;
  }
}

std::uint8_t ParportBoard::ReadStatusByte() {
  unsigned status = 0;
  Transaction(Purpose::Read, [&](LineDriver& driver, TwoWireMaster&) {
    for (const HeaterLines& heater : heaters) {
      const auto& line = Lines().*heater.In;
      const bool on = line ? driver.Get(*line) : (control_.value_or(0) & heater.Mask) != 0;
      if (on) status |= heater.Mask;
    }
  });
  return static_cast<std::uint8_t>(status);
}

std::optional<std::string> ParportBoard::Holder(WriteRight right) {
  OpenSelected();
  return node_.Holder(right);
}

int ParportBoard::PortNumber(int port) const {
  const auto ports = Ports();
  return port >= 0 && port < static_cast<int>(ports.size()) ? ports[static_cast<std::size_t>(port)] : -1;
}

void ParportBoard::OpenSelected() {
  const int number = PortNumber(selected_);
  if (number < 0) throw CommsError(ENODEV, "no printer port found, or it was disconnected");
  node_.Open(number);
}

void ParportBoard::Transaction(Purpose purpose, const Work& work) {
  OpenSelected();
  const bool writes = purpose == Purpose::Write;
  const auto holder = writes || control_ ? node_.Holder(WriteRight::Take) : std::nullopt;
  if (writes && holder) {
    throw CommsError(EBUSY, fmt::format("the board on printer port {} is in use by {} and can only be read",
                                        PortNumber(selected_), *holder));
  }
  const Claimed claimed(node_);
  used_ = true;
  LineDriver driver(node_);
  TwoWireMaster bus(driver, Lines(), clock_);
  // Another program may have left different levels on the heater lines.
  for (const HeaterLines& heater : heaters) {
    const auto& line = Lines().*heater.Out;
    if (line && control_ && !holder) driver.Set(*line, (*control_ & heater.Mask) != 0);
  }
  work(driver, bus);
}

}  // namespace krx
