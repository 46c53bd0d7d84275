// SPDX-License-Identifier: GPL-3.0-or-later
// Compares the strip chart with the plotting library drawing the same points: the whole history of 9 traces at
// 1200x600, and the memory per stored point. Compare the ratios of one run.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <array>
#include <cmath>
#include <memory>
#include <random>
#include <vector>

#include "controls/tracehistory.h"
#include "controls/ui/palette.h"
#include "controls/ui/plotlibrary.h"
#include "controls/ui/stripchart.h"

namespace {

constexpr std::size_t kTraces = 14;
constexpr int kShown = 9;
constexpr std::int64_t kTick = 10'000;

// Readings with noise on an oscillation of five periods for any length of the run, so that every length has the same
// pixels to paint; each trace at its own height.
double Swing(std::int64_t i, std::int64_t rows) {
  return 4 * std::sin(static_cast<double>(i) / static_cast<double>(rows) * 31.4);
}

std::array<float, kTraces> RowAt(std::int64_t i, std::int64_t rows, std::minstd_rand& random) {
  std::array<float, kTraces> row;
  const auto swing = static_cast<float>(Swing(i, rows));
  for (std::size_t trace = 0; trace < kTraces; ++trace) {
    const auto noise = static_cast<float>(random() % 256) / 256.f;
    row[trace] = static_cast<float>(trace) * 8.f + swing + noise;
  }
  return row;
}

std::unique_ptr<krx::TraceHistory> MakeHistory(std::int64_t rows) {
  auto history = std::make_unique<krx::TraceHistory>(kTraces, krx::TraceRetention::Everything());
  std::minstd_rand random(1);
  for (std::int64_t i = 0; i < rows; ++i) history->Append(i * kTick, RowAt(i, rows, random));
  return history;
}

void StripChartRedraw(benchmark::State& state) {
  const auto history = MakeHistory(state.range(0));
  krx::StripChart chart(*history);
  std::vector<krx::ChartTrace> traces;
  for (std::size_t i = 0; i < kShown; ++i)
    traces.push_back({i, QString("Trace %1").arg(i), i, i >= 3 && i <= 6, "", 2});
  chart.SetTraces(traces);
  chart.SetValueRange(-10, 80);
  chart.SetSecondValueRange(-10, 80);
  chart.resize(1220, 660);
  chart.show();
  chart.Fit();
  chart.Plot()->setFixedSize(1200, 600);
  for (int i = 0; i < 20; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
  for (auto _ : state) chart.Plot()->replot(QCustomPlot::rpQueuedRefresh);
  state.counters["bytes_per_point"] =
      static_cast<double>(history->MemoryBytes()) / static_cast<double>(history->RowCount() * kTraces);
}
BENCHMARK(StripChartRedraw)->Arg(10'000)->Arg(100'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);

void LibraryAloneRedraw(benchmark::State& state) {
  QCustomPlot plot;
  plot.legend->setVisible(true);
  plot.xAxis->setTicker(QSharedPointer<QCPAxisTickerTime>::create());
  for (int trace = 0; trace < kShown; ++trace) {
    QCPGraph* graph = plot.addGraph();
    graph->setName(QString("Trace %1").arg(trace));
    graph->setPen(krx::Palette::Light().traces[static_cast<std::size_t>(trace)]);
    auto data = QSharedPointer<QCPGraphDataContainer>::create();
    QVector<QCPGraphData> points(static_cast<int>(state.range(0)));
    std::minstd_rand random(static_cast<unsigned>(trace + 1));
    for (std::int64_t i = 0; i < state.range(0); ++i) {
      const double value = trace * 8 + Swing(i, state.range(0)) + static_cast<double>(random() % 256) / 256;
      points[static_cast<int>(i)] = {static_cast<double>(i) * 0.01, value};
    }
    data->set(points, true);
    graph->setData(data);
  }
  plot.xAxis->setRange(0, static_cast<double>(state.range(0)) * 0.01);
  plot.yAxis->setRange(-10, 80);
  plot.resize(1200, 600);
  plot.show();
  for (int i = 0; i < 20; ++i) QApplication::processEvents(QEventLoop::AllEvents, 20);
  for (auto _ : state) plot.replot(QCustomPlot::rpQueuedRefresh);
}
BENCHMARK(LibraryAloneRedraw)->Arg(10'000)->Arg(10'000'000)->Unit(benchmark::kMillisecond);

void AppendTick(benchmark::State& state) {
  std::minstd_rand random(1);
  const auto row = RowAt(1, 1, random);
  krx::TraceHistory history(kTraces);
  std::int64_t time = 0;
  for (auto _ : state) history.Append(time += kTick, row);
}
BENCHMARK(AppendTick);

// One day at 100 rows per second with the console's retention.
void DayWithRetention(benchmark::State& state) {
  std::minstd_rand random(1);
  const auto row = RowAt(1, 1, random);
  for (auto _ : state) {
    krx::TraceHistory history(kTraces);
    for (std::int64_t i = 0; i < 8'640'000; ++i) history.Append(i * kTick, row);
    state.counters["megabytes"] = static_cast<double>(history.MemoryBytes()) * 1e-6;
  }
}
BENCHMARK(DayWithRetention)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
