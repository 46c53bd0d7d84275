// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fmt/format.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <functional>
#include <optional>
#include <vector>

#include "fakekernel.h"
#include "link/commsmodule.h"
#include "link/linux/portwiring.h"

namespace krx {

/// Turns the bytes of a transaction into operations of a bus-access library: the board behind a fake port. True
/// acknowledges a byte.
class BoardDevice {
 public:
  explicit BoardDevice(std::unique_ptr<BusDevice> board) : Board(std::move(board)) {}
  std::unique_ptr<BusDevice> Board;
  int Refused = -1;  ///< a byte that is not acknowledged

  bool Address(std::uint8_t byte) {
    address_ = byte & 0xFE;
    const auto reg = written_.empty() ? std::uint8_t{0x3E} : written_.front();
    written_.clear();
    try {
      reply_ = address_ < 0x90 ? Board->ReadByteData(address_, reg) : Board->ReceiveByte(address_);  // switch devices
    } catch (const CommsError&) {
      return false;
    }
    return true;
  }
  bool Write(std::uint8_t byte) {
    if (byte != Refused) written_.push_back(byte);
    return written_.size() <= 2 && byte != Refused;
  }
  std::uint8_t Read() { return reply_; }
  void Stop() {
    if (written_.size() == 1) Board->SendByte(address_, written_[0]);
    if (written_.size() == 2) Board->WriteByteData(address_, written_[0], written_[1]);
    written_.clear();
  }

 private:
  std::uint8_t address_ = 0, reply_ = 0;
  std::vector<std::uint8_t> written_;
};

/// A device on a two-wire bus that only sees levels: it finds starts and stops, samples with the clock high, drives
/// with the clock low, and notes what no master may do.
class BitSlave {
 public:
  explicit BitSlave(BoardDevice& device, std::function<double()> seconds)
      : device_(device), seconds_(std::move(seconds)) {}

  std::string Violations;
  std::string Seen;                ///< "S", "Sr" and "P" for the conditions, bytes as numbers with "+" or "-"
  double StretchSeconds = 0;       ///< holds the clock low for this time after every byte
  std::vector<double> ClockRises;  ///< when the clock went up

  /// The line levels driven by the master.
  void Master(bool sda, bool scl) {
    if (sda == master_.Sda && scl == master_.Scl) return;
    if (sda != master_.Sda && scl != master_.Scl) Violations += "both lines changed at once; ";
    // Only the data line may change immediately, with the clock low.
    const bool waits = started_ ? scl || scl != master_.Scl : scl && !sda;
    if (waits && seconds_() - lastChange_ < 4.7e-6) Violations += "too fast; ";
    lastChange_ = seconds_();
    master_ = {sda, scl};
    Settle();
  }
  bool Sda() { return Settle(), bus_.Sda; }
  bool Scl() { return Settle(), bus_.Scl; }

  /// A master was interrupted while the device was sending a byte with `zeros` low bits left.
  void HangInByte(int zeros) {
    phase_ = Phase::Send;
    count_ = 8 - zeros;
    shift_ = 0;
    drive_ = bus_.Sda = false;  // it went low in the past, with the clock low: no start
  }

 private:
  struct Levels {
    bool Sda = true, Scl = true;
  };
  enum class Phase { Idle, Receive, Send };

  void Settle() {
    for (;;) {
      const Levels old = bus_;
      bus_ = {master_.Sda && drive_, master_.Scl && seconds_() >= stretchEnd_};
      if (bus_.Sda == old.Sda && bus_.Scl == old.Scl) return;
      if (old.Scl && bus_.Scl) {
        Condition(bus_.Sda);
      } else if (bus_.Scl) {
        ClockRises.push_back(seconds_());
        sample_ = bus_.Sda;
      } else if (old.Scl && sample_) {
        Bit(*std::exchange(sample_, std::nullopt));
      }
    }
  }

  void Condition(bool stop) {
    if (started_ && count_ != 0) Violations += stop ? "stop inside a byte; " : "start inside a byte; ";
    Seen += stop ? "P " : started_ ? "Sr " : "S ";
    sample_.reset();
    drive_ = true;
    count_ = 0;
    started_ = addressed_ = !stop;
    phase_ = stop ? Phase::Idle : Phase::Receive;
    if (stop) device_.Stop();
  }

  /// End of a clock: eight clocks carry a byte, the ninth its acknowledge.
  void Bit(bool value) {
    if (phase_ == Phase::Idle) return;
    drive_ = true;
    if (count_ == 8) return Acknowledged(!value);
    if (phase_ == Phase::Receive) shift_ = static_cast<std::uint8_t>(shift_ << 1 | (value ? 1 : 0));
    if (++count_ < 8) return DriveNext();
    if (phase_ == Phase::Send) return;
    drive_ = !(addressed_ ? device_.Address(shift_) : device_.Write(shift_));
    stretchEnd_ = seconds_() + StretchSeconds;
  }

  void Acknowledged(bool by) {
    Seen += fmt::format("{:02X}{} ", shift_, by ? '+' : '-');
    count_ = 0;
    if (!by) {
      phase_ = Phase::Idle;
      return;
    }
    if (addressed_ && (shift_ & 1) != 0) phase_ = Phase::Send;
    addressed_ = false;
    if (phase_ == Phase::Send) shift_ = device_.Read();
    DriveNext();
  }

  void DriveNext() { drive_ = phase_ != Phase::Send || (shift_ >> (7 - count_) & 1) != 0; }

  BoardDevice& device_;
  std::function<double()> seconds_;
  Levels master_, bus_;
  bool drive_ = true;  ///< false: this device pulls the data line low
  double stretchEnd_ = 0, lastChange_ = 0;
  std::optional<bool> sample_;
  Phase phase_ = Phase::Idle;
  bool started_ = false, addressed_ = false;  ///< addressed_: the next byte is an address
  int count_ = 0;
  std::uint8_t shift_ = 0;
};

inline constexpr PortLines usualCable{{PortRegister::Data, 7, true},     {PortRegister::Data, 6, true},
                                      {PortRegister::Status, 7, true},   PortLine{PortRegister::Status, 6, false},
                                      PortLine{PortRegister::Data, 4},   PortLine{PortRegister::Data, 5},
                                      PortLine{PortRegister::Status, 4}, PortLine{PortRegister::Status, 5}};

/// A printer port as presented by the kernel, with the board on its pins.
struct FakeParport {
  FakeParport(std::unique_ptr<BusDevice> board, std::function<double()> seconds, const PortLines& cable = usualCable)
      : Device(std::move(board)), Slave(Device, std::move(seconds)), Cable(cable) {}

  BoardDevice Device;
  BitSlave Slave;
  PortLines Cable;
  std::function<void(std::uint8_t)> OnHeaters;  ///< bits 4 and 5, when one changed
  std::uint8_t Data = 0x0F, Control = 0x0C;
  std::uint8_t Heaters = 0;
  bool OtherActive = false;         ///< another driver holds it
  bool Gone = false;                ///< the port was unplugged
  const void* Exclusive = nullptr;  ///< the holder of exclusive access
  const void* Holder = nullptr;

  bool Output(const std::optional<PortLine>& line) const {
    return line && ((line->Register == PortRegister::Data ? Data : Control) >> line->Bit & 1) != line->Inverted;
  }
  void Apply() {
    Slave.Master(Output(Cable.SdaOut), Output(Cable.SclOut));
    const int heaters = (Output(Cable.Heater1Out) ? 0x10 : 0) | (Output(Cable.Heater2Out) ? 0x20 : 0);
    if (heaters == Heaters) return;
    Heaters = static_cast<std::uint8_t>(heaters);
    if (OnHeaters) OnHeaters(Heaters);
  }
  std::uint8_t Status() {
    unsigned value = 0;
    const auto put = [&](const std::optional<PortLine>& line, bool high) {
      if (line && high != line->Inverted) value |= 1U << line->Bit;
    };
    put(Cable.SdaIn, Slave.Sda());
    put(Cable.SclIn, Slave.Scl());
    put(Cable.Heater1In, (Heaters & 0x10) != 0);
    put(Cable.Heater2In, (Heaters & 0x20) != 0);
    return static_cast<std::uint8_t>(value);
  }
};

class FakeParportFile : public FakeFile {
 public:
  explicit FakeParportFile(FakeParport& port) : port_(port) {}
  ~FakeParportFile() override {
    if (port_.Holder == this) port_.Holder = nullptr;
    if (port_.Exclusive == this) port_.Exclusive = nullptr;
  }

  int Ioctl(unsigned long request, unsigned long argument) override {
    if (port_.Gone) return -ENODEV;
    auto* const value = reinterpret_cast<std::uint8_t*>(argument);
    if (request == PPEXCL) return port_.Exclusive = this, 0;
    if (request == PPCLAIM) return Claim();
    if (port_.Holder != this) return -EINVAL;
    if (request == PPRDATA) return *value = port_.Data, 0;
    if (request == PPRSTATUS) return *value = port_.Status(), 0;
    if (request == PPRCONTROL) return *value = port_.Control, 0;
    if (request == PPWDATA) return port_.Data = *value, port_.Apply(), 0;
    if (request == PPWCONTROL) return port_.Control = *value & 0x0F, port_.Apply(), 0;
    if (request != PPRELEASE) return -EINVAL;
    if (!port_.Slave.Sda() || !port_.Slave.Scl()) port_.Slave.Violations += "released with a line low; ";
    port_.Holder = nullptr;
    return 0;
  }

 private:
  int Claim() {
    if (port_.Holder == this) return -EINVAL;
    if (port_.Exclusive != nullptr && port_.Exclusive != this) return -ENXIO;
    // Like the kernel: until the other program releases it, or a signal arrives.
    if (port_.Holder != nullptr || port_.OtherActive) return ::pause(), -EINTR;
    port_.Holder = this;
    return 0;
  }

  FakeParport& port_;
};

}  // namespace krx
