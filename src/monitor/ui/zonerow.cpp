// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/ui/zonerow.h"

#include <QHBoxLayout>

#include "controls/ui/labels.h"
#include "monitor/visualmodel.h"
#include "registers/numerics.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

/// "40 °C"; "Disabled" stays as it is.
QString WithDegrees(const std::string& text) {
  const QString shown = QString::fromStdString(text);
  return IsNumber(text) ? shown + u" °C"_s : shown;
}

}  // namespace

ZoneRow::ZoneRow(QWidget* parent) : QWidget(parent) {
  setObjectName(u"pnlDynamicTmin"_s);
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  QLabel* title = MakeLabel(u""_s, 1, true);
  title->setText(u"Tmin / operating point"_s);
  row->addWidget(title);
  for (std::size_t zone = 0; zone < tminLabels_.size(); ++zone) {
    row->addSpacing(fontMetrics().averageCharWidth() * 3);
    QLabel* name = MakeLabel(u""_s, 1, false, true);
    name->setText(QString::fromStdString(std::string(channels[zone].Caption)));
    tminLabels_[zone] = MakeLabel(u""_s, 1, false);
    tminLabels_[zone]->setObjectName(u"lblTmin_%1"_s.arg(zone));
    opPointLabels_[zone] = MakeLabel(u""_s, 1, false);
    opPointLabels_[zone]->setObjectName(u"lblOpPoint_%1"_s.arg(zone));
    QLabel* slash = MakeLabel(u""_s, 1, false, true);
    slash->setText(u"/"_s);
    row->addWidget(name);
    row->addWidget(tminLabels_[zone]);
    row->addWidget(slash);
    row->addWidget(opPointLabels_[zone]);
  }
  row->addStretch(1);
}

void ZoneRow::ShowReading(const VisualState& state, bool old) {
  for (std::size_t zone = 0; zone < tminLabels_.size(); ++zone) {
    const QString name = QString::fromStdString(std::string(channels[zone].Caption));
    SetNamedText(*tminLabels_[zone], u"Tmin, %1"_s.arg(name), WithDegrees(state.TminTexts[zone]));
    SetNamedText(*opPointLabels_[zone], u"Operating point, %1"_s.arg(name), WithDegrees(state.OpPointTexts[zone]));
    SetMuted(*tminLabels_[zone], old);
    SetMuted(*opPointLabels_[zone], old);
  }
}

}  // namespace krx
