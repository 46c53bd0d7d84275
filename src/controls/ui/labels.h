// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>
#include <string>

namespace krx {

/// A label whose size is a multiple of the window's font. Muted: in the palette's muted text.
QLabel* MakeLabel(const QString& name, double scale, bool bold, bool muted = false);

/// Readings come a hundred times a second: a label that already shows the text must not be laid out again.
void SetTextIfChanged(QLabel& label, const QString& text);
void SetTextIfChanged(QLabel& label, const std::string& text);

/// A text with a name of its own. A screen reader takes the name instead of the text, so the name carries both.
void SetNamedText(QLabel& label, const QString& name, const QString& text);

/// Muted text, for what is no longer refreshed, or the ordinary one.
void SetMuted(QLabel& label, bool muted);

/// The colour of an alarm; it wins over the muted text.
void SetBad(QLabel& label, bool bad, bool muted = false);

}  // namespace krx
