// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QWidget>
#include <cstddef>
#include <set>
#include <utility>
#include <vector>

class QCPCurve;
class QCPItemText;
class QCustomPlot;

namespace krx {

/// One trace of an x-y chart. Its place in the list given to SetTraces is its number.
struct XyTrace {
  QString Name;                  ///< legend entry; blank: none
  std::size_t PaletteIndex = 0;  ///< 0..8 of Palette::traces
  Qt::PenStyle Style = Qt::SolidLine;
};

/// One axis: title and fixed range.
struct XyAxis {
  QString Title;
  double Min = 0;
  double Max = 100;
};

/// A chart of y over x. Points are joined in the order they are added. A trace takes a point only once, so a test that
/// runs for days costs as much as the places it came by.
class XyChart : public QWidget {
  Q_OBJECT

 public:
  XyChart(const XyAxis& x, const XyAxis& y, QWidget* parent = nullptr);

  void SetTraces(const std::vector<XyTrace>& traces);
  void AddPoint(int trace, double x, double y);  ///< ignored when not finite
  void ClearPoints();                            ///< of every trace; the labels go too
  int PointCount(int trace) const;

  void SetTraceVisible(int trace, bool visible);
  void SetTraceName(int trace, const QString& name);  ///< blank leaves the legend

  /// A text at the top of the picture, at this fraction of its width.
  void AddLabel(const QString& text, double share);

  QCustomPlot* Plot() const { return plot_; }

 protected:
  void changeEvent(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Trace {
    XyTrace Settings;
    QCPCurve* Curve = nullptr;
    std::set<std::pair<double, double>> Points;
  };
  void Restyle();
  void RebuildLegend();
  void Redraw();

  QCustomPlot* plot_;
  std::vector<Trace> traces_;
  std::vector<QCPItemText*> labels_;
};

}  // namespace krx
