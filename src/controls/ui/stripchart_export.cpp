// SPDX-License-Identifier: GPL-3.0-or-later
// The strip chart's visible part for a file.
#include <QBuffer>
#include <QCoreApplication>
#include <QPageSize>
#include <QPdfWriter>
#include <QScopeGuard>
#include <algorithm>

#include "controls/ui/palette.h"
#include "controls/ui/plotlibrary.h"
#include "controls/ui/stripchart.h"
#include "controls/ui/tracecursor.h"
#include "controls/ui/zoomarrows.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

QByteArray Png(QCustomPlot& plot) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  plot.toPixmap(0, 0, 2).save(&bytes, "PNG");
  return bytes.data();
}

// Not the library's own savePdf, which writes to a file straight away and does not tell when the disk is full.
QByteArray Pdf(QCustomPlot& plot, const QString& title) {
  QBuffer bytes;
  bytes.open(QIODevice::WriteOnly);
  QPdfWriter writer(&bytes);
  writer.setTitle(title);
  writer.setCreator(QCoreApplication::applicationName());
  // A point of the picture is a point of the screen, so that fonts keep their proportion.
  writer.setResolution(plot.logicalDpiX());
  const QSizeF points = QSizeF(plot.size()) * 72 / plot.logicalDpiX();
  writer.setPageSize(QPageSize(points, QPageSize::Point, QString(), QPageSize::ExactMatch));
  writer.setPageMargins({});
  QCPPainter painter(&writer);
  painter.setMode(QCPPainter::pmVectorized);
  painter.setWindow(plot.rect());
  plot.toPainter(&painter, plot.width(), plot.height());
  painter.end();
  return bytes.data();
}

QString WithUnit(const QString& title, const QString& unit) {
  return title.isEmpty() || unit.isEmpty() ? title : u"%1 (%2)"_s.arg(title, unit);
}

}  // namespace

QByteArray StripChart::Picture(ChartFormat format, const QStringList& notes) {
  const QString left = plot_->yAxis->label();
  const QString right = plot_->yAxis2->label();
  auto* const head = new QCPTextElement(plot_, notes.join(u'\n'), font());  // the layout's
  const auto restore = qScopeGuard([&] {
    plot_->plotLayout()->remove(head);
    plot_->plotLayout()->simplify();
    plot_->xAxis->setLabel({});
    SetAxisTitles(left, right);
    arrows_->setVisible(true);
    Restyle(Palette::For(*this));
  });
  head->setTextFlags(Qt::AlignLeft | Qt::AlignVCenter);
  plot_->plotLayout()->insertRow(0);
  plot_->plotLayout()->setRowStretchFactor(0, 0.001);
  plot_->plotLayout()->addElement(0, 0, head);
  plot_->xAxis->setLabel(u"Time (h:m:s)"_s);
  plot_->yAxis->setLabel(WithUnit(left, leftUnit_));
  plot_->yAxis2->setLabel(WithUnit(right, rightUnit_));
  arrows_->setVisible(false);
  cursor_->setVisible(false);
  PlaceAxes();
  const Palette& palette = format == ChartFormat::Pdf ? Palette::Light() : Palette::For(*this);
  Restyle(palette);
  head->setTextColor(palette.text);
  return format == ChartFormat::Pdf ? Pdf(*plot_, notes.value(0)) : Png(*plot_);
}

ChartCsv StripChart::Values(const QStringList& notes) const {
  std::vector<std::string> lines;
  for (const QString& note : notes) lines.push_back(note.toStdString());
  ChartSpan span = view_.Shown();
  span.Begin = std::max(span.Begin, view_.FirstTime());
  return {history_, span, traces_->Columns(), lines};
}

}  // namespace krx
