// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QCustomPlot;
class QFont;

namespace krx {

struct Palette;

/// Colours and fonts every chart of the program shares: card as ground, thin grid, muted numbers.
void StylePlot(QCustomPlot& plot, const Palette& palette, const QFont& font);

/// Puts the legend into a row of its own above the picture, entries from the left.
void PlaceLegendOnTop(QCustomPlot& plot);

/// Lets as many legend entries stand in a row as fit the plot's width.
void WrapLegend(QCustomPlot& plot);

}  // namespace krx
