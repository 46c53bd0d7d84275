// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "link/linux/fakei2c.h"
#include "link/linux/linuxcomms.h"
#include "link/linux/testroots.h"

namespace krx {

/// A computer with one adapter, i2c-1, behind which `Adapter.Chips` are to be; another program, process 4711, writes to
/// the one at 2Eh.
struct HeldChip {
  HeldChip() {
    const std::string node = Roots.Roots.Dev + "/i2c-1";
    Roots.Adapter(1, "SMBus I801 adapter at 0700");
    Roots.File(Roots.Roots.Proc + "/4711/comm", "krx5580");
    Kernel.Nodes[node] = [this] { return std::make_unique<FakeI2cFile>(Adapter); };
    Kernel.HeldByOthers[{node, 0x2E}] = 4711;
    Options.Roots = Roots.Roots;
  }
  std::unique_ptr<CommsModule> Module(Clock& clock) { return std::make_unique<LinuxComms>(Options, Kernel, clock); }
  TestRoots Roots;
  FakeKernel Kernel;
  FakeI2cAdapter Adapter;
  LinuxOptions Options;
};

}  // namespace krx
