// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <map>
#include <vector>

#include "panel/registermeaning.h"

namespace krx {

/// Under the eight bits: a bracket joins the bits of each field, with the field's name and what it holds. As high as
/// the longest texts of all registers want, so that nothing below moves from one register to the next.
class FieldBrackets : public QWidget {
  Q_OBJECT
 public:
  /// gap: between two bits.
  explicit FieldBrackets(int gap);

  void Show(std::vector<FieldRow> rows);
  int heightForWidth(int width) const override;
  QSize sizeHint() const override { return {0, fontMetrics().height() * 3}; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  /// Of a field, a line each.
  struct Texts {
    QStringList Name;
    QStringList Value;
  };

  /// Where the field's bits stand in a widget of that width.
  QRect Place(const FieldRow& row, int total) const;
  Texts TextsOf(const FieldRow& row, int width) const;

  int gap_;
  QFont nameFont_;
  QFont valueFont_;
  std::vector<FieldRow> rows_;
  mutable std::map<int, int> heights_;  ///< by width
};

}  // namespace krx
