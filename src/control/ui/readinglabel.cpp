// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/readinglabel.h"

#include <QHBoxLayout>

#include "controls/ui/labels.h"
#include "controls/ui/texts.h"

namespace krx {

using namespace Qt::StringLiterals;

ReadingLabel::ReadingLabel(const QString& name, const QString& subject, double scale, bool bold, Qt::AlignmentFlag side)
    : subject_(subject) {
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  value_ = MakeLabel({}, scale, bold);
  value_->setObjectName(name);
  unit_ = MakeLabel({}, 1, false, true);
  // Both are centred; this puts them on one baseline.
  const auto above = [](const QLabel& label) { return label.fontMetrics().ascent() - label.fontMetrics().descent(); };
  unit_->setContentsMargins(0, above(*value_) - above(*unit_), 0, 0);
  row->setSpacing(qRound(fontMetrics().horizontalAdvance(u' ') * (scale > 1 ? 1.5 : 1)));
  if (side == Qt::AlignRight) row->addStretch();
  row->addWidget(value_);
  row->addWidget(unit_);
  if (side == Qt::AlignLeft) row->addStretch();
  Show({});
}

void ReadingLabel::Show(const LivingValue& value) {
  SetTextIfChanged(*value_, QtText(value.Text));
  SetTextIfChanged(*unit_, QtText(value.Unit));
  unit_->setVisible(!value.Unit.empty());
  SetMuted(*value_, value.Old || !value.Known());
  const QString spoken = subject_ + u' ' + QtText(value.Words());
  if (value_->accessibleName() == spoken) return;
  value_->setAccessibleName(spoken);
  setToolTip(value.Old ? u"Old value: it is not refreshed"_s : QString());
}

}  // namespace krx
