// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <iosfwd>
#include <span>
#include <string>

#include "controls/chartview.h"
#include "controls/tracehistory.h"

namespace krx {

/// One column of the table: a trace of the history and its heading.
struct CsvColumn {
  std::size_t Trace = 0;
  std::string Heading;
};

/// Writes the rows of `span` as comma-separated text with a heading line: "Time (s)" in seconds with six decimals, then
/// each column in its shortest decimal text, empty where nothing was posted. Rows without any value are left out. A
/// heading that holds a comma, a quote or a line end is quoted.
void WriteChartCsv(std::ostream& out, const TraceHistory& history, ChartSpan span, std::span<const CsvColumn> columns);

}  // namespace krx
