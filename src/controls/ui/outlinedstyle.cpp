// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/outlinedstyle.h"

#include <QPainter>
#include <QPushButton>
#include <QStyleOption>

#include "controls/ui/palette.h"

namespace krx {

using namespace Qt::StringLiterals;
namespace {

constexpr double boxRadius = 2.5;
constexpr double fieldRadius = 3;
constexpr double focusWidth = 2;

/// A rounded frame inside the rectangle, with a ring in the accent while the widget has the focus.
void DrawFrame(QPainter& painter, const QStyleOption& option, double radius, const QBrush& ground, bool accented) {
  const Palette& colours = Palette::For(option.palette);
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool focused = enabled && option.state.testFlag(QStyle::State_HasFocus);
  const QColor line = !enabled ? colours.line : focused || accented ? colours.accent : colours.outline;
  const double width = focused ? focusWidth : 1;
  const double inset = width / 2;
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(line, width));
  painter.setBrush(ground);
  painter.drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), radius, radius);
}

/// The ground of a box or an option: the accent where it is ticked.
QBrush Ground(const QStyleOption& option, bool ticked) {
  const Palette& colours = Palette::For(option.palette);
  if (!ticked) return option.palette.base();
  return option.state.testFlag(QStyle::State_Enabled) ? colours.accent : colours.mutedText;
}

void DrawCheckBox(QPainter& painter, const QStyleOption& option) {
  const bool ticked = option.state.testFlag(QStyle::State_On);
  DrawFrame(painter, option, boxRadius, Ground(option, ticked), ticked);
  if (!ticked) return;
  const QRectF box(option.rect);
  const auto at = [&](double x, double y) { return QPointF(box.x() + x * box.width(), box.y() + y * box.height()); };
  painter.setPen(
      QPen(Palette::For(option.palette).card, box.width() * 0.13, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.drawPolyline(QPolygonF{at(0.26, 0.52), at(0.43, 0.69), at(0.75, 0.33)});
}

void DrawRadioButton(QPainter& painter, const QStyleOption& option) {
  const bool chosen = option.state.testFlag(QStyle::State_On);
  DrawFrame(painter, option, option.rect.height() / 2.0, option.palette.base(), chosen);
  if (!chosen) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(Ground(option, true));
  const double dot = option.rect.width() * 0.25;
  painter.drawEllipse(QRectF(option.rect).center(), dot, dot);
}

void DrawButton(QPainter& painter, const QStyleOption& option) {
  const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
  const bool isDefault = button != nullptr && button->features.testFlag(QStyleOptionButton::DefaultButton);
  QColor face = option.palette.button().color();
  const bool dark = &Palette::For(option.palette) == &Palette::Dark();
  if (option.state & (QStyle::State_Sunken | QStyle::State_On)) {
    face = dark ? face.darker(125) : face.darker(108);
  } else if (option.state.testFlag(QStyle::State_MouseOver) && option.state.testFlag(QStyle::State_Enabled)) {
    face = dark ? face.lighter(118) : face.darker(103);
  }
  DrawFrame(painter, option, fieldRadius, face, isDefault || option.state.testFlag(QStyle::State_On));
}

}  // namespace

OutlinedStyle::OutlinedStyle() : QProxyStyle(u"Fusion"_s) {}

// Fusion takes an outline from the window's colour made darker, which on a dark window cannot be seen.
void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
  painter->save();
  switch (element) {
    case PE_IndicatorCheckBox:
      DrawCheckBox(*painter, *option);
      break;
    case PE_IndicatorRadioButton:
      DrawRadioButton(*painter, *option);
      break;
    case PE_PanelButtonCommand:
      DrawButton(*painter, *option);
      break;
    case PE_FrameLineEdit:
      DrawFrame(*painter, *option, fieldRadius, Qt::NoBrush, false);
      break;
    case PE_FrameFocusRect: {
      // The button's own frame shows it already.
      if (qobject_cast<const QPushButton*>(widget) == nullptr) {
        QStyleOption focused(*option);
        focused.state |= State_HasFocus | State_Enabled;
        DrawFrame(*painter, focused, fieldRadius, Qt::NoBrush, true);
      }
      break;
    }
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
  painter->restore();
}

void OutlinedStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                       const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control != CC_ComboBox && control != CC_SpinBox) return;
  painter->save();
  DrawFrame(*painter, *option, fieldRadius, Qt::NoBrush, false);
  painter->restore();
}

QSize OutlinedStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                      const QWidget* widget) const {
  QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  const int line = option->fontMetrics.height();
  const int height = line * 8 / 5;  // one height for all, so that a row of them stands on one line
  if (type == CT_LineEdit || type == CT_ComboBox) return size.expandedTo({0, height});
  const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
  if (type != CT_PushButton || button == nullptr) return size;
  const int text = option->fontMetrics.size(Qt::TextShowMnemonic, button->text).width();
  return size.expandedTo({text + 3 * line / 2, height});
}

}  // namespace krx
