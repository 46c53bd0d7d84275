// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>

namespace krx {

/// The chip as it was last seen on the bus: per register the byte of the newest transfer, whoever asked for it. Adds no
/// traffic. What a window derived from a register is renewed from here, never by a read of its own.
class RegisterImage {
 public:
  /// Told of every byte that passed, once it has arrived; nothing: a write failed, so that the register may hold
  /// either byte. Called inside a transfer: a listener must not reach the bus and opens no box.
  using Listener = std::function<void(std::uint8_t reg, std::optional<std::uint8_t> byte)>;

  /// The byte last seen; nothing before the first one and after a failed write.
  std::optional<std::uint8_t> Byte(std::uint8_t reg) const { return bytes_[reg]; }

  /// A byte that was read or written.
  void Saw(std::uint8_t reg, std::uint8_t byte) { Set(reg, byte); }
  /// A write that failed: it may have arrived or not.
  void Forget(std::uint8_t reg) { Set(reg, std::nullopt); }

  /// As long as it lives its listener is called. It may outlive the image.
  class Subscription {
   public:
    explicit Subscription(std::shared_ptr<Listener> listener) : listener_(std::move(listener)) {}

   private:
    std::shared_ptr<Listener> listener_;
  };
  [[nodiscard]] Subscription Subscribe(Listener listener);
  /// Nobody is told any more.
  void TellNobody() { listeners_.clear(); }

 private:
  void Set(std::uint8_t reg, std::optional<std::uint8_t> byte);

  std::array<std::optional<std::uint8_t>, 256> bytes_{};
  std::list<std::weak_ptr<Listener>> listeners_;
};

}  // namespace krx
