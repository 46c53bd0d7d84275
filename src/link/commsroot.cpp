// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/commsroot.h"

#include <utility>

namespace krx {

CommsRoot::CommsRoot(Factory factory) : factory_(std::move(factory)) {}

CommsModule& CommsRoot::Get() {
  if (!module_) module_ = factory_();
  return *module_;
}

void CommsRoot::Change(Factory factory) {
  module_.reset();
  factory_ = std::move(factory);
}

}  // namespace krx
