// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <QWidget>
#include <cstddef>
#include <optional>
#include <vector>

#include "controls/chartview.h"
#include "controls/tracehistory.h"
#include "controls/ui/tracecursor.h"
#include "controls/ui/zoomarrows.h"
#include "controls/waitbudget.h"

class QAction;
class QBoxLayout;
class QLabel;
class QMenu;
class QToolButton;

namespace krx {

class ChartNavigation;
class TracePlottable;

/// One trace of a chart. Its place in the list given to SetTraces is its channel number.
struct ChartTrace {
  std::size_t HistoryIndex = 0;  ///< which trace of the history
  QString Name;                  ///< legend, menu, cursor, export
  std::size_t PaletteIndex = 0;  ///< colour: 0..8 of Palette::traces
  bool SecondAxis = false;       ///< measured against the right axis
  QString Unit;                  ///< behind the cursor's value
  int Decimals = 2;              ///< of the cursor's value
};

enum class ChartFormat { Png, Pdf, Csv };

/// The strip chart: shows a part of a TraceHistory over elapsed time. The history is the caller's and goes on whatever
/// the chart shows. Mouse: drag = zoom to the frame, drag with Shift or the middle button = pan, wheel = zoom the time,
/// double click = live, arrows at the edges = zoom. Keys: left and right pan, + and - zoom, Home = live, Ctrl with left
/// and right moves the cursor.
class StripChart : public QWidget {
  Q_OBJECT

 public:
  explicit StripChart(const TraceHistory& history, QWidget* parent = nullptr);
  ~StripChart() override;

  void SetTraces(const std::vector<ChartTrace>& traces);
  int TraceCount() const { return static_cast<int>(traces_.size()); }
  const ChartTrace& Trace(int channel) const { return traces_.at(static_cast<std::size_t>(channel)).Settings; }

  void SetTraceVisible(int channel, bool visible);
  bool TraceVisible(int channel) const { return traces_.at(static_cast<std::size_t>(channel)).Visible; }
  void SetTraceName(int channel, const QString& name);
  /// Draws this channel's trace stronger than the others; -1 none.
  void SetSelectedTrace(int channel);

  void SetCaption(const QString& caption);
  QString Caption() const;
  /// Titles of the left and the right axis; the right axis appears with the first trace on it.
  void SetAxisTitles(const QString& left, const QString& right);
  /// Range of the left axis. A view the user zoomed keeps its range until it is live again.
  void SetValueRange(double min, double max);
  /// Range of the right axis; grows by itself when a value lies above it.
  void SetSecondValueRange(double min, double max);

  /// With a budget, which must outlive the chart, a redraw that would make a transfer late is put off until no
  /// transfer waits.
  void SetWaitBudget(WaitBudget* budget);

  /// Takes over captions, titles, ranges, the wait budget and traces with names, visibility and selection, so that both
  /// look alike.
  void CopySettings(const StripChart& other);

  /// Shows nothing that was posted before now. The history, and other charts over it, keep everything.
  void Clear();

  /// To be called once at the end of a tick that appended to the history. Redraws at the end of every fifth, or when
  /// 50 ms have passed since the last picture; nothing is drawn while the chart is hidden or shows a past part.
  void Posted();

  void Live();
  void Pause();
  void Fit();  ///< the whole run and every value in it
  ChartMode Mode() const { return view_.Mode(); }
  ChartSpan Shown() const { return view_.Shown(); }

  /// Writes the visible part: the picture (PNG twice as fine as the screen, PDF as vectors) or the visible traces'
  /// rows. False when the file cannot be written.
  bool Export(ChartFormat format, const QString& fileName);

  /// Adds a widget at the right end of the tool row, such as the page's own button.
  void AddTool(QWidget* tool);

  QCustomPlot* Plot() const { return plot_; }

 signals:
  /// The user wants the visible part in a file: ask for a name and call Export.
  void ExportWanted(krx::ChartFormat format);
  /// The user zoomed, panned or chose another mode.
  void RangeChanged();
  /// The user switched a trace on or off.
  void TraceToggled(int channel, bool visible);

 protected:
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct ShownTrace {
    ChartTrace Settings;
    TracePlottable* Plottable = nullptr;
    QAction* Toggle = nullptr;
    bool Visible = true;
  };
  struct ValueRange {
    double Min = 0;
    double Max = 100;
    bool operator==(const ValueRange&) const = default;
  };
  enum class ValueMode { Set, Fitted, User };

  void BuildTools();
  void BuildPlot();
  void ConnectNavigation();
  void Restyle(const Palette& palette);
  void RebuildLegend();
  void ShowMode();
  void PlaceAxes();
  ValueRange ValuesOn(bool secondAxis, ChartSpan span) const;
  void ZoomToFrame(const QRect& frame);
  void DragEdge(ChartEdge edge, double factor);
  std::vector<CursorRow> CursorRows(std::int64_t time) const;
  void MoveCursor(std::optional<QPointF> pixel);
  void UserChanged();
  void RequestRedraw();
  void Redraw();
  bool Drawable() const;
  bool SavePicture(ChartFormat format, const QString& fileName);
  bool SaveValues(const QString& fileName) const;

  const TraceHistory& history_;
  ChartView view_;
  std::vector<ShownTrace> traces_;
  int selected_ = -1;
  ValueRange left_{0, 100};
  ValueRange right_{0, 5000};
  ValueMode values_ = ValueMode::Set;
  struct {
    ChartSpan Time;
    ValueRange Left, Right;
    bool Live = false;
  } grabbed_;  // what an edge arrow started from

  QLabel* caption_ = nullptr;
  QBoxLayout* tools_ = nullptr;
  QToolButton* live_ = nullptr;
  QToolButton* pause_ = nullptr;
  QToolButton* fit_ = nullptr;
  QMenu* traceMenu_ = nullptr;
  QCustomPlot* plot_ = nullptr;
  TraceCursor* cursor_ = nullptr;
  ZoomArrows* arrows_ = nullptr;

  QElapsedTimer sinceRedraw_;
  QTimer redraw_;
  WaitBudget* budget_ = nullptr;
  double redrawSeconds_ = 0;  // what the last one took
  int ticks_ = 0;
  bool dirty_ = true;
};

}  // namespace krx
