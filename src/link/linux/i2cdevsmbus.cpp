// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/i2cdevsmbus.h"

#include <cerrno>
#include <exception>
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
  OnBusOf(address, [&](I2cBus& bus) { bus.Write(address, reg, data); });
}

std::uint8_t I2cDevSmbus::ReadByteData(std::uint8_t address, std::uint8_t reg) {
  std::uint8_t data = 0;
  OnBusOf(address, [&](I2cBus& bus) { data = bus.Read(address, reg); });
  return data;
}

void I2cDevSmbus::SetTargetAddress(std::uint8_t address) {
  const auto chosen = busOf_.find(address);
  if (number_ || chosen == busOf_.end()) return;
  for (auto& [number, bus] : buses_) {
    if (number != chosen->second) bus.Close();
  }
}

void I2cDevSmbus::Close() {
  for (auto& [number, bus] : buses_) bus.Close();
}

I2cBus& I2cDevSmbus::Bus(int number) {
  return buses_.try_emplace(number, kernel_, roots_, number, force_).first->second;
}

void I2cDevSmbus::OnBusOf(std::uint8_t address, const Work& work) {
  if (number_) return work(Bus(*number_));
  if (const auto known = busOf_.find(address); known != busOf_.end()) return work(Bus(known->second));

  std::exception_ptr silence, failure;
  for (const I2cAdapter& adapter : ListI2cAdapters(roots_)) {
    if (!IsHostSmbus(adapter)) continue;
    try {
      work(Bus(adapter.Number));
      busOf_[address] = adapter.Number;
      return;
    } catch (const NoAcknowledge&) {
      silence = std::current_exception();
    } catch (const CommsError&) {
      if (!failure) failure = std::current_exception();
    }
  }
  // A bus that could not be asked says more than one on which nobody answered.
  if (failure) std::rethrow_exception(failure);
  if (silence) std::rethrow_exception(silence);
  throw CommsError(ENODEV,
                   "no SMBus adapter is registered: load the driver of the PC's SMBus, or choose a bus with --smbus");
}

}  // namespace krx
