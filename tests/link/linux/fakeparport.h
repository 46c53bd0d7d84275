// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <optional>
#include <set>

#include "bitslave.h"
#include "fakekernel.h"
#include "link/commserror.h"
#include "link/commsmodule.h"

namespace krx {

/// Turns the bytes of a transaction into operations of a bus-access library: the board behind a fake port.
class BoardDevice : public ByteDevice {
 public:
  explicit BoardDevice(std::unique_ptr<BusDevice> board) : Board(std::move(board)) {}
  std::unique_ptr<BusDevice> Board;

  bool Address(std::uint8_t byte) override {
    address_ = byte & 0xFE;
    if ((byte & 1) != 0) {
      const auto value = written_.empty() ? Try([&] { return Board->ReceiveByte(address_); })
                                          : Try([&] { return Board->ReadByteData(address_, written_.front()); });
      reply_ = value.value_or(0xFF);
      written_.clear();
      return value.has_value();
    }
    return Try([&] { return Board->ReceiveByte(address_); }) ||
           Try([&] { return Board->ReadByteData(address_, 0x3E); });
  }
  bool Write(std::uint8_t byte) override {
    written_.push_back(byte);
    return written_.size() <= 2;
  }
  std::uint8_t Read() override { return reply_; }
  void Stop() override {
    if (written_.size() == 1) Board->SendByte(address_, written_[0]);
    if (written_.size() == 2) Board->WriteByteData(address_, written_[0], written_[1]);
    written_.clear();
  }

 private:
  template <typename Operation>
  static std::optional<std::uint8_t> Try(Operation operation) {
    try {
      return operation();
    } catch (const CommsError&) {
      return std::nullopt;
    }
  }

  std::uint8_t address_ = 0, reply_ = 0;
  std::vector<std::uint8_t> written_;
};

/// A pin of the fake port's cable: register 'd', 's' or 'c', bit, and whether a set bit is a low line.
struct FakePin {
  char Register;
  int Bit;
  bool Inverted;
};

struct FakeCable {
  FakePin SdaOut{'d', 7, true}, SclOut{'d', 6, true}, SdaIn{'s', 7, true}, SclIn{'s', 6, false};
  std::array<FakePin, 2> HeaterOut{FakePin{'d', 4, false}, {'d', 5, false}};
  std::array<FakePin, 2> HeaterIn{FakePin{'s', 4, false}, {'s', 5, false}};
};

/// A printer port as the kernel shows it, with a device on its pins.
struct FakeParport {
  FakeParport(BitSlave& slave, const FakeCable& cable = {}) : Slave(slave), Cable(cable) {}

  BitSlave& Slave;
  FakeCable Cable;
  std::function<void(std::uint8_t)> OnHeaters;  ///< bits 4 and 5, when one changed
  std::uint8_t Data = 0x0F, Control = 0x0C;
  std::uint8_t Heaters = 0;
  bool OtherActive = false;  ///< another driver holds it
  bool Gone = false;         ///< the port was pulled out
  std::set<const void*> Registered;
  const void* Exclusive = nullptr;
  const void* Holder = nullptr;

  bool Output(const FakePin& pin) const {
    return (((pin.Register == 'd' ? Data : Control) >> pin.Bit & 1) != 0) != pin.Inverted;
  }
  void Apply() {
    Slave.Master(Output(Cable.SdaOut), Output(Cable.SclOut));
    const auto heaters =
        static_cast<std::uint8_t>((Output(Cable.HeaterOut[0]) ? 0x10 : 0) | (Output(Cable.HeaterOut[1]) ? 0x20 : 0));
    if (heaters == Heaters) return;
    Heaters = heaters;
    if (OnHeaters) OnHeaters(heaters);
  }
  std::uint8_t Status() {
    unsigned value = 0;
    const auto put = [&](const FakePin& pin, bool high) {
      if (pin.Register == 's' && high != pin.Inverted) value |= 1U << pin.Bit;
    };
    put(Cable.SdaIn, Slave.Sda());
    put(Cable.SclIn, Slave.Scl());
    put(Cable.HeaterIn[0], (Heaters & 0x10) != 0);
    put(Cable.HeaterIn[1], (Heaters & 0x20) != 0);
    return static_cast<std::uint8_t>(value);
  }
};

class FakeParportFile : public FakeFile {
 public:
  explicit FakeParportFile(FakeParport& port) : port_(port) {}
  ~FakeParportFile() override {
    if (port_.Holder == this) port_.Holder = nullptr;
    if (port_.Exclusive == this) port_.Exclusive = nullptr;
    port_.Registered.erase(this);
  }

  int Ioctl(unsigned long request, unsigned long argument) override {
    if (port_.Gone) return -ENODEV;
    auto* const value = reinterpret_cast<std::uint8_t*>(argument);
    if (request == PPEXCL) return exclusive_ = true, 0;
    if (request == PPCLAIM) return Claim();
    if (port_.Holder != this) return -EINVAL;
    switch (request) {
      case PPRELEASE:
        if (!port_.Slave.Sda() || !port_.Slave.Scl()) port_.Slave.Violations.push_back("released with a line low");
        port_.Holder = nullptr;
        return 0;
      case PPRDATA:
        return *value = port_.Data, 0;
      case PPRSTATUS:
        return *value = port_.Status(), 0;
      case PPRCONTROL:
        return *value = port_.Control, 0;
      case PPWDATA:
        return port_.Data = *value, port_.Apply(), 0;
      case PPWCONTROL:
        return port_.Control = *value & 0x0F, port_.Apply(), 0;
      default:
        return -EINVAL;
    }
  }

 private:
  int Claim() {
    if (port_.Holder == this) return -EINVAL;
    if (!port_.Registered.contains(this)) {
      if (port_.Exclusive != nullptr || (exclusive_ && !port_.Registered.empty())) {
        return -ENXIO;
      }
      port_.Registered.insert(this);
      if (exclusive_) port_.Exclusive = this;
    }
    // As the kernel does: until the other one lets go, or a signal comes.
    if (port_.Holder != nullptr || port_.OtherActive) return ::pause(), -EINTR;
    port_.Holder = this;
    return 0;
  }

  FakeParport& port_;
  bool exclusive_ = false;
};

}  // namespace krx
