// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/outlinedstyle.h"

#include <QPainter>
#include <QStyleOption>

#include "controls/ui/palette.h"

namespace krx {
namespace {

constexpr double boxRadius = 2;
constexpr double fieldRadius = 3;
constexpr double focusWidth = 2;

/// An outline inside the rectangle, in the accent while the widget has the focus.
void DrawOutline(QPainter& painter, const QStyleOption& option, double radius) {
  const Palette& colours = Palette::For(option.palette);
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool focused = enabled && option.state.testFlag(QStyle::State_HasFocus);
  const double width = focused ? focusWidth : 1;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(focused ? colours.accent : enabled ? colours.outline : colours.line, width));
  painter.setBrush(Qt::NoBrush);
  const double inset = width / 2;
  painter.drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), radius, radius);
  painter.restore();
}

}  // namespace

// Fusion takes an outline from the window's colour made darker, which on a dark window cannot be seen.
OutlinedStyle::OutlinedStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void OutlinedStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
  if (element == PE_FrameFocusRect) return DrawOutline(*painter, *option, fieldRadius);
  QProxyStyle::drawPrimitive(element, option, painter, widget);
  if (element == PE_IndicatorCheckBox) DrawOutline(*painter, *option, boxRadius);
  if (element == PE_IndicatorRadioButton) DrawOutline(*painter, *option, option->rect.height() / 2.0);
  if (element == PE_PanelButtonCommand) DrawOutline(*painter, *option, fieldRadius);
  const auto* const frame = qstyleoption_cast<const QStyleOptionFrame*>(option);
  // The line edit inside a combo box or a spin box has no frame of its own.
  if (element == PE_PanelLineEdit && frame != nullptr && frame->lineWidth > 0)
    DrawOutline(*painter, *option, fieldRadius);
}

void OutlinedStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                       const QWidget* widget) const {
  QProxyStyle::drawComplexControl(control, option, painter, widget);
  if (control == CC_ComboBox || control == CC_SpinBox) DrawOutline(*painter, *option, fieldRadius);
}

QSize OutlinedStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                      const QWidget* widget) const {
  QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(option);
  if (type != CT_PushButton || button == nullptr) return size;
  const int line = option->fontMetrics.height();
  const int text = option->fontMetrics.size(Qt::TextShowMnemonic, button->text).width();
  return size.expandedTo({text + 2 * line, line * 8 / 5});
}

}  // namespace krx
