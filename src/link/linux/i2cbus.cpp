// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/i2cbus.h"

#include <fmt/format.h>
#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <cerrno>
#include <filesystem>

#include "link/commserror.h"
#include "link/linux/nodeholder.h"

namespace krx {

namespace {

[[noreturn]] void FailedOpen(int number, const std::string& path) {
  switch (number) {
    case ENOENT:
      throw CommsError(number, fmt::format("{} does not exist: load its driver with \"modprobe i2c-dev\", "
                                           "or choose another bus with --smbus",
                                           path));
    case EACCES:
      throw CommsError(number, fmt::format("no permission for {}: join the group i2c (\"adduser USER i2c\") "
                                           "and log in again",
                                           path));
    case ENXIO:
    case ENODEV:
      throw CommsError(number, fmt::format("no adapter for {}: its driver is not loaded", path));
    default:
      throw CommsError(number, fmt::format("cannot open {} ({})", path, ErrorSymbol(number)));
  }
}

[[noreturn]] void RefusedAddress(int number, const KernelRoots& roots, int bus, std::uint8_t address) {
  if (number != EBUSY) {
    throw CommsError(number, fmt::format("i2c-{} refuses address {:02X}h ({})", bus, address, ErrorSymbol(number)));
  }
  const std::string device = fmt::format("{}-{:04x}", bus, address);
  const std::string link = fmt::format("{}/bus/i2c/devices/{}/driver", roots.Sys, device);
  std::error_code error;
  const std::string driver = std::filesystem::read_symlink(link, error).filename().string();
  throw CommsError(number, fmt::format("address {:02X}h on i2c-{} is in use by the kernel driver {}: unbind it "
                                       "(\"echo {} > {}/unbind\" as root), or use --force",
                                       address, bus, driver.empty() ? "of another device" : driver, device, link));
}

}  // namespace

I2cBus::I2cBus(Kernel& kernel, const KernelRoots& roots, int number, bool force)
    : roots_(roots), number_(number), force_(force), node_(kernel) {}

std::uint8_t I2cBus::Read(std::uint8_t address, std::uint8_t reg) {
  std::uint8_t data = 0;
  Transfer(address, reg, I2C_SMBUS_READ, data);
  return data;
}

void I2cBus::Write(std::uint8_t address, std::uint8_t reg, std::uint8_t data) {
  if (const auto holder = Holder(address, WriteRight::Take)) {
    throw CommsError(EBUSY, fmt::format("the chip at {:02X}h on i2c-{} is in use by {} and can only be read", address,
                                        number_, *holder));
  }
  Transfer(address, reg, I2C_SMBUS_WRITE, data);
}

std::optional<std::string> I2cBus::Holder(std::uint8_t address, WriteRight right) {
  OpenNode();
  if (taken_.contains(address)) return std::nullopt;
  const bool take = right == WriteRight::Take;
  if (const auto process = node_.OtherHolder({address, 1}, take)) return ProcessText(roots_, *process);
  if (take) taken_.insert(address);
  return std::nullopt;
}

void I2cBus::Select(std::uint8_t address) {
  OpenNode();
  // Set before every transfer: a driver may have bound to the address meanwhile, and after a refusal the node keeps the
  // address of the previous transfer.
  const int result = node_.Ioctl(force_ ? I2C_SLAVE_FORCE : I2C_SLAVE, static_cast<unsigned long>(address));
  if (result < 0) RefusedAddress(-result, roots_, number_, address);
}

void I2cBus::Close() {
  node_.Close();
  taken_.clear();
}

void I2cBus::OpenNode() {
  if (node_.IsOpen()) return;
  const std::string path = fmt::format("{}/i2c-{}", roots_.Dev, number_);
  const int opened = node_.Open(path);
  if (opened < 0 && wasRegistered_ && !Registered()) Gone(-opened);
  if (opened < 0) FailedOpen(-opened, path);

  unsigned long functions = 0;  // The kernel stores a long here, regardless of the width of the flags.
  const int asked = node_.Ioctl(I2C_FUNCS, &functions);
  constexpr unsigned long needed = I2C_FUNC_SMBUS_BYTE_DATA;
  if (asked < 0 || (functions & needed) != needed) {
    node_.Close();
    if (asked < 0) throw CommsError(-asked, fmt::format("{} is not an I2C bus ({})", path, ErrorSymbol(-asked)));
    throw CommsError(
        EOPNOTSUPP,
        fmt::format("i2c-{} does not support byte data transfers: choose another bus with --smbus", number_));
  }
  wasRegistered_ = Registered();
}

bool I2cBus::Registered() const {
  std::error_code error;
  return std::filesystem::exists(fmt::format("{}/bus/i2c/devices/i2c-{}", roots_.Sys, number_), error);
}

void I2cBus::Transfer(std::uint8_t address, std::uint8_t reg, std::uint8_t direction, std::uint8_t& data) {
  Select(address);
  i2c_smbus_data bytes{};
  bytes.byte = data;
  i2c_smbus_ioctl_data request{direction, reg, I2C_SMBUS_BYTE_DATA, &bytes};
  const int result = node_.Ioctl(I2C_SMBUS, &request);
  if (result < 0) FailedTransfer(-result, address);
  data = bytes.byte;
}

void I2cBus::FailedTransfer(int error, std::uint8_t address) {
  if (wasRegistered_ && !Registered()) {
    // An unplugged adapter stays registered while its node is open and could not return under its old number.
    Close();
    Gone(error);
  }
  switch (error) {
    case ENXIO:
    case EREMOTEIO:
    case ENODEV:
      throw NoAcknowledge(error, fmt::format("no device answers at {:02X}h", address));
    case EBUSY:
      throw CommsError(error,
                       fmt::format("i2c-{} is in use by the firmware: choose another bus with --smbus", number_));
    case ETIMEDOUT:
      throw CommsError(error,
                       fmt::format("timeout on i2c-{}: a device holds the clock low, or wiring or power is faulty; "
                                   "each transfer can block for up to a second",
                                   number_));
    case EAGAIN:
      throw CommsError(error, fmt::format("arbitration lost on i2c-{}: another master is using the bus", number_));
    default:
      throw CommsError(error,
                       fmt::format("transfer to {:02X}h on i2c-{} failed ({})", address, number_, ErrorSymbol(error)));
  }
}

void I2cBus::Gone(int error) const {
  throw CommsError(error, fmt::format("the adapter of i2c-{} was disconnected: plug it in again", number_));
}

}  // namespace krx
