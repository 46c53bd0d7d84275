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

/// The rows of a span as comma-separated text, piece by piece, so that a long run can be written beside other work:
/// the notes, each behind "# ", a heading line, then "Time (s)" in seconds with six decimals and each column in its
/// shortest decimal text. A cell is empty where nothing was measured, and where none of the columns was, one row of
/// empty cells marks the gap. A heading that holds a comma, a quote or a line end is quoted.
class ChartCsv {
 public:
  /// What comes into the history afterwards is not part of it.
  ChartCsv(const TraceHistory& history, ChartSpan span, std::vector<CsvColumn> columns,
           const std::vector<std::string>& notes);

  /// The next piece, made of about so many rows of the history.
  std::string Next(std::size_t rows);
  bool Done() const { return done_; }  ///< the last piece was given
  double Share() const;                ///< of the span's time that was given, 0..1

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
