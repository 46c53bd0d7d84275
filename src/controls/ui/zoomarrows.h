// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPolygonF>
#include <array>
#include <optional>

#include "controls/ui/palette.h"
#include "controls/ui/plotlibrary.h"

namespace krx {

enum class ChartEdge { Left, Right, Top, Bottom };

/// A double arrow in the middle of each edge of the picture. Dragged outward it stretches the picture away from the
/// opposite edge, dragged inward it compresses it.
class ZoomArrows : public QCPAbstractItem {
 public:
  explicit ZoomArrows(QCustomPlot* plot);

  void SetColours(const Palette& palette) { palette_ = &palette; }
  /// The edge whose arrow is grabbed at this pixel.
  std::optional<ChartEdge> EdgeAt(const QPointF& pixel) const;
  void SetHovered(std::optional<ChartEdge> edge) { hovered_ = edge; }
  std::optional<ChartEdge> Hovered() const { return hovered_; }

  double selectTest(const QPointF& pos, bool onlySelectable, QVariant* details = nullptr) const override;

 protected:
  void draw(QCPPainter* painter) override;

 private:
  QPointF Middle(ChartEdge edge) const;
  double Reach() const;  ///< half the length of an arrow

  std::optional<ChartEdge> hovered_;
  const Palette* palette_ = &Palette::Light();
};

/// The new length of a range, as a factor, when an arrow of an edge was dragged by so many pixels over a picture that
/// is `size` pixels long: what lay under the arrow follows it. 0.1 at the least, 10 at the most.
double DragFactor(ChartEdge edge, const QPointF& dragged, const QSizeF& size);

}  // namespace krx
