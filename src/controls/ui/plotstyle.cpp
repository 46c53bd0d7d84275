// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/plotstyle.h"

#include <QFontMetrics>
#include <QLocale>
#include <algorithm>

#include "controls/ui/palette.h"
#include "controls/ui/plotlibrary.h"

namespace krx {

void StylePlot(QCustomPlot& plot, const Palette& palette, const QFont& font) {
  plot.setFont(font);
  QLocale numbers = QLocale::c();  // as everywhere else in the program
  numbers.setNumberOptions(QLocale::OmitGroupSeparator);
  plot.setLocale(numbers);
  plot.setBackground(palette.card);
  for (QCPAxis* axis : {plot.xAxis, plot.yAxis, plot.xAxis2, plot.yAxis2}) {
    axis->setVisible(true);
    axis->setTickLength(0, 0);
    axis->setSubTicks(false);
    axis->setTickPen(Qt::NoPen);
    axis->setBasePen(QPen(palette.line, 0));
    axis->setTickLabelColor(palette.mutedText);
    axis->setLabelColor(palette.mutedText);
    axis->setTickLabelFont(font);
    axis->setLabelFont(font);
    axis->grid()->setPen(QPen(palette.grid, 0));
    axis->grid()->setZeroLinePen(QPen(palette.line, 0));
  }
  plot.legend->setFont(font);
  plot.legend->setTextColor(palette.text);
  for (int i = 0; i < plot.legend->itemCount(); ++i) {
    auto* entry = qobject_cast<QCPPlottableLegendItem*>(plot.legend->item(i));
    if (!entry) continue;  // the rest of an incomplete row counts too
    entry->setFont(font);
    entry->setTextColor(palette.text);
  }
  const int height = QFontMetrics(font).height();
  plot.legend->setIconSize(height, height);
}

void PlaceLegendOnTop(QCustomPlot& plot) {
  auto* row = new QCPLayoutGrid;
  plot.plotLayout()->insertRow(0);
  plot.plotLayout()->addElement(0, 0, row);
  row->addElement(0, 0, plot.legend);
  row->addElement(0, 1, new QCPLayoutElement(&plot));
  row->setColumnStretchFactor(0, 0.001);
  plot.plotLayout()->setRowStretchFactor(0, 0.001);
  plot.plotLayout()->setRowSpacing(2);
  plot.plotLayout()->setMargins(QMargins(2, 2, 2, 2));
  plot.legend->setVisible(true);
  plot.legend->setBorderPen(Qt::NoPen);
  plot.legend->setBrush(Qt::NoBrush);
  plot.legend->setFillOrder(QCPLayoutGrid::foColumnsFirst);
  plot.legend->setMargins(QMargins(0, 0, 0, 0));
  plot.legend->setRowSpacing(2);
}

void WrapLegend(QCustomPlot& plot) {
  const QFontMetrics metrics(plot.legend->font());
  int widest = 1;
  for (int i = 0; i < plot.legend->itemCount(); ++i)
    if (auto* entry = qobject_cast<QCPPlottableLegendItem*>(plot.legend->item(i)))
      widest = std::max(widest, metrics.horizontalAdvance(entry->plottable()->name()));
  const int entry = widest + plot.legend->iconSize().width() + plot.legend->iconTextPadding() +
                    plot.legend->columnSpacing() + metrics.averageCharWidth();
  plot.legend->setWrap(std::max(plot.width() / entry, 1));
  plot.legend->setFillOrder(QCPLayoutGrid::foColumnsFirst, true);
}

}  // namespace krx
