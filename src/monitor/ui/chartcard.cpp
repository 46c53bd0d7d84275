// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/chartcard.h"

#include <QDateTime>
#include <QVBoxLayout>
#include <utility>

#include "controls/ui/filesaving.h"
#include "controls/ui/palette.h"
#include "controls/ui/savingbar.h"
#include "controls/ui/stripchart.h"
#include "controls/ui/texts.h"
#include "controls/ui/userdialogs.h"
#include "monitor/displaystate.h"
#include "monitor/readingcycle.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr std::size_t firstStrip3Trace = thermTrace + 1;
constexpr std::size_t firstFanTrace = 3;

std::size_t FirstTrace(Strip strip) {
  return strip == Strip::Strip2 ? 0 : firstStrip3Trace;
}
std::size_t EndTrace(Strip strip) {
  return strip == Strip::Strip2 ? firstStrip3Trace : traceCount;
}
bool IsFanTrace(std::size_t trace) {
  return trace >= firstFanTrace && trace < powerTrace;
}

struct TraceFormat {
  std::string_view Unit;
  int Decimals;
};

TraceFormat FormatOf(std::size_t trace) {
  if (trace == powerTrace) return {"W", 2};
  if (trace == thermTrace) return {"%", 1};
  const auto row = std::ranges::find(channels, trace, &Channel::Trace);
  return {row->Quantity.ReadoutUnit, row->Quantity.Decimals};
}

}  // namespace

ChartCard::ChartCard(const ChartParts& parts, UserDialogs& dialogs, const VisualState& state, QWidget* parent)
    : QFrame(parent),
      parts_(parts),
      dialogs_(dialogs),
      strip2_(MakeChart(u"Strip2"_s, Strip::Strip2, state)),
      strip3_(MakeChart(u"Strip3"_s, Strip::Strip3, state)) {
  traceShown_.fill(true);
  strip2_->SetAxisTitles(u"Temperature"_s, u"Fans"_s);
  strip2_->SetAxisUnits(u"°C"_s, u"RPM"_s);
  strip3_->SetAxisTitles(u"Voltage"_s, {});
  strip3_->SetAxisUnits(u"V"_s, {});
  strip3_->SetValueRange(0, 14);
  MakeCard(*this);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(8, 8, 8, 8);
  column->addWidget(strip2_);
  column->addWidget(strip3_);
  MakeSavingBar();
  column->addWidget(saving_);
}

void ChartCard::MakeSavingBar() {
  saving_ = new SavingBar;
  connect(saving_, &SavingBar::Saved, this, [this](const QString& name) { emit Notice(SavedText(name)); });
  connect(saving_, &SavingBar::Cancelled, this,
          [this](const QString& name) { emit Notice(u"Cancelled, %1 not saved"_s.arg(name)); });
  connect(saving_, &SavingBar::Failed, this,
          [this](const QString& reason) { dialogs_.Critical(NotSavedText(u"The chart"_s, reason)); });
}

StripChart* ChartCard::MakeChart(const QString& name, Strip strip, const VisualState& state) {
  auto* chart = new StripChart(parts_.History, this);
  chart->setObjectName(name);
  chart->SetSubject(strip == Strip::Strip2 ? u"Temperatures and fan speeds"_s : u"Voltages"_s);
  const std::size_t first = FirstTrace(strip);
  std::vector<ChartTrace> traces;
  for (std::size_t trace = first; trace < EndTrace(strip); ++trace) {
    const TraceFormat format = FormatOf(trace);
    traces.push_back({.HistoryIndex = trace,
                      .Name = QString::fromStdString(state.TraceNames[trace]),
                      .PaletteIndex = trace - first,
                      .SecondAxis = IsFanTrace(trace),
                      .Unit = QtText(format.Unit),
                      .Decimals = format.Decimals});
  }
  chart->SetTraces(traces);
  connect(chart, &StripChart::ExportRequested, this,
          [this, chart](ChartFormat format) { ExportChart(*chart, format); });
  return chart;
}

void ChartCard::SetWaitBudget(WaitBudget* budget) {
  strip2_->SetWaitBudget(budget);
  strip3_->SetWaitBudget(budget);
  saving_->SetWaitBudget(budget);
}

void ChartCard::ExportChart(StripChart& chart, ChartFormat format) {
  struct File {
    QString Filter;
    QString Name;
  };
  const File file = format == ChartFormat::Png   ? File{u"Pictures (*.png)|*.png"_s, u"chart.png"_s}
                    : format == ChartFormat::Pdf ? File{u"Documents (*.pdf)|*.pdf"_s, u"chart.pdf"_s}
                                                 : File{u"Comma-separated values (*.csv)|*.csv"_s, u"chart.csv"_s};
  if (format == ChartFormat::Csv && saving_->Busy()) {
    emit Notice(u"The previous values are still being saved"_s);
    return;
  }
  const auto name = AskSaveName(dialogs_, file.Filter, file.Name);
  if (!name) return;
  if (format == ChartFormat::Csv)
    saving_->Save(chart.Values(ExportNotes()), *name);
  else
    emit Notice(SaveAndTell(dialogs_, u"The chart"_s, *name, chart.Picture(format, ExportNotes())));
}

QStringList ChartCard::ExportNotes() const {
  const QDateTime now = QDateTime::currentDateTime();
  const auto text = [&](const QDateTime& time) {
    return time.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate).replace(u'T', u' ');
  };
  const QDateTime zero = now.addMSecs(-parts_.Cycle.Now() / 1000);
  return {source_, u"Saved %1, time 0 is %2"_s.arg(text(now), text(zero))};
}

void ChartCard::ShowState(const VisualState& state) {
  strip2_->SetCaption(QString::fromStdString(state.Strip2Caption));
  strip3_->SetCaption(QString::fromStdString(state.Strip3Caption));
  strip2_->setVisible(state.ShownStrip == Strip::Strip2);
  strip3_->setVisible(state.ShownStrip == Strip::Strip3);
  if (std::exchange(strip2Range_, state.Strip2Range) != state.Strip2Range)
    strip2_->SetValueRange(state.Strip2Range.Minimum, state.Strip2Range.Maximum);
  for (std::size_t trace = 0; trace < traceCount; ++trace) {
    StripChart& chart = trace < firstStrip3Trace ? *strip2_ : *strip3_;
    const int number = static_cast<int>(trace < firstStrip3Trace ? trace : trace - firstStrip3Trace);
    chart.SetTraceName(number, QString::fromStdString(state.TraceNames[trace]));
    // Only a change: between two, the user may switch traces on and off.
    if (std::exchange(traceShown_[trace], state.TraceShown[trace]) != state.TraceShown[trace])
      chart.SetTraceVisible(number, state.TraceShown[trace]);
  }
  const auto selected = static_cast<std::size_t>(parts_.Display.SelectedChannel);
  const Strip strip = channels[selected].Chart;
  (strip == Strip::Strip2 ? strip2_ : strip3_)
      ->SetSelectedTrace(strip == state.ShownStrip ? TraceNumber(selected) : -1);
}

void ChartCard::ShowReading(const VisualState& state) {
  strip2_->SetCaption(QString::fromStdString(state.Strip2Caption));
}

int ChartCard::TraceNumber(std::size_t channel) {
  const Channel& row = channels[channel];
  return static_cast<int>(row.Trace - FirstTrace(row.Chart));
}

void ChartCard::Posted() {
  GapPosted();
}

void ChartCard::GapPosted() {
  strip2_->Posted();
  strip3_->Posted();
}

}  // namespace krx
