// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace krx {

enum class ReportColour { Red, Green };

/// What the medium page of the search wizard shows for the SMBus host's chipset report.
struct MediumReport {
  std::string Description;
  ReportColour Colour;
  bool SmbusOffered;  ///< true: the SMBus box is checked and enabled, false: cleared and disabled
};

/// Compares the beginning of the report; an unknown report returns nothing and leaves the page unchanged.
std::optional<MediumReport> DescribeChipset(const std::string& report);

}  // namespace krx
