// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/chartcsv.h"

#include <fmt/format.h>

#include <cmath>
#include <iterator>
#include <ostream>

namespace krx {

namespace {

std::string Quoted(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + '"';
}

}  // namespace

void WriteChartCsv(std::ostream& out, const TraceHistory& history, ChartSpan span, std::span<const CsvColumn> columns) {
  out << "Time (s)";
  for (const CsvColumn& column : columns) out << ',' << Quoted(column.Heading);
  out << '\n';
  std::string line;
  history.ForEachRow(span.Begin, span.End, [&](std::int64_t time, std::span<const float> values) {
    line.clear();
    // Whole numbers, not a double: after weeks the microseconds would be rounded away.
    fmt::format_to(std::back_inserter(line), "{}{}.{:06}", time < 0 ? "-" : "", std::abs(time / 1'000'000),
                   std::abs(time % 1'000'000));
    bool any = false;
    for (const CsvColumn& column : columns) {
      line += ',';
      const float value = values[column.Trace];
      if (!std::isfinite(value)) continue;
      fmt::format_to(std::back_inserter(line), "{}", value);
      any = true;
    }
    if (any) out << line << '\n';
  });
}

}  // namespace krx
