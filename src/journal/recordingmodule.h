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

/// A write that was held back.
struct RecordedWrite {
  bool OfDevice = false;                 ///< a byte for a device without registers, as the board's switches
  std::uint8_t Address = 0;              ///< register, or bus address of the device
  std::optional<std::uint8_t> Old = {};  ///< of a register as it was last seen; nothing when it never was
  std::uint8_t New = 0;
};

/// A second link to the same chip over which nothing is changed: reads go through to the first one, once per place, and
/// writes are recorded instead of sent; later reads see them. What runs on it shows what it would do.
class RecordingLink {
 public:
  /// FromSeen: a register that passed on the bus before is not read, what was seen of it is taken.
  enum class Reads { Through, FromSeen };

  /// `real` outlives this object and keeps its own waits.
  explicit RecordingLink(Link& real, Reads reads = Reads::Through);
  ~RecordingLink();
  RecordingLink(const RecordingLink&) = delete;
  RecordingLink& operator=(const RecordingLink&) = delete;

  Link& Recording() { return link_; }
  /// In the order in which they were made.
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
