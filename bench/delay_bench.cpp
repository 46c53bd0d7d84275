// SPDX-License-Identifier: GPL-3.0-or-later
// Lateness and CPU usage of Delay(0.005) in a running event loop with a 10 ms timer: the console's pump compared with a
// busy loop. Lateness in microseconds; "core" is the share of one core.
#include <benchmark/benchmark.h>
#include <time.h>

#include <QApplication>
#include <QTimer>
#include <algorithm>
#include <functional>
#include <vector>

#include "controls/ui/qteventpump.h"
#include "link/clock.h"
#include "link/linknewcomport06.h"

namespace {

constexpr double waitSeconds = 0.005;

/// Never sleeps, for comparison.
class PurePump : public krx::EventPump {
 public:
  void Pump(double, krx::PumpMode) override { QCoreApplication::processEvents(); }
};

double CpuSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

void MeasureDelay(benchmark::State& state, krx::EventPump& pump) {
  krx::SystemClock clock;
  krx::CommsRoot root([] { return std::unique_ptr<krx::CommsModule>(); });
  krx::Link link(root, clock, pump);
  QTimer other;
  other.start(10);
  std::vector<double> lateness;
  const double cpuStart = CpuSeconds();
  const double start = link.ElapsedSeconds();
  for (auto _ : state) {
    const double begin = link.ElapsedSeconds();
    link.Delay(waitSeconds);
    const double took = link.ElapsedSeconds() - begin;
    lateness.push_back((took - waitSeconds) * 1e6);
    state.SetIterationTime(took);
  }
  state.counters["core"] = (CpuSeconds() - cpuStart) / (link.ElapsedSeconds() - start);
  std::sort(lateness.begin(), lateness.end());
  const auto at = [&](double share) { return lateness[static_cast<std::size_t>(share * double(lateness.size() - 1))]; };
  state.counters["late_min"] = at(0);
  state.counters["late_median"] = at(0.5);
  state.counters["late_p99"] = at(0.99);
  state.counters["late_max"] = at(1);
}

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  krx::QtEventPump sleeping;
  PurePump pure;
  const auto with = [](krx::EventPump& pump) {
    return [&pump](benchmark::State& state) { MeasureDelay(state, pump); };
  };
  benchmark::RegisterBenchmark("Delay/console", with(sleeping))->UseManualTime()->Iterations(1000);
  benchmark::RegisterBenchmark("Delay/pure_pumping", with(pure))->UseManualTime()->Iterations(1000);
  benchmark::Initialize(&argc, argv);
  QTimer::singleShot(0, &application, [] {
    benchmark::RunSpecifiedBenchmarks();
    QCoreApplication::quit();
  });
  return QApplication::exec();
}
