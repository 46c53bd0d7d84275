// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "link/bushost.h"
#include "link/linux/kernel.h"

namespace krx {

/// A bus registered in the kernel. Numbers may change between boots and are therefore not stored.
struct I2cAdapter {
  int Number = 0;
  std::string Name;
  unsigned Vendor = 0;  ///< PCI ids of the parent; 0 when it is not a PCI device
  unsigned Device = 0;
};

/// All registered buses by ascending number. Opens no device node.
std::vector<I2cAdapter> ListI2cAdapters(const KernelRoots& roots);

/// True for the host's SMBus, false for display, touchpad and other internal buses.
bool IsHostSmbus(const I2cAdapter& adapter);

/// "SMBus I801 adapter at 0700, i2c-1".
std::string AdapterLabel(const I2cAdapter& adapter);

/// The buses to search: the one with the number, even if the kernel does not list it, so that using it reports what is
/// missing; without a number every host SMBus.
std::vector<SmbusAdapter> SearchedAdapters(const KernelRoots& roots, std::optional<int> number);

/// The bus with the given number, of any kind; without a number the first host SMBus.
std::optional<I2cAdapter> ChooseAdapter(const KernelRoots& roots, std::optional<int> number);

/// The text whose beginning identifies the host for the search wizard: "ICH9 (SMBus I801 adapter at 0700, i2c-1)".
std::string ChipsetReportOf(const std::optional<I2cAdapter>& adapter, std::optional<int> number);

}  // namespace krx
