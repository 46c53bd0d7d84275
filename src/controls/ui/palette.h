// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>
#include <QString>
#include <array>

class QApplication;
class QWidget;

namespace krx {

/// Which of the two palettes a run uses.
enum class Theme { System, Light, Dark };

/// Every colour of the program, by its role. Text on window, card, raised and sunk has a contrast of at least 4.5:1.
struct Palette {
  QColor window;   ///< behind everything
  QColor card;     ///< areas that group widgets
  QColor raised;   ///< rows, buttons and fields on a card
  QColor sunk;     ///< sections inside a card
  QColor line;     ///< thin outlines of areas
  QColor outline;  ///< of what can be operated: 3:1 and better against its ground
  QColor grid;     ///< grid lines of charts, the trough of a gauge
  QColor text;
  QColor mutedText;  ///< units, axis numbers, and what "application-workspace" means for a caption
  QColor accent;     ///< the one accent: selection, focus, the value of a gauge
  QColor ok;
  QColor bad;
  std::array<QColor, 9> traces;

  /// A card in alarm: text and bad stand on it with the same contrast, muted text does not.
  QColor AlarmGround() const;
  /// The selected row of a list on a card, and the one under the pointer; their text is `text`.
  QColor SelectedGround() const;
  QColor HoveredGround() const;

  static const Palette& Light();
  static const Palette& Dark();

  /// The one of the two that a palette made by MakeQPalette, or any other palette, belongs to.
  static const Palette& For(const QPalette& palette);
  static const Palette& For(const QWidget& widget);
};

/// Colours with a meaning of their own, the same in both palettes: row captions and the results of a search.
namespace fixedcolours {
inline constexpr QColor brightGreen{0, 255, 0};
inline constexpr QColor darkGreen{0, 128, 0};
inline constexpr QColor onBrightGreen{0, 0, 0};      ///< letters on a bright green ground
inline constexpr QColor onDarkGreen{255, 255, 255};  ///< letters on a dark green ground
inline constexpr QColor yellow{255, 255, 0};
inline constexpr QColor brightRed{255, 0, 0};
inline constexpr QColor onBright{0, 0, 0};  ///< text on any of the bright ones
inline constexpr QColor wizardRed{192, 0, 0};
inline constexpr QColor wizardGreen{0, 128, 0};
}  // namespace fixedcolours

/// Roles that carry `ok` and `bad` in the toolkit's palette. A widget's foreground role follows a change of the theme;
/// a palette of its own does not, for the style sheet puts the old one back.
inline constexpr QPalette::ColorRole okRole = QPalette::LinkVisited;
inline constexpr QPalette::ColorRole badRole = QPalette::BrightText;

/// The toolkit's palette that carries the roles to every standard widget.
QPalette MakeQPalette(const Palette& palette);

/// The program's one style sheet: cards (any QFrame with the property "card" set to true, see MakeCard), tool tips, and
/// tool buttons that are checked.
QString MakeStyleSheet(const Palette& palette);

/// Gives the application the Fusion style, the palette of the theme and the style sheet. Theme::System takes the dark
/// palette when the system's window colour is darker than its text; call it once, before the first window.
void ApplyTheme(QApplication& application, Theme theme);

/// Makes the widget a card: thin line, radius 8.
void MakeCard(QWidget& widget);

}  // namespace krx
