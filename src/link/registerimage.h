// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <list>
#include <memory>
#include <optional>

namespace krx {

/// The chip's registers as last seen on the bus: per register the byte of the latest transfer, whichever code requested
/// it. Adds no traffic. Windows refresh values derived from a register from here, never by reads of their own.
class RegisterImage {
 public:
  /// Called for every byte transferred; without a byte: a write failed, so that the register may hold either value.
  /// Called inside a transfer: a listener must not access the bus or open a box.
  using Listener = std::function<void(std::uint8_t reg, std::optional<std::uint8_t> byte)>;

  /// The byte last seen; empty before the first transfer and after a failed write.
  std::optional<std::uint8_t> Byte(std::uint8_t reg) const { return bytes_[reg]; }

  /// A byte that was read or written.
  void Saw(std::uint8_t reg, std::uint8_t byte) { Set(reg, byte); }
  /// A write failed: it may or may not have reached the chip.
  void Forget(std::uint8_t reg) { Set(reg, std::nullopt); }

  /// The listener is called as long as this object lives. It may outlive the image.
  class Subscription {
   public:
    explicit Subscription(std::shared_ptr<Listener> listener) : listener_(std::move(listener)) {}

   private:
    std::shared_ptr<Listener> listener_;
  };
  [[nodiscard]] Subscription Subscribe(Listener listener);
  /// Removes all listeners.
  void TellNobody() { listeners_.clear(); }

 private:
  void Set(std::uint8_t reg, std::optional<std::uint8_t> byte);

  std::array<std::optional<std::uint8_t>, 256> bytes_{};
  std::list<std::weak_ptr<Listener>> listeners_;
};

}  // namespace krx
