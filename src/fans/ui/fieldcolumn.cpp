// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/ui/fieldcolumn.h"

#include <QLabel>
#include <algorithm>

#include "controls/ui/card.h"

namespace krx {

Card& FieldColumn::Begin(const QString& title) {
  section_ = new Card(title, Card::Kind::Section);
  section_->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
  addWidget(section_);
  return *section_;
}

void FieldColumn::Add(const QString& label, QWidget* field, const std::vector<QWidget*>& behind) {
  auto* const name = new QLabel(label);
  name->setBuddy(field);
  auto* const row = new QHBoxLayout;
  row->addWidget(name);
  row->addWidget(field);
  for (QWidget* const widget : behind) row->addWidget(widget);
  row->addStretch();
  section_->Body().addLayout(row);
  labels_.push_back(name);
  fields_.push_back(field);
}

void FieldColumn::AddWide(QWidget* row) {
  section_->Body().addWidget(row, 0, Qt::AlignLeft);
}

void FieldColumn::End() {
  const auto widest = [](const auto& widgets) {
    int width = 0;
    for (const QWidget* const widget : widgets) width = std::max(width, widget->sizeHint().width());
    return width;
  };
  for (QLabel* const label : labels_) label->setMinimumWidth(widest(labels_));
  const int width = widest(fields_);
  for (QWidget* const field : fields_) field->setFixedWidth(width);
  addStretch();
}

}  // namespace krx
