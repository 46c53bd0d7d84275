// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>

#include "link/linknewcomport06.h"

namespace krx {

/// What passed of each register since this object began, and which of them have changed. It makes no transfer.
class RegisterChanges {
 public:
  /// What the link has seen before counts as first seen now.
  explicit RegisterChanges(Link& link);

  /// The byte seen last; nothing before the first one and after a failed write.
  std::optional<std::uint8_t> Last(std::uint8_t reg) const { return last_.at(reg); }
  /// The byte seen first, where the register holds another one now. Of a register that was written before anybody read
  /// it that is the written byte.
  std::optional<std::uint8_t> Was(std::uint8_t reg) const;

  /// Told when Last or Was of a register has become another. Called inside a transfer: it must not reach the bus.
  std::function<void(std::uint8_t reg)> Changed;

 private:
  void Saw(std::uint8_t reg, std::optional<std::uint8_t> byte);

  std::array<std::optional<std::uint8_t>, 256> first_{};
  std::array<std::optional<std::uint8_t>, 256> last_{};
  RegisterImage::Subscription subscription_;
};

}  // namespace krx
