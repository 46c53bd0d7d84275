// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/mediumreport.h"

#include <array>
#include <string_view>

namespace krx {
namespace {

struct Beginning {
  std::string_view Text;
  std::string_view Description;  ///< empty: "Found an " and the report itself
  ReportColour Colour;
  bool SmbusOffered;
};

// Compared in this order: "ICH Type" also starts with "ICH".
constexpr std::array<Beginning, 4> beginnings{{
    {"Unsupported and unrecognised", "The available southbridge or ICH is currently unsupported.", ReportColour::Red,
     false},
    {"ICH Type", "The Intel chipset is not recognised click next to assume it is a standard ICH.", ReportColour::Red,
     true},
    {"ICH", "", ReportColour::Green, true},
    {"ALi M1535+, ", "", ReportColour::Green, true},
}};

std::string WithoutRunsOfFiveBlanks(std::string text) {
  constexpr std::string_view run = "     ";
  for (std::size_t at = text.find(run); at != std::string::npos; at = text.find(run, at)) text.erase(at, run.size());
  return text;
}

}  // namespace

std::optional<MediumReport> DescribeChipset(const std::string& report) {
  for (const Beginning& beginning : beginnings) {
    if (!report.starts_with(beginning.Text)) continue;
    std::string description(beginning.Description);
    if (description.empty()) {
      // Only the ICH reports pad their parts with blanks.
      description = "Found an " + (beginning.Text == "ICH" ? WithoutRunsOfFiveBlanks(report) : report);
    }
    return MediumReport{description, beginning.Colour, beginning.SmbusOffered};
  }
  return std::nullopt;
}

}  // namespace krx
