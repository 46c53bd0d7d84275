// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/watch.h"

#include <fmt/format.h>

#include <limits>
#include <string>
#include <utility>

#include "app/watchrow.h"
#include "console/startup.h"
#include "console/workbench.h"
#include "link/commserror.h"
#include "link/registeraccess.h"

namespace krx {
namespace {

constexpr std::uint8_t configuration1 = 0x40;
constexpr std::uint8_t startBit = 0x01;

// From the start of monitoring until the chip has measured everything once, tachometers last.
constexpr double firstMeasurement = 1.1;

constexpr int pageLines = 19;

/// Where the rows go, and what is said about the run.
class Display {
 public:
  Display(const WatchOptions& options, std::string place, CommandHost& host)
      : json_(options.Json), place_(std::move(place)), host_(host) {
    page_ = !json_ && host.ScreenLines() >= pageLines;
    // The page gets a screen of its own, so that what stood in the terminal is there again afterwards.
    if (page_) host_.Out() << "\x1b[?1049h\x1b[?25l";
  }
  ~Display() {
    if (!page_) return;
    host_.Out() << "\x1b[?25h\x1b[?1049l" << lastPage_;
    host_.Out().flush();
  }
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  void Show(const WatchRow& row) {
    ++rows_;
    if (row.Faults > 0) TellFault(row);
    if (page_) {
      ShowPage(row);
    } else if (json_) {
      host_.Out() << JsonLine(row, place_) << '\n';
    } else {
      if (rows_ == 1) host_.Out() << TableHeader(row) << '\n';
      host_.Out() << TableLine(row) << '\n';
    }
    host_.Out().flush();
  }

  long Rows() const { return rows_; }

 private:
  void TellFault(const WatchRow& row) {
    faults_ += row.Faults;
    lastFault_ = row.LastFault;
    // On a page the fault has its place in the last line.
    if (!page_) host_.Err() << fmt::format("krx5580: bus fault {}: {}\n", faults_, row.LastFault);
  }

  void ShowPage(const WatchRow& row) {
    lastPage_ = ScreenPage(row, place_);
    lastPage_ += fmt::format("\n  readings: {}, bus faults: {}{}{}\n", rows_, faults_, faults_ > 0 ? ", last: " : "",
                             lastFault_);
    host_.Out() << "\x1b[H";
    for (const char character : lastPage_) {
      if (character == '\n') host_.Out() << "\x1b[K";
      host_.Out() << character;
    }
    host_.Out() << "  Ctrl-C ends.\x1b[K\x1b[J";
  }

  bool json_;
  bool page_ = false;
  std::string place_;
  CommandHost& host_;
  long rows_ = 0;
  long faults_ = 0;
  std::string lastFault_;
  std::string lastPage_;
};

/// A chip that does not monitor shows frozen values.
void StartMonitoring(bool mayWrite, Link& link, CommandHost& host) {
  if ((ReadByte(link, configuration1) & startBit) != 0) return;
  if (!mayWrite) {
    host.Err() << "krx5580: monitoring is off, the values stand still: start it with --start\n";
    return;
  }
  UpdateBits(link, configuration1, startBit, startBit);
  host.Err() << "krx5580: monitoring was off and has been started\n";
  host.Wait(firstMeasurement);
}

/// Reads what the values depend on, prepares the board (heaters off, inputs routed) and starts monitoring; goes on past
/// a failing step. Hardware is written only when that was asked for.
void Prepare(const WatchOptions& options, ChipConnection& connection, Workbench& bench, CommandHost& host) {
  const bool mayWrite = options.Start || connection.Media().Kind == MediumKind::Simulated;
  // Without its board the start-up leaves the switches alone; the chip is reached by the other field.
  if (!mayWrite) bench.ChipLink.EvalBoardMedium = 0;
  bench.Fans.ActualPulses.fill(options.Pulses);
  // Reading the THERM timer clears it, and no row shows it: leave it to whoever watches it.
  bench.Cycle.ThermPeriod = std::numeric_limits<double>::infinity();
  for (const std::string& problem : StartUp(bench)) host.Err() << "krx5580: " << problem << '\n';
  try {
    StartMonitoring(mayWrite, bench.ChipLink, host);
  } catch (const CommsError& error) {
    host.Err() << "krx5580: Monitoring: " << error.BoxText() << '\n';
  }
}

}  // namespace

bool Watch(const WatchOptions& options, ChipConnection& connection, CommandHost& host) {
  host.Err() << "krx5580: " << connection.Place() << '\n';
  Workbench bench(connection.ChipLink());
  Prepare(options, connection, bench, host);

  Display display(options, connection.Place(), host);
  const double begin = connection.ChipLink().ElapsedSeconds();
  bool measured = false;
  double due = 0;
  while (!host.StopRequested() && host.Out()) {
    WatchRow row = MeasureRow(bench);
    row.Time = host.Now();
    measured = measured || AnythingMeasured(row);
    display.Show(row);
    if (options.Count && display.Rows() >= *options.Count) break;

    // Rows keep to the grid of the interval; one that took longer leaves its missed places out.
    const double elapsed = connection.ChipLink().ElapsedSeconds() - begin;
    while (due <= elapsed) due += options.Interval;
    if (options.Duration && due > *options.Duration) {
      host.Wait(*options.Duration - elapsed);
      break;
    }
    host.Wait(due - elapsed);
  }
  return measured;
}

}  // namespace krx
