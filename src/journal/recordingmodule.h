// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "link/commsroot.h"
#include "link/linknewcomport06.h"

namespace krx {

/// A write that was recorded instead of sent.
struct RecordedWrite {
  bool OfDevice = false;                 ///< a byte for a device without registers, such as the board's switches
  std::uint8_t Address = 0;              ///< register, or bus address of the device
  std::optional<std::uint8_t> Old = {};  ///< last known value; empty if it was never seen
  std::uint8_t New = 0;
};

/// A second link to the same chip that changes nothing: reads are forwarded to the first one, once per address, and
/// writes are recorded instead of sent and returned by later reads. Running code on it shows what it would write.
class RecordingLink {
 public:
  /// FromSeen: a register already seen on the bus is not read again; the byte last seen is used.
  enum class Reads { Through, FromSeen };

  /// `real` must outlive this object; its reads include their usual waits.
  explicit RecordingLink(Link& real, Reads reads = Reads::Through);
  ~RecordingLink();
  RecordingLink(const RecordingLink&) = delete;
  RecordingLink& operator=(const RecordingLink&) = delete;

  Link& Recording() { return link_; }
  /// In order.
  const std::vector<RecordedWrite>& Writes() const { return writes_; }

 private:
  class Module;
  class Adapter;
  class Device;

  std::uint8_t ReadRegister(std::uint8_t reg);
  std::uint8_t ReceiveByte(std::uint8_t address);
  void Record(bool ofDevice, std::uint8_t address, std::uint8_t value);

  Link& real_;
  Reads reads_;
  SystemClock clock_;
  SleepingPump pump_;
  std::map<std::pair<bool, std::uint8_t>, std::uint8_t> known_;
  std::vector<RecordedWrite> writes_;
  CommsRoot root_;
  Link link_;
};

}  // namespace krx
