// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/xychart.h"

#include <QEvent>
#include <QVBoxLayout>
#include <cmath>

#include "controls/ui/palette.h"
#include "controls/ui/plotlibrary.h"
#include "controls/ui/plotstyle.h"

namespace krx {

using namespace Qt::StringLiterals;

XyChart::XyChart(const XyAxis& x, const XyAxis& y, QWidget* parent) : QWidget(parent), plot_(new QCustomPlot) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(plot_);
  plot_->setAccessibleName(u"%1 over %2"_s.arg(y.Title, x.Title));
  PlaceLegendOnTop(*plot_);
  plot_->xAxis->setLabel(x.Title);
  plot_->xAxis->setRange(x.Min, x.Max);
  plot_->yAxis->setLabel(y.Title);
  plot_->yAxis->setRange(y.Min, y.Max);
  plot_->xAxis2->setTickLabels(false);
  plot_->yAxis2->setTickLabels(false);
  Restyle();
}

void XyChart::SetTraces(const std::vector<XyTrace>& traces) {
  plot_->legend->clearItems();
  plot_->clearPlottables();
  traces_.clear();
  for (const XyTrace& settings : traces) {
    auto* curve = new QCPCurve(plot_->xAxis, plot_->yAxis);
    curve->setName(settings.Name);
    traces_.push_back({settings, curve, {}});
  }
  Restyle();
}

void XyChart::AddPoint(int trace, double x, double y) {
  Trace& target = traces_.at(static_cast<std::size_t>(trace));
  if (!std::isfinite(x) || !std::isfinite(y) || !target.Points.emplace(x, y).second) return;
  target.Curve->addData(x, y);
  Redraw();
}

void XyChart::ClearPoints() {
  for (Trace& trace : traces_) {
    trace.Points.clear();
    trace.Curve->data()->clear();
  }
  for (QCPItemText* label : labels_) plot_->removeItem(label);
  labels_.clear();
  Redraw();
}

int XyChart::PointCount(int trace) const {
  return static_cast<int>(traces_.at(static_cast<std::size_t>(trace)).Points.size());
}

void XyChart::SetTraceVisible(int trace, bool visible) {
  traces_.at(static_cast<std::size_t>(trace)).Curve->setVisible(visible);
  RebuildLegend();
}

void XyChart::SetTraceName(int trace, const QString& name) {
  traces_.at(static_cast<std::size_t>(trace)).Curve->setName(name);
  RebuildLegend();
}

void XyChart::AddLabel(const QString& text, double share) {
  auto* label = new QCPItemText(plot_);
  label->setText(text);
  label->setPositionAlignment(Qt::AlignTop | Qt::AlignHCenter);
  label->position->setType(QCPItemPosition::ptAxisRectRatio);
  label->position->setCoords(share, 0.01);
  label->setFont(font());
  label->setColor(Palette::For(*this).mutedText);
  labels_.push_back(label);
  Redraw();
}

void XyChart::Restyle() {
  const Palette& palette = Palette::For(*this);
  for (const Trace& trace : traces_) {
    const QColor colour = palette.traces[trace.Settings.PaletteIndex % palette.traces.size()];
    trace.Curve->setPen(QPen(colour, 1.5, trace.Settings.Style));
  }
  for (QCPItemText* label : labels_) {
    label->setFont(font());
    label->setColor(palette.mutedText);
  }
  StylePlot(*plot_, palette, font());
  RebuildLegend();
}

void XyChart::RebuildLegend() {
  plot_->legend->clearItems();
  for (const Trace& trace : traces_)
    if (trace.Curve->visible() && !trace.Curve->name().trimmed().isEmpty()) trace.Curve->addToLegend();
  WrapLegend(*plot_);
  Redraw();
}

// Many points may come in one go; they share one redraw, and a hidden chart waits until it is shown.
void XyChart::Redraw() {
  if (isVisible()) plot_->replot(QCustomPlot::rpQueuedReplot);
}

void XyChart::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  const auto type = event->type();
  if (type == QEvent::PaletteChange || type == QEvent::ApplicationPaletteChange || type == QEvent::FontChange)
    Restyle();
}

void XyChart::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  Redraw();
}

void XyChart::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  WrapLegend(*plot_);
}

}  // namespace krx
