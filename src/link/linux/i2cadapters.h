// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "link/bushost.h"
#include "link/linux/kernel.h"

namespace krx {

/// A bus that the kernel has registered. Numbers change between boots, so nothing remembers them.
struct I2cAdapter {
  int Number = 0;
  std::string Name;
  unsigned Vendor = 0;  ///< PCI ids of the parent; 0 when it is no PCI device
  unsigned Device = 0;
};

/// All registered buses by ascending number. Opens no device node.
std::vector<I2cAdapter> ListI2cAdapters(const KernelRoots& roots);

/// The host's own SMBus, as opposed to display, touchpad and other internal buses.
bool IsHostSmbus(const I2cAdapter& adapter);

/// "SMBus I801 adapter at 0700, i2c-1".
std::string AdapterLabel(const I2cAdapter& adapter);

/// The buses that a search asks: the one with the number, also when the kernel does not list it, so that using it tells
/// what is missing; without a number every host SMBus.
std::vector<SmbusAdapter> SearchedAdapters(const KernelRoots& roots, std::optional<int> number);

/// The bus with the number asked for, whatever its kind; without a number the first host SMBus.
std::optional<I2cAdapter> ChooseAdapter(const KernelRoots& roots, std::optional<int> number);

/// The text whose beginning tells the search wizard what the host is: "ICH9 (SMBus I801 adapter at 0700, i2c-1)".
std::string ChipsetReportOf(const std::optional<I2cAdapter>& adapter, std::optional<int> number);

}  // namespace krx
