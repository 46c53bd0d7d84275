// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace krx {

/// What a bit-level device does with whole bytes.
class ByteDevice {
 public:
  virtual ~ByteDevice() = default;
  virtual bool Address(std::uint8_t byte) = 0;  ///< true: acknowledge
  virtual bool Write(std::uint8_t byte) = 0;    ///< true: acknowledge
  virtual std::uint8_t Read() = 0;
  virtual void Stop() = 0;
};

/// A device on a two-wire bus that only sees levels: it finds starts and stops, samples with the clock high, drives
/// with the clock low, and notes what no master may do.
class BitSlave {
 public:
  explicit BitSlave(ByteDevice& device, std::function<double()> seconds)
      : device_(device), seconds_(std::move(seconds)) {}

  std::vector<std::string> Violations;
  std::string Seen;                ///< "S", "Sr" and "P" for the conditions, bytes as numbers with "+" or "-"
  double StretchSeconds = 0;       ///< holds the clock that long after every byte
  std::vector<double> ClockRises;  ///< when the clock went up

  /// The levels that the master lets the lines have.
  void Master(bool sda, bool scl) {
    if (sda != masterSda_ && scl != masterScl_) Violations.push_back("both lines changed at once");
    masterSda_ = sda;
    masterScl_ = scl;
    Settle();
  }
  bool Sda() { return Settle(), bus_.Sda; }
  bool Scl() { return Settle(), bus_.Scl; }

  /// A master was interrupted while the device sent a byte with `zeros` low bits to come.
  void HangInByte(int zeros) {
    phase_ = Phase::Send;
    count_ = 8 - zeros;
    shift_ = 0;
    drive_ = false;
    bus_.Sda = false;  // it went low in the past, with the clock low: no start
  }

 private:
  struct Levels {
    bool Sda, Scl;
  };
  enum class Phase { Idle, Receive, AckOut, Send, AckIn };

  void Settle() {
    for (;;) {
      const Levels old = bus_;
      const bool scl = masterScl_ && seconds_() >= stretchEnd_;
      bus_ = {masterSda_ && drive_, scl};
      if (bus_.Sda == old.Sda && bus_.Scl == old.Scl) return;
      if (old.Scl && bus_.Scl) {
        Condition(bus_.Sda);
      } else if (!old.Scl && bus_.Scl) {
        ClockRises.push_back(seconds_());
        sampled_ = true;
        sample_ = bus_.Sda;
      } else if (old.Scl && !bus_.Scl) {
        if (sampled_) Bit(sample_);
        sampled_ = false;
      }
    }
  }

  void Condition(bool stop) {
    sampled_ = false;
    if (started_ && (count_ != 0 || phase_ == Phase::AckOut || phase_ == Phase::AckIn)) {
      Violations.push_back(stop ? "stop inside a byte" : "data changed while the clock was high");
    }
    drive_ = true;
    count_ = 0;
    if (stop) {
      Seen += "P ";
      started_ = false;
      phase_ = Phase::Idle;
      device_.Stop();
    } else {
      Seen += started_ ? "Sr " : "S ";
      started_ = true;
      phase_ = Phase::Receive;
      first_ = true;
    }
  }

  void Bit(bool value) {
    switch (phase_) {
      case Phase::Idle:
        break;
      case Phase::Receive:
        shift_ = static_cast<std::uint8_t>(shift_ << 1 | (value ? 1 : 0));
        if (++count_ == 8) ByteReceived();
        break;
      case Phase::AckOut:
        drive_ = true;
        if (!acked_) {
          phase_ = Phase::Idle;
        } else if (first_ && (shift_ & 1) != 0) {
          Load();
        } else {
          phase_ = Phase::Receive;
        }
        first_ = false;
        break;
      case Phase::Send:
        if (++count_ == 8) {
          count_ = 0;
          drive_ = true;
          phase_ = Phase::AckIn;
        } else {
          DriveNext();
        }
        break;
      case Phase::AckIn:
        Seen += Hex() + (value ? "- " : "+ ");
        phase_ = Phase::Idle;
        if (!value) Load();
        break;
    }
  }

  void ByteReceived() {
    count_ = 0;
    acked_ = first_ ? device_.Address(shift_) : device_.Write(shift_);
    Seen += Hex() + (acked_ ? "+ " : "- ");
    drive_ = !acked_;
    phase_ = Phase::AckOut;
    stretchEnd_ = seconds_() + StretchSeconds;
  }

  void Load() {
    shift_ = device_.Read();
    count_ = 0;
    phase_ = Phase::Send;
    DriveNext();
  }

  void DriveNext() { drive_ = (shift_ >> (7 - count_) & 1) != 0; }

  std::string Hex() const {
    constexpr const char* digits = "0123456789ABCDEF";
    return {digits[shift_ >> 4], digits[shift_ & 15]};
  }

  ByteDevice& device_;
  std::function<double()> seconds_;
  bool masterSda_ = true, masterScl_ = true;
  bool drive_ = true;  ///< false: this device pulls the data line low
  double stretchEnd_ = 0;
  Levels bus_{true, true};
  bool sampled_ = false, sample_ = false;
  Phase phase_ = Phase::Idle;
  bool started_ = false, first_ = false, acked_ = false;
  int count_ = 0;
  std::uint8_t shift_ = 0;
};

}  // namespace krx
