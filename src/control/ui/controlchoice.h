// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <functional>

#include "control/controlmodel.h"

class QAbstractButton;
class QCheckBox;
class QRadioButton;
class QWidget;

namespace krx {

class Card;

/// What the sections of the "Control " tab need for a click.
struct ControlAccess {
  ControlModel& Model;
  std::function<void(const std::function<void()>&)> Act;  ///< runs a user's action, then shows the state
  bool ReadOnly;                                          ///< what would write is disabled
};

// Boxes and options that act on clicks only: what a refresh shows must not be written back.
QCheckBox* MakeCheck(const QString& name, const QString& caption, const ControlAccess& access,
                     std::function<void(bool)> clicked);
QRadioButton* MakeOption(const QString& name, const QString& caption, const ControlAccess& access,
                         std::function<void()> clicked);

/// Shows a mark without a click. An option in a group of two can only be cleared while it is not exclusive.
void ShowMarked(QAbstractButton& button, bool marked);

/// The state in the head of a section.
void ShowSectionState(Card& section, const SectionWords& words);

/// A share of a line's height, in whole pixels.
int Lines(const QWidget& widget, double lines);

}  // namespace krx
