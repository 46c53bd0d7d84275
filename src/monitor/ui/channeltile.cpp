// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/channeltile.h"

#include <QPainter>
#include <QPainterPath>

#include "controls/ui/copymenu.h"
#include "controls/ui/indicator.h"
#include "controls/ui/palette.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr double radius = 8;
constexpr int barWidth = 4;

struct CaptionColours {
  QColor ground;  ///< invalid: none
  QColor text;
};

/// quiet: the letters of an unmarked caption.
CaptionColours ColoursOf(CaptionMark mark, const QColor& quiet) {
  switch (mark) {
    case CaptionMark::Selected:
      return {fixedcolours::brightGreen, fixedcolours::onBrightGreen};
    case CaptionMark::FirstShown:
      return {fixedcolours::darkGreen, fixedcolours::onDarkGreen};
    case CaptionMark::Plain:
      break;
  }
  return {{}, quiet};
}

}  // namespace

ChannelTile::ChannelTile(Indicator* lamp, QWidget* parent) : QAbstractButton(parent), lamp_(lamp) {
  lamp_->setParent(this);
  lamp_->setFocusPolicy(Qt::NoFocus);
  setFocusPolicy(Qt::StrongFocus);
  setCursor(Qt::PointingHandCursor);
  setMaximumHeight(fontMetrics().height() * 3);
}

void ChannelTile::SetTrace(std::optional<int> trace) {
  if (trace_ == trace) return;
  trace_ = trace;
  update();
}

void ChannelTile::SetReading(const QString& value, const QString& unit) {
  if (value_ == value && unit_ == unit) return;
  value_ = value;
  unit_ = unit;
  Describe();
}

void ChannelTile::SetAlarm(const QString& words) {
  if (alarm_ == words) return;
  alarm_ = words;
  Describe();
}

void ChannelTile::Describe() {
  const QString reading = value_ + u' ' + unit_;
  setProperty(copyTextProperty, reading);
  setAccessibleDescription(alarm_.isEmpty() ? reading : reading + u", "_s + alarm_);
  update();
}

void ChannelTile::SetMark(CaptionMark mark) {
  if (mark_ == mark) return;
  mark_ = mark;
  update();
}

void ChannelTile::SetOld(bool old) {
  if (old_ == old) return;
  old_ = old;
  update();
}

QFont ChannelTile::ValueFont() const {
  QFont result = font();
  result.setPointSizeF(font().pointSizeF() * 1.3);
  result.setBold(true);
  return result;
}

QFont ChannelTile::UnitFont() const {
  QFont result = font();
  result.setPointSizeF(font().pointSizeF() * 0.9);
  return result;
}

int ChannelTile::LampLeft() const {
  return barWidth + fontMetrics().height() * 2 / 3;
}

QSize ChannelTile::sizeHint() const {
  const int line = fontMetrics().height();
  return {fontMetrics().averageCharWidth() * 34 + line, line * 12 / 5};
}

QSize ChannelTile::minimumSizeHint() const {
  const int line = fontMetrics().height();
  return {fontMetrics().averageCharWidth() * 24 + line, line * 17 / 10};
}

void ChannelTile::resizeEvent(QResizeEvent*) {
  const QSize wanted = lamp_->sizeHint().expandedTo(lamp_->minimumSize());
  lamp_->setGeometry(LampLeft(), (height() - wanted.height()) / 2, wanted.width(), wanted.height());
}

void ChannelTile::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void ChannelTile::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

void ChannelTile::paintEvent(QPaintEvent*) {
  const Palette& colours = Palette::For(*this);
  const bool selected = mark_ == CaptionMark::Selected || mark_ == CaptionMark::FirstShown;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);

  const bool alarm = !alarm_.isEmpty();
  const QColor quiet = alarm ? colours.text : colours.mutedText;  // muted letters would be too pale on red
  const double outline = selected || alarm || hasFocus() ? 1.6 : 1;
  const QRectF frame = QRectF(rect()).adjusted(outline / 2, outline / 2, -outline / 2, -outline / 2);
  QPainterPath shape;
  shape.addRoundedRect(frame, radius, radius);
  painter.fillPath(shape, isDown() ? colours.grid : alarm ? colours.AlarmGround() : colours.card);
  if (trace_) {
    painter.save();
    painter.setClipPath(shape);
    painter.fillRect(QRectF(0, 0, barWidth + 1, height()),
                     colours.traces[static_cast<std::size_t>(*trace_) % colours.traces.size()]);
    painter.restore();
  }
  painter.strokePath(shape, QPen(alarm          ? colours.bad
                                 : selected     ? colours.accent
                                 : hasFocus()   ? colours.text
                                 : underMouse() ? colours.mutedText
                                                : colours.line,
                                 outline, hasFocus() && !selected ? Qt::DashLine : Qt::SolidLine));
  if (selected && hasFocus()) {  // the accent alone says "selected": the focus is a second, inner line
    painter.setPen(QPen(colours.mutedText, 1, Qt::DotLine));
    painter.drawRoundedRect(frame.adjusted(2.5, 2.5, -2.5, -2.5), radius - 2, radius - 2);
  }

  const int gap = fontMetrics().averageCharWidth();
  const QFontMetrics unitMetrics(UnitFont());
  const QFontMetrics valueMetrics(ValueFont());
  double right = width() - gap * 1.5;
  const int baseline = (height() + valueMetrics.capHeight()) / 2;
  painter.setFont(UnitFont());
  painter.setPen(quiet);
  right -= unitMetrics.horizontalAdvance(unit_);
  painter.drawText(QPointF(right, baseline), unit_);
  right -= gap / 2.0 + valueMetrics.horizontalAdvance(value_);
  painter.setFont(ValueFont());
  if (!old_ && value_ != u"–"_s) painter.setPen(alarm ? colours.bad : colours.text);
  painter.drawText(QPointF(right, baseline), value_);
  if (old_ && !value_.isEmpty()) {
    painter.setFont(UnitFont());
    right -= unitMetrics.horizontalAdvance(u"old"_s) + gap;
    painter.drawText(QPointF(right, baseline), u"old"_s);
  }

  const double captionLeft = lamp_->geometry().right() + gap;
  const QFontMetrics captionMetrics(font());
  const QString caption =
      captionMetrics.elidedText(text(), Qt::ElideRight, static_cast<int>(right - captionLeft - gap));
  const CaptionColours captionColours = ColoursOf(mark_, quiet);
  const QRectF ground(captionLeft, (height() - captionMetrics.height() * 1.15) / 2,
                      captionMetrics.horizontalAdvance(caption) + gap * 1.5, captionMetrics.height() * 1.15);
  if (captionColours.ground.isValid()) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(captionColours.ground);
    painter.drawRoundedRect(ground, 4, 4);
  }
  painter.setFont(font());
  painter.setPen(captionColours.text);
  painter.drawText(ground.adjusted(gap * 0.75, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, caption);
}

}  // namespace krx
