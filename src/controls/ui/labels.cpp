// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/labels.h"

#include "controls/ui/palette.h"

namespace krx {

QLabel* MakeLabel(const QString& name, double scale, bool bold, bool muted) {
  auto* label = new QLabel;
  label->setObjectName(name);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * scale);
  font.setBold(bold);
  label->setFont(font);
  SetMuted(*label, muted);
  return label;
}

void SetTextIfChanged(QLabel& label, const QString& text) {
  if (label.text() != text) label.setText(text);
}

void SetTextIfChanged(QLabel& label, const std::string& text) {
  SetTextIfChanged(label, QString::fromStdString(text));
}

void SetNamedText(QLabel& label, const QString& name, const QString& text) {
  SetTextIfChanged(label, text);
  const QString spoken = name + u' ' + text;
  if (label.accessibleName() != spoken) label.setAccessibleName(spoken);
}

void SetMuted(QLabel& label, bool muted) {
  SetBad(label, false, muted);
}

void SetBad(QLabel& label, bool bad, bool muted) {
  // By role, not by colour: the label then follows a change of the theme.
  const QPalette::ColorRole role = bad ? badRole : muted ? QPalette::PlaceholderText : QPalette::WindowText;
  if (label.foregroundRole() != role) label.setForegroundRole(role);
}

}  // namespace krx
