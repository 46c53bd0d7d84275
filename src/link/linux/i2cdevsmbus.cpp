// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/i2cdevsmbus.h"

#include <cerrno>
#include <utility>

#include "link/commserror.h"
#include "link/linux/i2cadapters.h"

namespace krx {

I2cDevSmbus::I2cDevSmbus(Kernel& kernel, KernelRoots roots, std::optional<int> number, bool force)
    : kernel_(kernel), roots_(std::move(roots)), number_(number), force_(force) {}

std::string I2cDevSmbus::ChipsetReport() {
  return ChipsetReportOf(ChooseAdapter(roots_, number_), number_);
}

void I2cDevSmbus::WriteByteData(std::uint8_t address, std::uint8_t reg, std::uint8_t data) {
  Bus().Write(address, reg, data);
}

std::uint8_t I2cDevSmbus::ReadByteData(std::uint8_t address, std::uint8_t reg) {
  return Bus().Read(address, reg);
}

void I2cDevSmbus::SetTargetAddress(std::uint8_t) {
  for (auto& [number, bus] : buses_) {
    if (number != used_) bus.Close();
  }
}

void I2cDevSmbus::Close() {
  for (auto& [number, bus] : buses_) bus.Close();
}

std::vector<SmbusAdapter> I2cDevSmbus::Adapters() const {
  auto adapters = SearchedAdapters(roots_, number_);
  if (adapters.empty()) {
    throw CommsError(ENODEV, "no SMBus adapter found: load the driver of the PC's SMBus, or choose a bus with --smbus");
  }
  return adapters;
}

I2cBus& I2cDevSmbus::Bus() {
  if (!used_) used_ = Adapters().front().Number;
  return buses_.try_emplace(*used_, kernel_, roots_, *used_, force_).first->second;
}

}  // namespace krx
