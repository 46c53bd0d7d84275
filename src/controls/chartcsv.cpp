// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/chartcsv.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <iterator>
#include <utility>

namespace krx {

namespace {

std::string Quoted(const std::string& text) {
  if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
  std::string quoted = "\"";
  for (const char c : text) quoted += c == '"' ? std::string("\"\"") : std::string(1, c);
  return quoted + '"';
}

}  // namespace

ChartCsv::ChartCsv(const TraceHistory& history, ChartSpan span, std::vector<CsvColumn> columns,
                   const std::vector<std::string>& notes)
    : history_(history),
      span_{span.Begin, std::min(span.End, history.LastTime() + 1)},
      next_(span.Begin),
      columns_(std::move(columns)) {
  for (const std::string& note : notes) text_ += "# " + note + '\n';
  text_ += "Time (s)";
  for (const CsvColumn& column : columns_) text_ += ',' + Quoted(column.Heading);
  text_ += '\n';
}

std::string ChartCsv::Next(std::size_t rows) {
  const std::int64_t begin = next_;
  std::int64_t last = begin;
  std::size_t count = 0;
  next_ = span_.End;
  done_ = true;
  history_.ForEachRow(begin, span_.End, [&](std::int64_t time, std::span<const float> values) {
    // A block that began earlier is repeated with its first time.
    if (time < begin && begin != span_.Begin) return true;
    if (count >= rows && time > last) {  // rows with the same time stay together, since pieces are split by time
      next_ = time;
      done_ = false;
      return false;
    }
    ++count;
    last = time;
    AddRow(std::clamp(time, span_.Begin, span_.End - 1), values);  // a block may extend beyond the span
    return true;
  });
  return std::exchange(text_, {});
}

double ChartCsv::Share() const {
  const auto length = static_cast<double>(span_.Length());
  return length > 0 ? static_cast<double>(next_ - span_.Begin) / length : 1;
}

void ChartCsv::AddRow(std::int64_t time, std::span<const float> values) {
  const auto measured = [&](const CsvColumn& column) { return std::isfinite(values[column.Trace]); };
  const bool nothing = std::ranges::none_of(columns_, measured);
  if (std::exchange(inGap_, nothing) && nothing) return;
  // Integers, since a double would lose the microseconds after weeks.
  fmt::format_to(std::back_inserter(text_), "{}{}.{:06}", time < 0 ? "-" : "", std::abs(time / 1'000'000),
                 std::abs(time % 1'000'000));
  for (const CsvColumn& column : columns_) {
    text_ += ',';
    if (measured(column)) fmt::format_to(std::back_inserter(text_), "{}", values[column.Trace]);
  }
  text_ += '\n';
}

}  // namespace krx
