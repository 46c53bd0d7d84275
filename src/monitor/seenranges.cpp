// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/seenranges.h"

#include <algorithm>

namespace krx {

void SeenRanges::Add(std::size_t channel, double value) {
  SeenRange& range = ranges_.at(channel);
  range.Minimum = range.Any() ? std::min(range.Minimum, value) : value;
  range.Maximum = range.Any() ? std::max(range.Maximum, value) : value;
  ++range.Count;
  // Not a sum: after a week of readings it would lose the last shown digits.
  range.Mean += (value - range.Mean) / static_cast<double>(range.Count);
}

}  // namespace krx
