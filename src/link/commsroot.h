// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include "link/commsmodule.h"

namespace krx {

/// The one CommsModule of the process: created on first use by the factory it was given, kept to the end.
class CommsRoot {
 public:
  using Factory = std::function<std::unique_ptr<CommsModule>()>;
  explicit CommsRoot(Factory factory);

  /// The root object. Throws what the factory throws; the next call then tries again.
  CommsModule& Get();

  /// Switches to another bus before a chip has been chosen. No object handed out by the old module may be alive.
  void Change(Factory factory);

 private:
  Factory factory_;
  std::unique_ptr<CommsModule> module_;
};

}  // namespace krx
