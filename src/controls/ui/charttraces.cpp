// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/charttraces.h"

#include <QAction>
#include <QMenu>
#include <algorithm>
#include <utility>

#include "controls/ui/plotstyle.h"
#include "controls/ui/tracecursor.h"
#include "controls/ui/traceplottable.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

QString WithUnit(double value, const ChartTrace& trace, bool sign) {
  QString text = QString::number(value, 'f', trace.Decimals);
  if (sign && !text.startsWith(u'-')) text.prepend(u'+');
  return trace.Unit.isEmpty() ? text : text + u' ' + trace.Unit;
}

}  // namespace

ChartTraces::ChartTraces(QCustomPlot& plot, QMenu& menu, const TraceHistory& history, const ChartView& view)
    : QObject(&plot), plot_(plot), menu_(menu), history_(history), view_(view) {}

void ChartTraces::Set(const std::vector<ChartTrace>& traces) {
  plot_.legend->clearItems();
  for (const ShownTrace& trace : traces_) plot_.removePlottable(trace.Plottable);
  menu_.clear();
  traces_.clear();
  selected_ = -1;
  for (const ChartTrace& settings : traces) {
    const int channel = Count();
    auto* plottable = new TracePlottable(plot_.xAxis, settings.SecondAxis ? plot_.yAxis2 : plot_.yAxis, history_,
                                         settings.HistoryIndex);
    plottable->SetFirstTime(view_.FirstTime());
    plottable->setName(settings.Name);
    QAction* toggle = menu_.addAction(settings.Name);
    toggle->setCheckable(true);
    toggle->setChecked(true);
    connect(toggle, &QAction::triggered, this, [this, channel](bool on) {
      Switch(channel, on);
      emit Toggled(channel, on);
    });
    traces_.push_back({settings, plottable, toggle});
  }
}

void ChartTraces::SetColours(const Palette& palette) {
  palette_ = &palette;
  for (const ShownTrace& trace : traces_)
    trace.Plottable->setPen(palette.traces[trace.Settings.PaletteIndex % palette.traces.size()]);
  RebuildLegend();
}

void ChartTraces::RebuildLegend() {
  // Entries are removed and added, never hidden: a hidden one leaves a hole.
  plot_.legend->clearItems();
  bool second = false;
  for (const ShownTrace& trace : traces_) {
    if (!trace.Offered) continue;
    trace.Plottable->addToLegend();
    if (!trace.On) plot_.legend->itemWithPlottable(trace.Plottable)->setTextColor(palette_->mutedText);
    second = second || (trace.On && trace.Settings.SecondAxis);
  }
  plot_.yAxis2->setTickLabels(second);
  WrapLegend(plot_);
}

std::vector<ChartTrace> ChartTraces::Settings() const {
  std::vector<ChartTrace> settings;
  for (const ShownTrace& trace : traces_) settings.push_back(trace.Settings);
  return settings;
}

void ChartTraces::SetOffered(int channel, bool offered) {
  ShownTrace& trace = traces_.at(static_cast<std::size_t>(channel));
  if (std::exchange(trace.Offered, offered) != offered) ShowState(trace);
}

void ChartTraces::Switch(int channel, bool on) {
  ShownTrace& trace = traces_.at(static_cast<std::size_t>(channel));
  if (std::exchange(trace.On, on) != on) ShowState(trace);
}

void ChartTraces::ShowState(ShownTrace& trace) {
  trace.Plottable->setVisible(trace.Visible());
  trace.Toggle->setVisible(trace.Offered);
  trace.Toggle->setChecked(trace.On);
  RebuildLegend();
  emit Changed();
}

void ChartTraces::CopyStates(const ChartTraces& other) {
  for (int channel = 0; channel < std::min(Count(), other.Count()); ++channel) {
    const ShownTrace& trace = other.traces_[static_cast<std::size_t>(channel)];
    SetOffered(channel, trace.Offered);
    Switch(channel, trace.On);
  }
  Select(other.selected_);
}

void ChartTraces::SetName(int channel, const QString& name) {
  ShownTrace& trace = traces_.at(static_cast<std::size_t>(channel));
  if (trace.Settings.Name == name) return;
  trace.Settings.Name = name;
  trace.Plottable->setName(name);
  trace.Toggle->setText(name);
  WrapLegend(plot_);
  emit Changed();
}

void ChartTraces::Select(int channel) {
  if (channel == selected_) return;
  selected_ = channel;
  for (int i = 0; i < Count(); ++i) traces_[static_cast<std::size_t>(i)].Plottable->SetStrong(i == channel);
  emit Changed();
}

void ChartTraces::TakeFirstTime() {
  for (const ShownTrace& trace : traces_) trace.Plottable->SetFirstTime(view_.FirstTime());
}

TraceColumn ChartTraces::Range(bool secondAxis) const {
  const ChartSpan span = view_.Shown();
  TraceColumn all;
  for (const ShownTrace& trace : traces_) {
    if (!trace.Visible() || trace.Settings.SecondAxis != secondAxis) continue;
    const TraceColumn range =
        history_.Range(trace.Settings.HistoryIndex, std::max(span.Begin, view_.FirstTime()), span.End);
    all = {std::min(all.Min, range.Min), std::max(all.Max, range.Max)};
  }
  return all;
}

std::vector<CursorRow> ChartTraces::RowsAt(std::int64_t time) const {
  std::vector<CursorRow> rows;
  const std::int64_t start = std::max(view_.Shown().Begin, view_.FirstTime());
  for (const ShownTrace& trace : traces_) {
    if (!trace.Visible()) continue;
    CursorRow row{trace.Settings.Name, u"–"_s, {}, trace.Plottable->pen().color()};
    const std::size_t index = trace.Settings.HistoryIndex;
    const auto here = history_.LastUpTo(index, time);
    if (here && here->Time >= view_.FirstTime() && time <= history_.LastTime() &&
        !history_.GapBetween(index, here->Time, time)) {
      const double value = static_cast<double>(here->Value);
      row.Value = WithUnit(value, trace.Settings, false);
      if (const auto first = history_.FirstFrom(index, start); first && first->Time <= here->Time)
        row.Delta = WithUnit(value - static_cast<double>(first->Value), trace.Settings, true);
    }
    rows.push_back(row);
  }
  return rows;
}

std::vector<CsvColumn> ChartTraces::Columns() const {
  std::vector<CsvColumn> columns;
  for (const ShownTrace& trace : traces_) {
    if (!trace.Visible()) continue;
    const QString& unit = trace.Settings.Unit;
    QString heading = trace.Settings.Name;
    const QString inBrackets = u"(%1)"_s.arg(unit);
    // Some names say the unit themselves: "Proc. Power (W)", "THERM= %".
    const bool said = unit.isEmpty() || heading.endsWith(inBrackets) || heading.endsWith(u"= "_s + unit);
    if (!said) heading += u' ' + inBrackets;
    columns.push_back({trace.Settings.HistoryIndex, heading.toStdString()});
  }
  return columns;
}

void ChartTraces::Trigger(const QCPAbstractPlottable* plottable) {
  for (const ShownTrace& trace : traces_) {
    if (trace.Plottable != plottable) continue;
    // The entry is still in use by the library when it tells of the click, and switching the trace makes it anew.
    QMetaObject::invokeMethod(trace.Toggle, &QAction::trigger, Qt::QueuedConnection);
  }
}

}  // namespace krx
