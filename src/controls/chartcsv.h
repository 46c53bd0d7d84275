// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string>
#include <vector>

#include "controls/chartview.h"
#include "controls/tracehistory.h"

namespace krx {

/// One column of the table: a trace of the history and its heading.
struct CsvColumn {
  std::size_t Trace = 0;
  std::string Heading;
};

/// The rows of a span as comma-separated text, in pieces, so that a long run can be written in the background: the
/// notes, each after "# ", a heading line, then "Time (s)" in seconds with six decimals and each column in its shortest
/// decimal text. A cell is empty if nothing was measured; where no column was measured, one row of empty cells marks
/// the gap. A heading that contains a comma, a quote or a line end is quoted.
class ChartCsv {
 public:
  /// Rows appended to the history afterwards are not included.
  ChartCsv(const TraceHistory& history, ChartSpan span, std::vector<CsvColumn> columns,
           const std::vector<std::string>& notes);

  /// The next piece, from about this many rows of the history.
  std::string Next(std::size_t rows);
  bool Done() const { return done_; }  ///< the last piece was returned
  double Share() const;                ///< fraction of the span completed, 0..1

 private:
  void AddRow(std::int64_t time, std::span<const float> values);

  const TraceHistory& history_;
  ChartSpan span_;
  std::int64_t next_;
  std::vector<CsvColumn> columns_;
  std::string text_;
  bool inGap_ = true;
  bool done_ = false;
};

}  // namespace krx
