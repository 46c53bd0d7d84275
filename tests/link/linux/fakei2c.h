// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <linux/i2c-dev.h>
#include <linux/i2c.h>

#include <set>

#include "fakekernel.h"
#include "link/commsmodule.h"

namespace krx {

/// An SMBus adapter as the kernel shows it, with the devices of `Chips` behind it.
struct FakeI2cAdapter {
  std::unique_ptr<SmbusController> Chips;
  unsigned long Functions = I2C_FUNC_SMBUS_BYTE_DATA | I2C_FUNC_SMBUS_QUICK | I2C_FUNC_SMBUS_BYTE;
  int FunctionsError = 0;
  std::set<unsigned long> BusyAddresses = {};  ///< those that a kernel driver holds
  int TransferError = 0;                       ///< what every transfer answers; 0: as the devices do
  int Transfers = 0;
};

class FakeI2cFile : public FakeFile {
 public:
  explicit FakeI2cFile(FakeI2cAdapter& adapter) : adapter_(adapter) {}

  int Ioctl(unsigned long request, unsigned long argument) override {
    switch (request) {
      case I2C_FUNCS:
        if (adapter_.FunctionsError != 0) return -adapter_.FunctionsError;
        *reinterpret_cast<unsigned long*>(argument) = adapter_.Functions;
        return 0;
      case I2C_SLAVE:
      case I2C_SLAVE_FORCE:
        if (argument > 0x7F) return -EINVAL;
        if (request == I2C_SLAVE && adapter_.BusyAddresses.contains(argument)) return -EBUSY;
        address_ = static_cast<std::uint8_t>(argument);
        return 0;
      case I2C_SMBUS:
        return Transfer(*reinterpret_cast<i2c_smbus_ioctl_data*>(argument));
      default:
        return -ENOTTY;
    }
  }

 private:
  int Transfer(const i2c_smbus_ioctl_data& request) {
    ++adapter_.Transfers;
    if (adapter_.TransferError != 0) return -adapter_.TransferError;
    try {
      // By the first two, programs look which addresses answer.
      const bool asks = request.size == I2C_SMBUS_QUICK || request.size == I2C_SMBUS_BYTE;
      if (!asks && request.size != I2C_SMBUS_BYTE_DATA) return -EOPNOTSUPP;
      if (!asks && request.read_write == I2C_SMBUS_WRITE) {
        adapter_.Chips->WriteByteData(address_, request.command, request.data->byte);
        return 0;
      }
      const std::uint8_t value = adapter_.Chips->ReadByteData(address_, asks ? 0x3E : request.command);
      if (!asks) request.data->byte = value;
      return 0;
    } catch (const NoAcknowledge&) {
      return -ENXIO;
    } catch (const CommsError&) {
      return -EIO;
    }
  }

  FakeI2cAdapter& adapter_;
  std::uint8_t address_ = 0;
};

}  // namespace krx
