// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QGridLayout;

namespace krx {

/// A small table of living values: a muted head, thin lines between the rows. Its first `left` columns are aligned
/// left, the others right.
class ReadingTable : public QWidget {
  Q_OBJECT
 public:
  ReadingTable(const QString& name, const QStringList& heads, int left);

  void Add(int row, int column, QWidget* cell);
  /// Lower rows, closer columns.
  void SetCompact(bool compact);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QGridLayout* grid_;
  int left_;
};

}  // namespace krx
