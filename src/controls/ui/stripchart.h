// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <optional>
#include <vector>

#include "controls/chartcsv.h"
#include "controls/chartview.h"
#include "controls/tracehistory.h"
#include "controls/ui/charttraces.h"
#include "controls/waitbudget.h"

class QBoxLayout;
class QCustomPlot;
class QLabel;
class QMenu;
class QToolButton;

namespace krx {

class ChartRedraw;
class TraceCursor;
class ZoomArrows;
enum class ChartEdge;
struct Palette;

enum class ChartFormat { Png, Pdf, Csv };

/// The strip chart: shows a part of a TraceHistory over elapsed time. The history is the caller's and goes on whatever
/// the chart shows. Mouse: drag = zoom to the frame, drag with Shift or the middle button = pan, wheel = zoom the time,
/// double click = live, arrows at the edges = zoom. Keys: left and right pan, + and - zoom, Home = live, Ctrl with left
/// and right moves the cursor.
class StripChart : public QWidget {
  Q_OBJECT

 public:
  explicit StripChart(const TraceHistory& history, QWidget* parent = nullptr);

  void SetTraces(const std::vector<ChartTrace>& traces);
  int TraceCount() const { return traces_->Count(); }
  const ChartTrace& Trace(int channel) const { return traces_->At(channel); }

  /// A hidden trace has no legend entry either. What the user switches off keeps its entry and stays off when it is
  /// shown again.
  void SetTraceVisible(int channel, bool visible) { traces_->SetOffered(channel, visible); }
  bool TraceVisible(int channel) const { return traces_->Visible(channel); }
  void SetTraceName(int channel, const QString& name) { traces_->SetName(channel, name); }
  /// Draws this channel's trace stronger than the others; -1 none.
  void SetSelectedTrace(int channel) { traces_->Select(channel); }

  void SetCaption(const QString& caption);
  /// What the traces are, for a screen reader: "Voltages".
  void SetSubject(const QString& subject);
  QString Caption() const;
  /// Titles of the left and the right axis; the right axis appears with the first trace on it.
  void SetAxisTitles(const QString& left, const QString& right);
  /// Units that an exported picture says behind the titles.
  void SetAxisUnits(const QString& left, const QString& right);
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

  /// The visible part for a file: a picture (PNG twice as fine as the screen, PDF as vectors for paper) with the notes
  /// above it, or the visible traces' rows with the notes before them. The first note is also the drawing's title.
  QByteArray Picture(ChartFormat format, const QStringList& notes);
  ChartCsv Values(const QStringList& notes) const;

  /// Adds a widget at the right end of the tool row, such as the page's own button.
  void AddTool(QWidget* tool);

  QCustomPlot* Plot() const { return plot_; }

 signals:
  /// The user wants the visible part in a file: ask for a name, and save what Picture or Values gives.
  void ExportRequested(krx::ChartFormat format);
  /// The user zoomed, panned or chose another mode.
  void RangeChanged();
  /// The user switched a trace on or off.
  void TraceToggled(int channel, bool visible);

 protected:
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void NamePlot();
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
  void ShowMode();
  void PlaceAxes();
  ValueRange ValuesOn(bool secondAxis) const;
  void ZoomToFrame(const QRect& frame);
  void DragEdge(ChartEdge edge, double factor);
  void MoveCursor(std::optional<QPointF> pixel);
  void UserChanged();

  const TraceHistory& history_;
  ChartView view_;
  ValueRange left_{0, 100};
  ValueRange right_{0, 5000};
  ValueMode values_ = ValueMode::Set;
  QString leftUnit_;
  QString rightUnit_;
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
  ChartTraces* traces_ = nullptr;
  ChartRedraw* redraw_ = nullptr;
};

}  // namespace krx
