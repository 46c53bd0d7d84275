// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "fans/fandialogmodel.h"

class QCheckBox;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace krx {

class UpDownEdit;

/// The fields of one fan. A field that the user edits goes into the model; Show copies the model's fields back.
class FanTab : public QWidget {
  Q_OBJECT

 public:
  FanTab(FanDialogModel& model, std::size_t fan);

  /// Fills the fields from the model; counts as no edit.
  void Show();
  /// Gives the focus to the field of a setting that was refused.
  void FocusOn(FanSetting setting);
  /// A detection's result goes into "Min PWM" and counts as an edit. remark: shown beside the field.
  void SetMinimumDuty(int percent, const QString& remark);
  void SetEvidenceAvailable(bool available);

 signals:
  void Edited();
  void AutoDetectWanted();
  void SaveEvidenceWanted();

 private:
  void MakeOutputFields(QFormLayout& layout);
  void MakeTachFields(QFormLayout& layout);
  QComboBox* MakeList(const char* name, const QString& label, std::span<const std::string_view> items,
                      std::string FanFields::*field, FanSetting setting);
  QCheckBox* MakeCheck(const char* name, const QString& caption, bool FanFields::*field, FanSetting setting);
  QString Named(const char* name) const;
  FanFields& Fields() { return model_.Fields.at(fan_); }
  void Edit(FanSetting setting);
  bool HasOutput() const { return fan_ < pwmCount; }

  FanDialogModel& model_;
  std::size_t fan_;
  QComboBox* fanType_ = nullptr;
  QComboBox* behaviour_ = nullptr;
  QComboBox* spinUp_ = nullptr;
  QComboBox* frequency_ = nullptr;
  UpDownEdit* minimumDuty_ = nullptr;
  QLabel* minimumRemark_ = nullptr;
  QCheckBox* hysteresis_ = nullptr;
  QCheckBox* activeHigh_ = nullptr;
  QCheckBox* acoustics_ = nullptr;
  QComboBox* rampRate_ = nullptr;
  QLineEdit* tachLimit_ = nullptr;
  QRadioButton* threeWire_ = nullptr;
  QRadioButton* twoWire_ = nullptr;
  QComboBox* fanIs_ = nullptr;
  QComboBox* measure_ = nullptr;
  QPushButton* saveEvidence_ = nullptr;
};

}  // namespace krx
