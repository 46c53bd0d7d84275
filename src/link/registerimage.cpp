// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/registerimage.h"

#include <utility>

namespace krx {

RegisterImage::Subscription RegisterImage::Subscribe(Listener listener) {
  auto owned = std::make_shared<Listener>(std::move(listener));
  listeners_.emplace_back(owned);
  return Subscription(std::move(owned));
}

void RegisterImage::Set(std::uint8_t reg, std::optional<std::uint8_t> byte) {
  bytes_[reg] = byte;
  for (auto each = listeners_.begin(); each != listeners_.end();) {
    if (const auto listener = each->lock()) {
      (*listener)(reg, byte);
      ++each;
    } else {
      each = listeners_.erase(each);
    }
  }
}

}  // namespace krx
