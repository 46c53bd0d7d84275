// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/stripchart.h"

#include <QAction>
#include <QBoxLayout>
#include <QEvent>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QScopeGuard>
#include <QToolButton>
#include <algorithm>
#include <cmath>
#include <fstream>

#include "controls/chartcsv.h"
#include "controls/ui/chartnavigation.h"
#include "controls/ui/plotstyle.h"
#include "controls/ui/traceplottable.h"

namespace krx {

namespace {

constexpr int kTicksPerRedraw = 5;
constexpr qint64 kPostedMilliseconds = 50;  // five ticks of 10 ms; slower ticks need not wait for the fifth
constexpr qint64 kUserMilliseconds = 16;
constexpr double kRedrawMargin = 1.3;  // of what the last redraw took

QString WithUnit(double value, const ChartTrace& trace, bool sign) {
  QString text = QString::number(value, 'f', trace.Decimals);
  if (sign && !text.startsWith(QLatin1Char('-'))) text.prepend(QLatin1Char('+'));
  return trace.Unit.isEmpty() ? text : text + QLatin1Char(' ') + trace.Unit;
}

// The next of 1, 2, 2.5, 5, 10 times a power of ten.
double RoundUp(double value) {
  const double power = std::pow(10, std::floor(std::log10(value)));
  for (const double step : {1.0, 2.0, 2.5, 5.0})
    if (value <= step * power) return step * power;
  return 10 * power;
}

}  // namespace

StripChart::StripChart(const TraceHistory& history, QWidget* parent)
    : QWidget(parent), history_(history), view_(history) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  BuildTools();
  BuildPlot();
  column->addLayout(tools_);
  column->addWidget(plot_, 1);
  setFocusProxy(plot_);
  // The plot also redraws by itself, when it is resized: the axes are to be right then too.
  connect(plot_, &QCustomPlot::beforeReplot, this, &StripChart::PlaceAxes);
  redraw_.setSingleShot(true);
  connect(&redraw_, &QTimer::timeout, this, &StripChart::Redraw);
  sinceRedraw_.start();
  ConnectNavigation();
  Restyle(Palette::For(*this));
  ShowMode();
}

StripChart::~StripChart() {
  if (budget_) budget_->Forget(this);
}

void StripChart::SetWaitBudget(WaitBudget* budget) {
  if (budget_) budget_->Forget(this);
  budget_ = budget;
}

void StripChart::ConnectNavigation() {
  const auto* navigation = new ChartNavigation(plot_, arrows_);
  connect(navigation, &ChartNavigation::ZoomWanted, this, [this](double factor, double share) {
    view_.Zoom(factor, share);
    UserChanged();
  });
  connect(navigation, &ChartNavigation::PanWanted, this, [this](double share) {
    view_.Pan(share);
    UserChanged();
  });
  connect(navigation, &ChartNavigation::FrameWanted, this, &StripChart::ZoomToFrame);
  connect(navigation, &ChartNavigation::EdgeGrabbed, this, [this] {
    const QCPRange left = plot_->yAxis->range();
    const QCPRange right = plot_->yAxis2->range();
    grabbed_ = {view_.Shown(), {left.lower, left.upper}, {right.lower, right.upper}, Mode() == ChartMode::Live};
  });
  connect(navigation, &ChartNavigation::EdgeDragged, this, &StripChart::DragEdge);
  connect(navigation, &ChartNavigation::LiveWanted, this, &StripChart::Live);
  connect(navigation, &ChartNavigation::CursorWanted, this, &StripChart::MoveCursor);
  connect(navigation, &ChartNavigation::CursorStepWanted, this, [this](int pixels) {
    const QRect area = plot_->axisRect()->rect();
    QPointF pixel = cursor_->Position().value_or(area.center());
    pixel.setX(std::clamp(pixel.x() + pixels, double(area.left()), double(area.right())));
    MoveCursor(pixel);
    plot_->setAccessibleDescription(cursor_->Text());
  });
  connect(navigation, &ChartNavigation::OverlayChanged, this, [this] { plot_->layer("overlay")->replot(); });
  connect(navigation, &ChartNavigation::LegendClicked, this, [this](QCPAbstractPlottable* plottable) {
    for (const ShownTrace& trace : traces_) {
      if (trace.Plottable != plottable) continue;
      // The entry is still in use by the library when it tells of the click, and hiding the trace deletes it.
      QMetaObject::invokeMethod(trace.Toggle, &QAction::trigger, Qt::QueuedConnection);
    }
  });
}

void StripChart::SetTraces(const std::vector<ChartTrace>& traces) {
  plot_->legend->clearItems();
  for (const ShownTrace& trace : traces_) plot_->removePlottable(trace.Plottable);
  traceMenu_->clear();
  traces_.clear();
  selected_ = -1;
  for (const ChartTrace& settings : traces) {
    const int channel = TraceCount();
    auto* plottable = new TracePlottable(plot_->xAxis, settings.SecondAxis ? plot_->yAxis2 : plot_->yAxis, history_,
                                         settings.HistoryIndex);
    plottable->SetFirstTime(view_.FirstTime());
    plottable->setName(settings.Name);
    QAction* toggle = traceMenu_->addAction(settings.Name);
    toggle->setCheckable(true);
    toggle->setChecked(true);
    connect(toggle, &QAction::triggered, this, [this, channel](bool on) {
      SetTraceVisible(channel, on);
      emit TraceToggled(channel, on);
    });
    traces_.push_back({settings, plottable, toggle, true});
  }
  Restyle(Palette::For(*this));
  RebuildLegend();
  RequestRedraw();
}

void StripChart::SetTraceVisible(int channel, bool visible) {
  ShownTrace& trace = traces_.at(static_cast<std::size_t>(channel));
  if (trace.Visible == visible) return;
  trace.Visible = visible;
  trace.Plottable->setVisible(visible);
  trace.Toggle->setChecked(visible);
  RebuildLegend();
  RequestRedraw();
}

void StripChart::SetTraceName(int channel, const QString& name) {
  ShownTrace& trace = traces_.at(static_cast<std::size_t>(channel));
  if (trace.Settings.Name == name) return;
  trace.Settings.Name = name;
  trace.Plottable->setName(name);
  trace.Toggle->setText(name);
  WrapLegend(*plot_);
  RequestRedraw();
}

void StripChart::SetSelectedTrace(int channel) {
  if (channel == selected_) return;
  selected_ = channel;
  for (int i = 0; i < TraceCount(); ++i) traces_[static_cast<std::size_t>(i)].Plottable->SetStrong(i == channel);
  RequestRedraw();
}

void StripChart::SetCaption(const QString& caption) {
  caption_->setText(caption);
  plot_->setAccessibleName(caption.isEmpty() ? tr("Strip chart") : tr("Strip chart %1").arg(caption));
}

QString StripChart::Caption() const {
  return caption_->text();
}

void StripChart::SetAxisTitles(const QString& left, const QString& right) {
  plot_->yAxis->setLabel(left);
  plot_->yAxis2->setLabel(right);
  RequestRedraw();
}

void StripChart::SetValueRange(double min, double max) {
  left_ = {min, max};
  RequestRedraw();
}

void StripChart::SetSecondValueRange(double min, double max) {
  right_ = {min, max};
  RequestRedraw();
}

void StripChart::CopySettings(const StripChart& other) {
  std::vector<ChartTrace> settings;
  for (const ShownTrace& trace : other.traces_) settings.push_back(trace.Settings);
  SetTraces(settings);
  for (int i = 0; i < TraceCount(); ++i) SetTraceVisible(i, other.TraceVisible(i));
  SetSelectedTrace(other.selected_);
  SetCaption(other.Caption());
  SetAxisTitles(other.plot_->yAxis->label(), other.plot_->yAxis2->label());
  left_ = other.left_;
  right_ = other.right_;
  SetWaitBudget(other.budget_);
}

void StripChart::Clear() {
  view_.Clear();
  values_ = ValueMode::Set;
  for (const ShownTrace& trace : traces_) trace.Plottable->SetFirstTime(view_.FirstTime());
  ShowMode();
  RequestRedraw();
}

void StripChart::Posted() {
  if (Mode() == ChartMode::Paused && history_.LastTime() >= view_.Shown().End) return;
  dirty_ = true;
  ++ticks_;
  if (Drawable() && (ticks_ >= kTicksPerRedraw || sinceRedraw_.elapsed() >= kPostedMilliseconds)) Redraw();
}

void StripChart::Live() {
  view_.Live();
  values_ = ValueMode::Set;
  UserChanged();
}

void StripChart::Pause() {
  view_.Pause();
  UserChanged();
}

void StripChart::Fit() {
  view_.Whole();
  values_ = ValueMode::Fitted;
  UserChanged();
}

void StripChart::ZoomToFrame(const QRect& frame) {
  constexpr int kThin = 8;  // a frame this thin means the other direction only
  const QRect area = plot_->axisRect()->rect();
  const QRect inside = frame.intersected(area);
  if (inside.width() <= kThin && inside.height() <= kThin) return;
  if (inside.height() > kThin) {
    for (QCPAxis* axis : {plot_->yAxis, plot_->yAxis2})
      axis->setRange(axis->pixelToCoord(inside.bottom()), axis->pixelToCoord(inside.top()));
    values_ = ValueMode::User;
  }
  if (inside.width() > kThin)
    view_.Show({ToMicroseconds(plot_->xAxis->pixelToCoord(inside.left())),
                ToMicroseconds(plot_->xAxis->pixelToCoord(inside.right()))});
  else
    view_.Pause();
  UserChanged();
}

void StripChart::DragEdge(ChartEdge edge, double factor) {
  const auto length = static_cast<double>(grabbed_.Time.Length());
  const std::int64_t wanted = std::llround(length * factor);
  if (edge == ChartEdge::Right) view_.Show({grabbed_.Time.Begin, grabbed_.Time.Begin + wanted});
  if (edge == ChartEdge::Left && !grabbed_.Live) view_.Show({grabbed_.Time.End - wanted, grabbed_.Time.End});
  if (edge == ChartEdge::Left && grabbed_.Live)
    view_.Zoom(static_cast<double>(wanted) / static_cast<double>(view_.Shown().Length()), 1);
  if (edge == ChartEdge::Top || edge == ChartEdge::Bottom) {
    const auto stretch = [&](QCPAxis* axis, const ValueRange& from) {
      const double span = (from.Max - from.Min) * factor;
      edge == ChartEdge::Top ? axis->setRange(from.Min, from.Min + span) : axis->setRange(from.Max - span, from.Max);
    };
    stretch(plot_->yAxis, grabbed_.Left);
    stretch(plot_->yAxis2, grabbed_.Right);
    values_ = ValueMode::User;
  }
  UserChanged();
}

void StripChart::MoveCursor(std::optional<QPointF> pixel) {
  if (!pixel && !cursor_->Position()) return;
  cursor_->SetPosition(pixel);
  // Only the overlay: the traces below stay in their own buffer.
  plot_->layer("overlay")->replot();
}

std::vector<CursorRow> StripChart::CursorRows(std::int64_t time) const {
  std::vector<CursorRow> rows;
  const std::int64_t start = std::max(view_.Shown().Begin, view_.FirstTime());
  for (const ShownTrace& trace : traces_) {
    if (!trace.Visible) continue;
    CursorRow row{trace.Settings.Name, QStringLiteral("–"), {}, trace.Plottable->pen().color()};
    const std::size_t index = trace.Settings.HistoryIndex;
    const auto here = history_.LastUpTo(index, time);
    if (here && here->Time >= view_.FirstTime() && time <= history_.LastTime()) {
      const double value = static_cast<double>(here->Value);
      row.Value = WithUnit(value, trace.Settings, false);
      if (const auto first = history_.FirstFrom(index, start); first && first->Time <= here->Time)
        row.Delta = WithUnit(value - static_cast<double>(first->Value), trace.Settings, true);
    }
    rows.push_back(row);
  }
  return rows;
}

StripChart::ValueRange StripChart::ValuesOn(bool secondAxis, ChartSpan span) const {
  TraceColumn all;
  for (const ShownTrace& trace : traces_) {
    if (!trace.Visible || trace.Settings.SecondAxis != secondAxis) continue;
    const TraceColumn range =
        history_.Range(trace.Settings.HistoryIndex, std::max(span.Begin, view_.FirstTime()), span.End);
    all = {std::min(all.Min, range.Min), std::max(all.Max, range.Max)};
  }
  const ValueRange set = secondAxis ? right_ : left_;
  return all.Empty() ? set : ValueRange{static_cast<double>(all.Min), static_cast<double>(all.Max)};
}

void StripChart::PlaceAxes() {
  const ChartSpan shown = view_.Shown();
  plot_->xAxis->setRange(ToSeconds(shown.Begin), ToSeconds(shown.End));
  const auto ticker = plot_->xAxis->ticker().dynamicCast<QCPAxisTickerTime>();
  if (ticker) ticker->setTimeFormat(shown.Length() < 10'000'000 ? "%h:%m:%s.%z" : "%h:%m:%s");
  if (values_ == ValueMode::Set) {
    plot_->yAxis->setRange(left_.Min, left_.Max);
    const double highest = ValuesOn(true, shown).Max;
    plot_->yAxis2->setRange(right_.Min, highest > right_.Max ? RoundUp(highest) : right_.Max);
  } else if (values_ == ValueMode::Fitted) {
    for (const bool second : {false, true}) {
      const ValueRange found = ValuesOn(second, shown);
      const double margin = std::max((found.Max - found.Min) * 0.05, 0.01);
      (second ? plot_->yAxis2 : plot_->yAxis)->setRange(found.Min - margin, found.Max + margin);
    }
  }
}

void StripChart::UserChanged() {
  ShowMode();
  RequestRedraw();
  emit RangeChanged();
}

bool StripChart::Drawable() const {
  return isVisible() && !window()->isMinimized();
}

void StripChart::RequestRedraw() {
  dirty_ = true;
  if (!Drawable() || redraw_.isActive()) return;
  const qint64 passed = sinceRedraw_.elapsed();
  redraw_.start(passed >= kUserMilliseconds ? 0 : static_cast<int>(kUserMilliseconds - passed));
}

void StripChart::Redraw() {
  if (!Drawable()) return;
  redraw_.stop();
  if (budget_ && redrawSeconds_ * kRedrawMargin > budget_->SecondsLeft()) {
    budget_->CallAfterwards(this, [this] { Redraw(); });
    return;
  }
  ticks_ = 0;
  dirty_ = false;
  sinceRedraw_.restart();
  plot_->replot(QCustomPlot::rpQueuedRefresh);
  redrawSeconds_ = static_cast<double>(sinceRedraw_.nsecsElapsed()) * 1e-9;
  sinceRedraw_.restart();
}

bool StripChart::Export(ChartFormat format, const QString& fileName) {
  return format == ChartFormat::Csv ? SaveValues(fileName) : SavePicture(format, fileName);
}

bool StripChart::SavePicture(ChartFormat format, const QString& fileName) {
  const auto restore = qScopeGuard([this] {
    arrows_->setVisible(true);
    Restyle(Palette::For(*this));
    RequestRedraw();
  });
  arrows_->setVisible(false);
  PlaceAxes();
  if (format == ChartFormat::Png) return plot_->savePng(fileName, 0, 0, 2);
  Restyle(Palette::Light());  // a drawing is for paper
  return plot_->savePdf(fileName, 0, 0, QCP::epAllowCosmetic, QString(), Caption());
}

bool StripChart::SaveValues(const QString& fileName) const {
  std::vector<CsvColumn> columns;
  for (const auto& [settings, plottable, toggle, visible] : traces_) {
    if (!visible) continue;
    const QString unit = settings.Unit.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(settings.Unit);
    columns.push_back({settings.HistoryIndex, (settings.Name + unit).toStdString()});
  }
  ChartSpan span = view_.Shown();
  span.Begin = std::max(span.Begin, view_.FirstTime());
  std::ofstream file(QFile::encodeName(fileName).toStdString(), std::ios::binary);
  WriteChartCsv(file, history_, span, columns);
  file.close();
  return !file.fail();
}

void StripChart::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::ApplicationPaletteChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
      Restyle(Palette::For(*this));
      ShowMode();
      RequestRedraw();
      break;
    case QEvent::ActivationChange:  // also tells that a minimised window is back
      if (dirty_) RequestRedraw();
      break;
    default:
      break;
  }
}

void StripChart::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (dirty_) RequestRedraw();
}

void StripChart::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  WrapLegend(*plot_);
}

}  // namespace krx
