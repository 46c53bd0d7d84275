// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/ui/switchsymbol.h"

#include <QPainter>
#include <array>
#include <string_view>
#include <utility>

#include "board/switchmap.h"
#include "controls/ui/palette.h"
#include "controls/ui/texts.h"

namespace krx {
namespace {

struct Connection {
  std::string_view Pin;
  std::string_view Circuit;
};

// By number of the switch. A two-wire fan needs both outer switches of its group, a three-wire fan the middle one.
constexpr std::array<Connection, switchMap.size()> connections{{
    {"Tach1", "2-wire"},  {"Tach1", "3-wire"},  {"Tach1", "2-wire"},  {"Tach2", "2-wire"},  {"Tach2", "3-wire"},
    {"Tach2", "2-wire"},  {"Tach3", "2-wire"},  {"Tach3", "3-wire"},  {"Tach3", "2-wire"},  {"Tach4", "2-wire"},
    {"Tach4", "3-wire"},  {"Tach4", "2-wire"},  {"Remote1", "diode"}, {"Remote1", "diode"}, {"Remote1", "diode"},
    {"Remote2", "diode"}, {"Remote2", "diode"}, {"Remote2", "diode"}, {"VID0", "drive"},    {"VID1", "drive"},
    {"VID2", "drive"},    {"VID3", "drive"},    {"VID4", "drive"},    {"Tach4", "THERM"},   {"PWM2", "PWM out"},
    {"PWM2", "Alert"},    {"Tach4", "tach"},    {"PWM3", "PWM out"},  {"Spare", "-"},       {"Spare", "-"},
    {"Spare", "-"},       {"Spare", "-"},
}};

constexpr std::string_view longestLabel = "Remote1";

}  // namespace

SwitchSymbol::SwitchSymbol(std::size_t index)
    : pin_(QtText(connections.at(index).Pin)), circuit_(QtText(connections.at(index).Circuit)) {
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SwitchSymbol::SetState(LampState state) {
  if (std::exchange(state_, state) != state) update();
}

QSize SwitchSymbol::sizeHint() const {
  const QFontMetrics metrics = fontMetrics();
  return {2 * metrics.horizontalAdvance(QtText(longestLabel)) + 4 * metrics.horizontalAdvance(u'm'),
          metrics.height() * 3 / 2};
}

void SwitchSymbol::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const Palette& colours = Palette::For(*this);
  const QFontMetricsF metrics(font());
  const double labels = metrics.horizontalAdvance(QtText(longestLabel)) + metrics.horizontalAdvance(u' ');
  const double middle = height() / 2.0;
  const double em = metrics.horizontalAdvance(u'm');
  const double from = labels + em / 2;
  const double to = width() - labels - em / 2;
  const double gap = (to - from) / 3;

  painter.setPen(colours.mutedText);
  painter.drawText(QRectF(0, 0, labels, height()), Qt::AlignRight | Qt::AlignVCenter, pin_);
  painter.drawText(QRectF(width() - labels, 0, labels, height()), Qt::AlignLeft | Qt::AlignVCenter, circuit_);

  const bool closed = state_ == LampState::Closed;
  painter.setPen(QPen(closed ? colours.ok : state_ == LampState::NotRead ? colours.mutedText : colours.bad, em / 8));
  painter.drawLine(QPointF(from, middle), QPointF(from + gap, middle));
  painter.drawLine(QPointF(to - gap, middle), QPointF(to, middle));
  // The blade: down on the second contact, or lifted off it.
  painter.drawLine(QPointF(from + gap, middle), QPointF(to - gap, closed ? middle : middle - metrics.height() / 2));
  painter.setBrush(colours.card);
  for (const double x : {from + gap, to - gap}) painter.drawEllipse(QPointF(x, middle), em / 5, em / 5);
}

}  // namespace krx
