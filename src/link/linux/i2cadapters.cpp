// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/linux/i2cadapters.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>

#include "link/printable.h"

namespace krx {

namespace {

constexpr unsigned intelVendor = 0x8086;

struct IchId {
  unsigned Device;
  const char* Generation;
};

// PCI device ids of the SMBus function in Intel's I/O controller hubs.
constexpr std::array ichIds{
    IchId{0x2413, "ICH"},  IchId{0x2423, "ICH0"}, IchId{0x2443, "ICH2"},  IchId{0x2483, "ICH3"},
    IchId{0x24C3, "ICH4"}, IchId{0x24D3, "ICH5"}, IchId{0x266A, "ICH6"},  IchId{0x27DA, "ICH7"},
    IchId{0x283E, "ICH8"}, IchId{0x2930, "ICH9"}, IchId{0x3A30, "ICH10"}, IchId{0x3A60, "ICH10"},
};

unsigned HexNumber(const std::string& path) {
  const auto line = FirstLine(path);
  return line ? static_cast<unsigned>(std::strtoul(line->c_str(), nullptr, 16)) : 0;
}

}  // namespace

std::vector<I2cAdapter> ListI2cAdapters(const KernelRoots& roots) {
  const std::string devices = roots.Sys + "/bus/i2c/devices";
  std::vector<I2cAdapter> adapters;
  for (const int number : NumberedEntries(devices, "i2c-")) {
    const std::string entry = fmt::format("{}/i2c-{}", devices, number);
    I2cAdapter adapter{number, FirstLine(entry + "/name").value_or(""), 0, 0};
    // The entry is a link into the device tree; only there is the adapter a child of its PCI device.
    std::error_code error;
    const auto place = std::filesystem::canonical(entry, error);
    if (!error) {
      const std::string parent = place.parent_path().string();
      adapter.Vendor = HexNumber(parent + "/vendor");
      adapter.Device = HexNumber(parent + "/device");
    }
    adapters.push_back(adapter);
  }
  return adapters;
}

bool IsHostSmbus(const I2cAdapter& adapter) {
  return adapter.Name.find("SMBus") != std::string::npos;
}

std::string AdapterLabel(const I2cAdapter& adapter) {
  return fmt::format("{}{}i2c-{}", Printable(adapter.Name), adapter.Name.empty() ? "" : ", ", adapter.Number);
}

std::vector<SmbusAdapter> SearchedAdapters(const KernelRoots& roots, std::optional<int> number) {
  std::vector<SmbusAdapter> adapters;
  for (const I2cAdapter& adapter : ListI2cAdapters(roots)) {
    const bool wanted = number ? adapter.Number == *number : IsHostSmbus(adapter);
    if (wanted) adapters.push_back({adapter.Number, AdapterLabel(adapter)});
  }
  if (adapters.empty() && number) adapters.push_back({*number, AdapterLabel({.Number = *number, .Name = {}})});
  return adapters;
}

std::optional<I2cAdapter> ChooseAdapter(const KernelRoots& roots, std::optional<int> number) {
  const auto adapters = ListI2cAdapters(roots);
  const auto found = std::find_if(adapters.begin(), adapters.end(), [&](const I2cAdapter& adapter) {
    return number ? adapter.Number == *number : IsHostSmbus(adapter);
  });
  if (found == adapters.end()) return std::nullopt;
  return *found;
}

std::string ChipsetReportOf(const std::optional<I2cAdapter>& adapter, std::optional<int> number) {
  if (!adapter) {
    return number ? fmt::format("No adapter i2c-{} found", *number)
                  : "Unsupported and unrecognised: no SMBus adapter found";
  }
  std::string where = AdapterLabel(*adapter);
  if (adapter->Vendor == intelVendor) {
    for (const IchId& id : ichIds) {
      if (id.Device == adapter->Device) return fmt::format("{} ({})", id.Generation, where);
    }
  }
  if (adapter->Name.starts_with("SMBus I801 adapter")) return fmt::format("ICH Type not in the list ({})", where);
  if (adapter->Name.starts_with("SMBus ALI1535 adapter")) return "ALi M1535+, " + where;
  return where;
}

}  // namespace krx
