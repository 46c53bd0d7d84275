// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/zoomarrows.h"

#include <QFontMetricsF>
#include <algorithm>

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kEdges{ChartEdge::Left, ChartEdge::Right, ChartEdge::Top, ChartEdge::Bottom};

bool Upright(ChartEdge edge) {
  return edge == ChartEdge::Top || edge == ChartEdge::Bottom;
}

}  // namespace

double DragFactor(ChartEdge edge, const QPointF& dragged, const QSizeF& size) {
  const double outward = edge == ChartEdge::Left    ? -dragged.x()
                         : edge == ChartEdge::Right ? dragged.x()
                         : edge == ChartEdge::Top   ? -dragged.y()
                                                    : dragged.y();
  const double length = std::max(Upright(edge) ? size.height() : size.width(), 1.0);
  return std::clamp(length / std::max(length + outward, length / 10), 0.1, 10.0);
}

ZoomArrows::ZoomArrows(QCustomPlot* plot) : QCPAbstractItem(plot) {
  setLayer(u"overlay"_s);
}

double ZoomArrows::Reach() const {
  return QFontMetricsF(mParentPlot->font()).height() * 0.6;
}

QPointF ZoomArrows::Middle(ChartEdge edge) const {
  const QRectF area = clipRect();
  const double inset = Reach() * 1.2;
  switch (edge) {
    case ChartEdge::Left:
      return {area.left() + inset, area.center().y()};
    case ChartEdge::Right:
      return {area.right() - inset, area.center().y()};
    case ChartEdge::Top:
      return {area.center().x(), area.top() + inset};
    case ChartEdge::Bottom:
      return {area.center().x(), area.bottom() - inset};
  }
  return {};
}

std::optional<ChartEdge> ZoomArrows::EdgeAt(const QPointF& pixel) const {
  for (const ChartEdge edge : kEdges)
    if ((pixel - Middle(edge)).manhattanLength() <= Reach() * 1.5) return edge;
  return std::nullopt;
}

double ZoomArrows::selectTest(const QPointF&, bool, QVariant*) const {
  return -1;
}

void ZoomArrows::draw(QCPPainter* painter) {
  painter->setAntialiasing(true);
  painter->setPen(Qt::NoPen);
  const double reach = Reach();
  for (const ChartEdge edge : kEdges) {
    painter->setBrush(hovered_ == edge ? palette_->accent : palette_->mutedText);
    painter->setOpacity(hovered_ == edge ? 1 : 0.45);
    painter->save();
    painter->translate(Middle(edge));
    if (Upright(edge)) painter->rotate(90);
    for (const double side : {-1.0, 1.0}) {
      const double tip = side * reach;
      painter->drawPolygon(
          QPolygonF({{tip, 0}, {side * reach * 0.25, -reach * 0.5}, {side * reach * 0.25, reach * 0.5}}));
    }
    painter->restore();
  }
  painter->setOpacity(1);
}

}  // namespace krx
