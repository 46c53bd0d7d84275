// SPDX-License-Identifier: GPL-3.0-or-later
// The main window on the simulated buses, run for some seconds: duration of a tick compared with the required SMBus
// waits, ticks per second, CPU usage of the process, and time to the first reading. Also the input latency while the
// cycle is running: from a pointer movement at a random time, which takes the same path as a click, to its delivery to
// the window. (Run it under X, whose events come from another process, like those of a user.)
#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <QApplication>
#include <QCursor>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <optional>
#include <random>
#include <vector>

#include "console/ui/mainform.h"
#include "console/workbench.h"
#include "controls/ui/chiptimer.h"
#include "controls/ui/qteventpump.h"
#include "controls/ui/userdialogs.h"
#include "journal/busjournal.h"
#include "journal/journalmodule.h"
#include "link/registeraccess.h"
#include "simulator/simcomms.h"

namespace krx {
namespace {

constexpr double runSeconds = 10;
constexpr double demandedWaitSeconds = 0.005;  ///< before each transfer on the SMBus

double ProcessorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void RunLoop(double seconds) {
  QEventLoop loop;
  QTimer::singleShot(static_cast<int>(seconds * 1000), &loop, &QEventLoop::quit);
  loop.exec();
}

struct Tick {
  double Seconds;
  std::uint64_t Transfers;
};

/// The console as created by the program, with its ticks observed.
struct WatchedConsole {
  explicit WatchedConsole(bool board) : Turns(Bus), Bench(Bus) {
    Bus.CommsMedium = board ? 1 : 0;
    Bus.EvalBoardMedium = Bus.CommsMedium;
    Bus.ChipAddress = board ? 0x5A : 0x2E;
    UpdateBits(Bus, 0x40, 0x01, 0x01);
    Turns.Around([this](const std::string&, const std::function<void()>& tick) {
      const std::uint64_t transfers = Bus.TransferCount();
      const double start = Bus.ElapsedSeconds();
      tick();
      if (Ticks.empty()) FirstTick = Bus.ElapsedSeconds();
      Ticks.push_back({Bus.ElapsedSeconds() - start, Bus.TransferCount() - transfers});
    });
    Begin = Bus.ElapsedSeconds();
    Form = std::make_unique<MainForm>(Bench, Turns, Dialogs, Journal, MainFormOptions{"Simulated board"});
    Form->SetWaitBudget(&Pump);
    Form->Start();
    Form->SelectTab(MainForm::VisualDisplay);
  }

  SystemClock Time;
  QtEventPump Pump;
  Simulation Sim{Time, {}};
  BusJournal Journal{Time};
  CommsRoot Root{[this] { return MakeJournalModule(Sim.MakeCommsModule(), Journal, false); }};
  Link Bus{Root, Time, Pump};
  ChipTurns Turns;
  QtUserDialogs Dialogs;
  Workbench Bench;
  std::vector<Tick> Ticks;
  double Begin = 0;
  double FirstTick = 0;
  std::unique_ptr<MainForm> Form;
};

void MainWindowCycle(benchmark::State& state) {
  const bool board = state.range(0) == 1;
  for (auto step : state) {
    WatchedConsole console(board);
    RunLoop(1);
    const std::size_t before = console.Ticks.size();
    const double processor = ProcessorSeconds();
    const double start = console.Bus.ElapsedSeconds();
    RunLoop(runSeconds);
    const double passed = console.Bus.ElapsedSeconds() - start;
    std::vector<double> ratios;
    for (std::size_t i = before; i < console.Ticks.size(); ++i) {
      const Tick& tick = console.Ticks[i];
      ratios.push_back(tick.Seconds / (static_cast<double>(tick.Transfers) * demandedWaitSeconds));
    }
    std::sort(ratios.begin(), ratios.end());
    state.counters["ticks_per_second"] = static_cast<double>(ratios.size()) / passed;
    state.counters["core_percent"] = (ProcessorSeconds() - processor) / passed * 100;
    state.counters["first_tick_ms"] = (console.FirstTick - console.Begin) * 1000;
    if (!board) {
      state.counters["tick_over_waits_median"] = ratios.at(ratios.size() / 2);
      state.counters["tick_over_waits_p99"] = ratios.at(ratios.size() * 99 / 100);
    }
  }
}
BENCHMARK(MainWindowCycle)->ArgName("board")->Arg(0)->Arg(1)->Iterations(1)->Unit(benchmark::kSecond);

/// Moves the pointer over a window and measures the time until the program receives the event.
class Nudger : public QObject {
 public:
  explicit Nudger(WatchedConsole& console) : console_(console) {
    qApp->installEventFilter(this);
    next_.setSingleShot(true);
    next_.setTimerType(Qt::PreciseTimer);
    connect(&next_, &QTimer::timeout, this, &Nudger::Nudge);
    next_.start(0);
  }

  std::vector<double> Milliseconds;
  int Missed = 0;  ///< not received before the next one

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::MouseMove && since_) {
      Milliseconds.push_back((console_.Bus.ElapsedSeconds() - *since_) * 1000);
      since_.reset();
    }
    return false;
  }

 private:
  void Nudge() {
    if (since_) ++Missed;
    left_ = !left_;
    since_ = console_.Bus.ElapsedSeconds();
    QCursor::setPos(console_.Form->mapToGlobal(QPoint(left_ ? 300 : 400, left_ ? 300 : 400)));
    next_.start(std::uniform_int_distribution(150, 350)(random_));
  }

  WatchedConsole& console_;
  QTimer next_;
  std::optional<double> since_;
  bool left_ = false;
  std::mt19937 random_{1};
};

void ClickLatency(benchmark::State& state) {
  constexpr std::size_t clicks = 300;
  for (auto step : state) {
    WatchedConsole console(false);
    RunLoop(1);
    const std::size_t before = console.Ticks.size();
    const double start = console.Bus.ElapsedSeconds();
    Nudger nudger(console);
    while (nudger.Milliseconds.size() < clicks) RunLoop(1);
    const double passed = console.Bus.ElapsedSeconds() - start;
    std::vector<double>& waits = nudger.Milliseconds;
    std::sort(waits.begin(), waits.end());
    double sum = 0;
    for (const double wait : waits) sum += wait;
    state.counters["mean_ms"] = sum / static_cast<double>(waits.size());
    state.counters["p95_ms"] = waits.at(waits.size() * 95 / 100);
    state.counters["p99_ms"] = waits.at(waits.size() * 99 / 100);
    state.counters["worst_ms"] = waits.back();
    state.counters["missed"] = nudger.Missed;
    state.counters["ticks_per_second"] = static_cast<double>(console.Ticks.size() - before) / passed;
  }
}
BENCHMARK(ClickLatency)->Iterations(1)->Unit(benchmark::kSecond);

}  // namespace
}  // namespace krx

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  krx::ApplyTheme(application, krx::Theme::Light);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
