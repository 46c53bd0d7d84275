// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/palette.h"

#include <QApplication>
#include <QVariant>
#include <QWidget>

#include "controls/ui/outlinedstyle.h"

namespace krx {

using namespace Qt::StringLiterals;
const Palette& Palette::Light() {
  static const Palette palette{
      .window = 0xf4f6f8,
      .card = 0xffffff,
      .raised = 0xffffff,
      .sunk = 0xf8fafc,
      .line = 0xd5dbe1,
      .outline = 0x8a95a1,
      .grid = 0xe6eaee,
      .text = 0x1d2733,
      .mutedText = 0x66727f,
      .accent = 0x0b6bcb,
      .ok = 0x1a7f37,
      .bad = 0xc62828,
      .traces = {0x0072B2, 0xD55E00, 0x009E73, 0xCC79A7, 0x8A6D00, 0x56B4E9, 0x7B3294, 0x444444, 0x999999},
  };
  return palette;
}

const Palette& Palette::Dark() {
  static const Palette palette{
      .window = 0x15191e,
      .card = 0x1c2229,
      .raised = 0x232a32,
      .sunk = 0x20262d,
      .line = 0x333c46,
      .outline = 0x6f7b87,
      .grid = 0x2a323b,
      .text = 0xe6ebf0,
      .mutedText = 0x93a0ad,
      .accent = 0x58a6ff,
      .ok = 0x3fb950,
      .bad = 0xff6b6b,
      .traces = {0x4FA8E0, 0xFF8A4C, 0x2CCB9B, 0xF0A3CC, 0xE0C040, 0x8FD3FF, 0xC79AE8, 0xD0D0D0, 0x8A8A8A},
  };
  return palette;
}

namespace {

QColor Mix(const QColor& ground, const QColor& tint, float share) {
  const auto mix = [share](float from, float to) { return from + (to - from) * share; };
  return QColor::fromRgbF(mix(ground.redF(), tint.redF()), mix(ground.greenF(), tint.greenF()),
                          mix(ground.blueF(), tint.blueF()));
}

}  // namespace

QColor Palette::AlarmGround() const {
  return Mix(card, bad, 0.13F);
}

QColor Palette::SelectedGround() const {
  return Mix(card, accent, 0.2F);
}

QColor Palette::HoveredGround() const {
  return Mix(card, mutedText, 0.12F);
}

const Palette& Palette::For(const QPalette& palette) {
  const bool dark = palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
  return dark ? Dark() : Light();
}

const Palette& Palette::For(const QWidget& widget) {
  return For(widget.palette());
}

QPalette MakeQPalette(const Palette& palette) {
  QPalette result(palette.raised, palette.window);  // derives the shades of bevels from these two
  result.setColor(QPalette::Window, palette.window);
  result.setColor(QPalette::Base, palette.raised);
  result.setColor(QPalette::AlternateBase, palette.window);
  result.setColor(QPalette::Button, palette.raised);
  result.setColor(QPalette::ToolTipBase, palette.raised);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText})
    result.setColor(role, palette.text);
  result.setColor(QPalette::PlaceholderText, palette.mutedText);
  result.setColor(okRole, palette.ok);
  result.setColor(badRole, palette.bad);
  result.setColor(QPalette::Highlight, palette.accent);
  result.setColor(QPalette::HighlightedText, palette.window);
  result.setColor(QPalette::Link, palette.accent);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
    result.setColor(QPalette::Disabled, role, palette.mutedText);
  result.setColor(QPalette::Disabled, QPalette::Base, palette.window);
  result.setColor(QPalette::Disabled, QPalette::Highlight, palette.line);
  return result;
}

QString MakeStyleSheet(const Palette& palette) {
  return u"QFrame[card=\"true\"] { background: %1; border: 1px solid %2; border-radius: 8px; }"
         "QToolButton:checked { color: %5; }"
         "QDialogButtonBox { dialogbuttonbox-buttons-have-icons: 0; }"
         "QToolTip { background: %3; color: %4; border: 1px solid %2; padding: 4px; }"_s.arg(
             palette.card.name(), palette.line.name(), palette.raised.name(), palette.text.name(),
             palette.accent.name());
}

void ApplyTheme(QApplication& application, Theme theme) {
  const Palette& palette = theme == Theme::Light  ? Palette::Light()
                           : theme == Theme::Dark ? Palette::Dark()
                                                  : Palette::For(application.palette());
  application.setStyle(new OutlinedStyle);  // the application owns it
  application.setPalette(MakeQPalette(palette));
  application.setStyleSheet(MakeStyleSheet(palette));
}

void MakeCard(QWidget& widget) {
  widget.setProperty("card", true);
}

}  // namespace krx
