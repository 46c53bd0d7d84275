// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/watch.h"

#include <fmt/format.h>

#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "app/watchrow.h"
#include "console/startup.h"
#include "console/workbench.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "registers/chip.h"

namespace krx {
namespace {

constexpr int pageLines = 19;

/// Prints the rows and the fault messages.
class Display {
 public:
  Display(const WatchOptions& options, std::string place, CommandHost& host)
      : json_(options.Json), place_(std::move(place)), host_(host) {
    page_ = !json_ && host.ScreenLines() >= pageLines;
    // The page uses the alternate screen, so that the terminal's contents are restored afterwards.
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
    if (row.Faults > 0) ReportFault(row);
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
  void ReportFault(const WatchRow& row) {
    faults_ += row.Faults;
    lastFault_ = row.LastFault;
    // The page shows the fault in its last line.
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
    host_.Out() << "  Press Ctrl-C to stop.\x1b[K\x1b[J";
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

/// Failed transfers outside the rows; the next row counts them.
struct Faults {
  int Count = 0;
  std::string Last;

  void Add(const CommsError& error) {
    ++Count;
    Last = error.BoxText();
  }
  void MoveTo(WatchRow& row) {
    row.Faults += Count;
    if (row.LastFault.empty()) row.LastFault = Last;
    *this = {};
  }
};

/// A chip that is not monitoring keeps its old values: monitoring is started if that is allowed, and a failed start is
/// retried.
class MonitoringStart {
 public:
  MonitoringStart(bool mayWrite, Link& link, CommandHost& host, Faults& faults)
      : mayWrite_(mayWrite), link_(link), host_(host), faults_(faults) {}

  bool Settled() const { return settled_; }

  /// Does nothing once the start is settled. Returns the failure of this try, if any.
  std::optional<std::string> Try() {
    if (settled_) return std::nullopt;
    try {
      const std::uint8_t configuration = ReadByte(link_, chip::Configuration1);
      const bool on = (configuration & chip::Start) != 0;
      if (!on && mayWrite_) {
        UpdateBits(link_, chip::Configuration1, chip::Start, chip::Start);
        host_.Err() << "krx5580: monitoring was off and has been started\n";
      } else if (!on) {
        host_.Err() << "krx5580: monitoring is off, values are out of date: use --start to start it\n";
      }
      settled_ = true;
    } catch (const GivenUp&) {  // the user stops the program
    } catch (const CommsError& error) {
      faults_.Add(error);
      return error.BoxText();
    }
    return std::nullopt;
  }

 private:
  bool mayWrite_;
  bool settled_ = false;
  Link& link_;
  CommandHost& host_;
  Faults& faults_;
};

/// A row, or nothing when the user stops the program: on a hung bus a transfer takes up to a second.
std::optional<WatchRow> RowUnlessStopped(Workbench& bench) {
  try {
    return MeasureRow(bench);
  } catch (const GivenUp&) {
    return std::nullopt;
  }
}

}  // namespace

bool Watch(const WatchOptions& options, ChipConnection& connection, CommandHost& host) {
  host.Err() << "krx5580: " << connection.Place() << '\n';
  Link& link = connection.ChipLink();
  Workbench bench(link);
  const Link::MayGiveUp readings(link);
  Faults faults;
  // Hardware is written only on request.
  const bool mayWrite = options.Start || connection.Media().Kind == MediumKind::Simulated;
  // Without a board the start-up does not touch the switches; the chip is reached through CommsMedium.
  if (!mayWrite) link.EvalBoardMedium = 0;
  bench.Fans.ActualPulses.fill(options.Pulses);
  // Reading the THERM timer clears it, and no row shows it: leave it to programs that use it.
  bench.Cycle.ThermPeriod = std::numeric_limits<double>::infinity();
  bench.Start.Faulted = [&faults](const std::string&, const CommsError& error) { faults.Add(error); };
  for (const std::string& problem : StartUp(bench)) host.Err() << "krx5580: " << problem << '\n';
  MonitoringStart monitoring(mayWrite, link, host, faults);
  if (monitoring.Try()) {
    if (const auto problem = monitoring.Try()) host.Err() << "krx5580: Monitoring: " << *problem << '\n';
  }

  Display display(options, connection.Place(), host);
  const double begin = link.ElapsedSeconds();
  bool anything = false;
  double due = 0;
  while (!host.StopRequested() && host.Out()) {
    std::optional<WatchRow> row = RowUnlessStopped(bench);
    if (!row) break;
    row->Time = host.Now();
    faults.MoveTo(*row);
    // A chip that was only just started counts as working, one that could not be started does not.
    anything = anything || (row->AnythingRead && monitoring.Settled());
    display.Show(*row);
    if (options.Count && display.Rows() >= *options.Count) break;

    // Rows stay on the grid of the interval; after a slow row the missed ones are skipped.
    const double elapsed = link.ElapsedSeconds() - begin;
    while (due <= elapsed) due += options.Interval;
    if (options.Duration && due > *options.Duration) {
      host.Wait(*options.Duration - elapsed);
      break;
    }
    host.Wait(due - elapsed);
    if (host.StopRequested()) break;
    RetryOwed(bench);
    monitoring.Try();
  }
  return anything || (host.StopRequested() && display.Rows() == 0);
}

}  // namespace krx
