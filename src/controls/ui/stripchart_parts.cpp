// SPDX-License-Identifier: GPL-3.0-or-later
// How a strip chart is built and coloured; what it does is in stripchart.cpp.
#include <QAction>
#include <QBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QToolButton>
#include <utility>

#include "controls/ui/focusring.h"
#include "controls/ui/palette.h"
#include "controls/ui/plotlibrary.h"
#include "controls/ui/plotstyle.h"
#include "controls/ui/stripchart.h"
#include "controls/ui/tracecursor.h"
#include "controls/ui/zoomarrows.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

QToolButton* MakeTool(const QString& name, const QString& text, const QString& hint) {
  auto* button = new QToolButton;
  button->setObjectName(name);
  button->setText(text);
  button->setToolTip(hint);
  button->setAccessibleName(text);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::StrongFocus);
  return button;
}

}  // namespace

void StripChart::BuildTools() {
  tools_ = new QHBoxLayout;
  caption_ = new QLabel;
  QFont bold = caption_->font();
  bold.setBold(true);
  caption_->setFont(bold);
  tools_->addWidget(caption_, 1);

  live_ = MakeTool(u"live"_s, u"Live"_s, u"Follow the newest readings (Home, double click)"_s);
  pause_ = MakeTool(u"pause"_s, u"Pause"_s, u"Freeze the view; measuring continues"_s);
  fit_ = MakeTool(u"fit"_s, u"Fit"_s, u"Show the whole run and all values"_s);
  for (QToolButton* button : {live_, pause_, fit_}) {
    button->setCheckable(true);
    tools_->addWidget(button);
  }
  connect(live_, &QToolButton::clicked, this, &StripChart::Live);
  connect(pause_, &QToolButton::clicked, this, &StripChart::Pause);
  connect(fit_, &QToolButton::clicked, this, &StripChart::Fit);

  const auto addMenu = [this](const QString& name, const QString& text, const QString& hint) {
    QToolButton* button = MakeTool(name, text, hint);
    auto* menu = new QMenu(button);
    button->setMenu(menu);
    button->setPopupMode(QToolButton::InstantPopup);
    tools_->addWidget(button);
    return menu;
  };
  traceMenu_ = addMenu(u"traces"_s, u"Traces"_s, u"Select the traces to show"_s);
  QMenu* exports = addMenu(u"export"_s, u"Export"_s, u"Save the visible part to a file"_s);
  for (const auto& [format, text] :
       {std::pair{ChartFormat::Png, u"Picture (PNG)..."_s}, std::pair{ChartFormat::Pdf, u"Drawing (PDF)..."_s},
        std::pair{ChartFormat::Csv, u"Values (CSV)..."_s}})
    connect(exports->addAction(text), &QAction::triggered, this,
            [this, format = format] { emit ExportRequested(format); });
}

void StripChart::AddTool(QWidget* tool) {
  tools_->addWidget(tool);
}

void StripChart::BuildPlot() {
  plot_ = new QCustomPlot;
  plot_->setObjectName(u"plot"_s);
  plot_->setContextMenuPolicy(Qt::NoContextMenu);
  new FocusRing(*plot_);  // the plot owns it
  plot_->setToolTip(
      u"Drag the arrows at the edges of this graph to zoom in and out.\n"
      u"Drag a frame to zoom, drag with Shift to move, use the wheel to zoom the time axis, double click for the live view."_s);

  PlaceLegendOnTop(*plot_);
  plot_->xAxis->setTicker(QSharedPointer<QCPAxisTickerTime>::create());
  plot_->xAxis2->setTickLabels(false);
  arrows_ = new ZoomArrows(plot_);  // before the cursor, whose box lies above them
  cursor_ = new TraceCursor(plot_, [this](std::int64_t time) { return traces_->RowsAt(time); });
  traces_ = new ChartTraces(*plot_, *traceMenu_, history_, view_);
}

void StripChart::Restyle(const Palette& palette) {
  StylePlot(*plot_, palette, font());
  traces_->SetColours(palette);
  cursor_->SetColours(palette);
  arrows_->SetColours(palette);
  QColor frame = palette.accent;
  plot_->selectionRect()->setPen(QPen(frame, 0));
  frame.setAlpha(40);
  plot_->selectionRect()->setBrush(frame);
  WrapLegend(*plot_);
}

void StripChart::ShowMode() {
  const ChartMode mode = Mode();
  for (const auto& [button, own] :
       {std::pair{live_, ChartMode::Live}, std::pair{pause_, ChartMode::Paused}, std::pair{fit_, ChartMode::Whole}}) {
    const QSignalBlocker quiet(button);
    button->setChecked(mode == own);
  }
}

}  // namespace krx
