// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fmt/format.h>

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace krx {

/// What a bit-level device does with whole bytes; true acknowledges.
class ByteDevice {
 public:
  virtual ~ByteDevice() = default;
  virtual bool Address(std::uint8_t byte) = 0;
  virtual bool Write(std::uint8_t byte) = 0;
  virtual std::uint8_t Read() = 0;
  virtual void Stop() = 0;
};

/// A device on a two-wire bus that only sees levels: it finds starts and stops, samples with the clock high, drives
/// with the clock low, and notes what no master may do.
class BitSlave {
 public:
  explicit BitSlave(ByteDevice& device, std::function<double()> seconds)
      : device_(device), seconds_(std::move(seconds)) {}

  std::string Violations;
  std::string Seen;                ///< "S", "Sr" and "P" for the conditions, bytes as numbers with "+" or "-"
  double StretchSeconds = 0;       ///< holds the clock that long after every byte
  std::vector<double> ClockRises;  ///< when the clock went up

  /// The levels that the master lets the lines have.
  void Master(bool sda, bool scl) {
    if (sda != master_.Sda && scl != master_.Scl) Violations += "both lines changed at once; ";
    master_ = {sda, scl};
    Settle();
  }
  bool Sda() { return Settle(), bus_.Sda; }
  bool Scl() { return Settle(), bus_.Scl; }

  /// A master was interrupted while the device sent a byte with `zeros` low bits to come.
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

  /// A clock has ended: eight of them carry a byte, the ninth its acknowledge.
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

  ByteDevice& device_;
  std::function<double()> seconds_;
  Levels master_, bus_;
  bool drive_ = true;  ///< false: this device pulls the data line low
  double stretchEnd_ = 0;
  std::optional<bool> sample_;
  Phase phase_ = Phase::Idle;
  bool started_ = false, addressed_ = false;  ///< addressed_: the next byte is an address
  int count_ = 0;
  std::uint8_t shift_ = 0;
};

}  // namespace krx
