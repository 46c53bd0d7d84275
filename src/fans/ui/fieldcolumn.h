// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QVBoxLayout>
#include <vector>

class QLabel;

namespace krx {

class Card;

/// Sections below each other whose labels and fields stand in line: each as wide as the widest of the column and no
/// wider.
class FieldColumn : public QVBoxLayout {
  Q_OBJECT
 public:
  /// The rows that follow belong to it. The title is the section's.
  Card& Begin(const QString& title);
  /// A field with its label, and what stands behind the field.
  void Add(const QString& label, QWidget* field, const std::vector<QWidget*>& behind = {});
  /// A row of its own.
  void AddWide(QWidget* row);
  /// After the last row.
  void End();

 private:
  Card* section_ = nullptr;
  std::vector<QLabel*> labels_;
  std::vector<QWidget*> fields_;
};

}  // namespace krx
