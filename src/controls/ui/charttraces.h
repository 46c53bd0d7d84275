// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>
#include <cstddef>
#include <vector>

#include "controls/chartcsv.h"
#include "controls/chartview.h"
#include "controls/tracehistory.h"
#include "controls/ui/palette.h"

class QAction;
class QCPAbstractPlottable;
class QCustomPlot;
class QMenu;

namespace krx {

class TracePlottable;
struct CursorRow;

/// One trace of a chart. Its place in the list given to SetTraces is its channel number.
struct ChartTrace {
  std::size_t HistoryIndex = 0;  ///< which trace of the history
  QString Name;                  ///< legend, menu, cursor, export
  std::size_t PaletteIndex = 0;  ///< colour: 0..8 of Palette::traces
  bool SecondAxis = false;       ///< measured against the right axis
  QString Unit;                  ///< behind the cursor's value
  int Decimals = 2;              ///< of the cursor's value
};

/// The traces of a strip chart: their lines, their entries in legend and menu, and what they hold in the part of the
/// history that the view shows. History and view are the chart's.
class ChartTraces : public QObject {
  Q_OBJECT

 public:
  /// The menu gets an entry for each trace, which switches it on and off.
  ChartTraces(QCustomPlot& plot, QMenu& menu, const TraceHistory& history, const ChartView& view);

  /// Lines and menu entries; colours are to follow.
  void Set(const std::vector<ChartTrace>& traces);
  void SetColours(const Palette& palette);  ///< of lines and legend

  std::vector<ChartTrace> Settings() const;
  int Count() const { return static_cast<int>(traces_.size()); }
  const ChartTrace& At(int channel) const { return traces_.at(static_cast<std::size_t>(channel)).Settings; }
  bool Visible(int channel) const { return traces_.at(static_cast<std::size_t>(channel)).Visible(); }
  int Selected() const { return selected_; }  ///< -1 none

  /// A trace that is not offered is nowhere to be seen: it has no line, no legend and no menu entry.
  void SetOffered(int channel, bool offered);
  /// A trace that is switched off keeps its entries, its line is gone.
  void Switch(int channel, bool on);
  /// What is offered, switched on and selected there.
  void CopyStates(const ChartTraces& other);
  void SetName(int channel, const QString& name);
  void Select(int channel);
  /// Draws nothing older than the view's first time.
  void TakeFirstTime();

  /// Smallest and largest value in sight on one of the axes.
  TraceColumn Range(bool secondAxis) const;
  /// The visible traces' values at this time, and how they differ from the first in sight.
  std::vector<CursorRow> RowsAt(std::int64_t time) const;
  /// The visible traces with their units.
  std::vector<CsvColumn> Columns() const;

  /// As if the user chose the trace in the menu.
  void Trigger(const QCPAbstractPlottable* plottable);

 signals:
  /// The picture is another one.
  void Changed();
  /// The user switched a trace on or off.
  void Toggled(int channel, bool visible);

 private:
  struct ShownTrace {
    ChartTrace Settings;
    TracePlottable* Plottable = nullptr;
    QAction* Toggle = nullptr;
    bool Offered = true;
    bool On = true;
    bool Visible() const { return Offered && On; }
  };
  void ShowState(ShownTrace& trace);
  void RebuildLegend();

  QCustomPlot& plot_;
  QMenu& menu_;
  const TraceHistory& history_;
  const ChartView& view_;
  std::vector<ShownTrace> traces_;
  const Palette* palette_ = &Palette::Light();
  int selected_ = -1;
};

}  // namespace krx
