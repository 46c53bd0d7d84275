// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/stripchart.h"

#include <QBoxLayout>
#include <QEvent>
#include <QLabel>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "controls/ui/chartnavigation.h"
#include "controls/ui/chartredraw.h"
#include "controls/ui/plotlibrary.h"
#include "controls/ui/plotstyle.h"
#include "controls/ui/tracecursor.h"
#include "controls/ui/traceplottable.h"
#include "controls/ui/zoomarrows.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

// The next of 1, 2, 2.5, 5, 10 times a power of ten.
double RoundUp(double value) {
  const double power = std::pow(10, std::floor(std::log10(value)));
  for (const double step : {1.0, 2.0, 2.5, 5.0})
    if (value <= step * power) return step * power;
  return 10 * power;
}

// On the frame itself the trace of a fan that stands still could not be seen.
double RoomBelowZero(double min, double max) {
  return min == 0 ? -max / 50 : min;
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
  // The plot also redraws by itself, when it is resized: the axes are to be right then too.
  connect(plot_, &QCustomPlot::beforeReplot, this, &StripChart::PlaceAxes);
  redraw_ = new ChartRedraw(*this, [this] { plot_->replot(QCustomPlot::rpQueuedRefresh); });
  connect(traces_, &ChartTraces::Changed, redraw_, &ChartRedraw::Request);
  connect(traces_, &ChartTraces::Toggled, this, &StripChart::TraceToggled);
  ConnectNavigation();
  Restyle(Palette::For(*this));
  ShowMode();
}

void StripChart::SetWaitBudget(WaitBudget* budget) {
  redraw_->SetWaitBudget(budget);
}

void StripChart::ConnectNavigation() {
  const auto* navigation = new ChartNavigation(plot_, arrows_);
  connect(navigation, &ChartNavigation::ZoomRequested, this, [this](double factor, double share) {
    view_.Zoom(factor, share);
    UserChanged();
  });
  connect(navigation, &ChartNavigation::PanRequested, this, [this](double share) {
    view_.Pan(share);
    UserChanged();
  });
  connect(navigation, &ChartNavigation::FrameRequested, this, &StripChart::ZoomToFrame);
  connect(navigation, &ChartNavigation::EdgeGrabbed, this, [this] {
    const QCPRange left = plot_->yAxis->range();
    const QCPRange right = plot_->yAxis2->range();
    grabbed_ = {view_.Shown(), {left.lower, left.upper}, {right.lower, right.upper}, Mode() == ChartMode::Live};
  });
  connect(navigation, &ChartNavigation::EdgeDragged, this, &StripChart::DragEdge);
  connect(navigation, &ChartNavigation::LiveRequested, this, &StripChart::Live);
  connect(navigation, &ChartNavigation::CursorRequested, this, &StripChart::MoveCursor);
  connect(navigation, &ChartNavigation::CursorStepRequested, this, [this](int pixels) {
    const QRect area = plot_->axisRect()->rect();
    QPointF pixel = cursor_->Position().value_or(area.center());
    pixel.setX(std::clamp(pixel.x() + pixels, double(area.left()), double(area.right())));
    MoveCursor(pixel);
    plot_->setAccessibleDescription(cursor_->Text());
  });
  connect(navigation, &ChartNavigation::OverlayChanged, this, [this] { plot_->layer(u"overlay"_s)->replot(); });
  connect(navigation, &ChartNavigation::LegendClicked, traces_, &ChartTraces::Trigger);
}

void StripChart::SetTraces(const std::vector<ChartTrace>& traces) {
  traces_->Set(traces);
  Restyle(Palette::For(*this));
  redraw_->Request();
}

void StripChart::SetCaption(const QString& caption) {
  caption_->setText(caption);
  NamePlot();
}

void StripChart::SetSubject(const QString& subject) {
  setAccessibleName(subject);
  NamePlot();
}

void StripChart::NamePlot() {
  const QString name = accessibleName() + u" over time"_s;
  plot_->setAccessibleName(Caption().isEmpty() ? name : name + u", "_s + Caption());
}

QString StripChart::Caption() const {
  return caption_->text();
}

void StripChart::SetAxisTitles(const QString& left, const QString& right) {
  plot_->yAxis->setLabel(left);
  plot_->yAxis2->setLabel(right);
  redraw_->Request();
}

void StripChart::SetAxisUnits(const QString& left, const QString& right) {
  leftUnit_ = left;
  rightUnit_ = right;
}

void StripChart::SetValueRange(double min, double max) {
  left_ = {min, max};
  redraw_->Request();
}

void StripChart::SetSecondValueRange(double min, double max) {
  right_ = {min, max};
  redraw_->Request();
}

void StripChart::CopySettings(const StripChart& other) {
  SetTraces(other.traces_->Settings());
  traces_->CopyStates(*other.traces_);
  SetCaption(other.Caption());
  SetAxisTitles(other.plot_->yAxis->label(), other.plot_->yAxis2->label());
  SetAxisUnits(other.leftUnit_, other.rightUnit_);
  left_ = other.left_;
  right_ = other.right_;
  SetWaitBudget(other.redraw_->Budget());
}

void StripChart::Clear() {
  view_.Clear();
  values_ = ValueMode::Set;
  traces_->TakeFirstTime();
  ShowMode();
  redraw_->Request();
}

void StripChart::Posted() {
  if (Mode() == ChartMode::Paused && history_.LastTime() >= view_.Shown().End) return;
  redraw_->Posted();
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
  plot_->layer(u"overlay"_s)->replot();
}

StripChart::ValueRange StripChart::ValuesOn(bool secondAxis) const {
  const TraceColumn found = traces_->Range(secondAxis);
  if (found.Empty()) return secondAxis ? right_ : left_;
  return {static_cast<double>(found.Min), static_cast<double>(found.Max)};
}

void StripChart::PlaceAxes() {
  const ChartSpan shown = view_.Shown();
  plot_->xAxis->setRange(ToSeconds(shown.Begin), ToSeconds(shown.End));
  const auto ticker = plot_->xAxis->ticker().dynamicCast<QCPAxisTickerTime>();
  if (ticker) {
    const bool fine = shown.Length() < 10'000'000;
    ticker->setTimeFormat(fine ? u"%h:%m:%s.%z"_s : u"%h:%m:%s"_s);
    // No more than leave some room between them.
    const int label = plot_->fontMetrics().horizontalAdvance(fine ? u"00:00:00.000"_s : u"00:00:00"_s);
    ticker->setTickCount(std::clamp(plot_->axisRect()->width() * 2 / (label * 3), 2, 5));
  }
  if (values_ == ValueMode::Set) {
    const double highest = ValuesOn(true).Max;
    plot_->yAxis->setRange(RoomBelowZero(left_.Min, left_.Max), left_.Max);
    const double top = highest > right_.Max ? RoundUp(highest) : right_.Max;
    plot_->yAxis2->setRange(RoomBelowZero(right_.Min, top), top);
  } else if (values_ == ValueMode::Fitted) {
    for (const bool second : {false, true}) {
      const ValueRange found = ValuesOn(second);
      const double margin = std::max((found.Max - found.Min) * 0.05, 0.01);
      (second ? plot_->yAxis2 : plot_->yAxis)->setRange(found.Min - margin, found.Max + margin);
    }
  }
}

void StripChart::UserChanged() {
  ShowMode();
  redraw_->Request();
  emit RangeChanged();
}

void StripChart::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  switch (event->type()) {
    case QEvent::PaletteChange:
    case QEvent::ApplicationPaletteChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
      Restyle(Palette::For(*this));
      redraw_->Request();
      break;
    case QEvent::ActivationChange:  // also tells that a minimised window is back
      redraw_->CatchUp();
      break;
    default:
      break;
  }
}

void StripChart::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  redraw_->CatchUp();
}

void StripChart::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  WrapLegend(*plot_);
}

}  // namespace krx
