// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "controls/ui/card.h"
#include "fans/fandialogmodel.h"
#include "fans/fanreading.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace krx {

class FieldColumn;
class UpDownEdit;

/// The fields of one fan, a section a subject. A field that the user edits goes into the model; Show copies the model's
/// fields back.
class FanTab : public Card {
  Q_OBJECT

 public:
  FanTab(FanDialogModel& model, std::size_t fan);

  /// Fills the fields from the model; counts as no edit.
  void Show();
  /// Speed and duty at the right of the head.
  void ShowReading(const FanReading& reading);
  /// Gives the focus to the field of a setting that was refused.
  void FocusOn(FanSetting setting);
  /// A detection's result goes into "Min PWM" and counts as an edit. remark: shown below the field and announced to
  /// a screen reader.
  void SetMinimumDuty(int percent, const QString& remark);
  void SetEvidenceAvailable(bool available);

 signals:
  void Edited();
  void AutoDetectRequested();
  void SaveEvidenceRequested();

 private:
  void MakeHead();
  QComboBox* MakeFanType();
  void MakeOutputFields(FieldColumn& column);
  void MakeMinimumFields(FieldColumn& column);
  void MakeTachFields(FieldColumn& column);
  QComboBox* MakeList(const QString& name, const QString& label, std::span<const std::string_view> items,
                      std::string FanFields::*field, FanSetting setting);
  QCheckBox* MakeCheck(const QString& name, const QString& caption, bool FanFields::*field, FanSetting setting);
  QPushButton* MakeAutoDetect();
  QString Named(const QString& name) const;
  FanFields& Fields() { return model_.Fields.at(fan_); }
  void Edit(FanSetting setting);
  bool HasOutput() const { return fan_ < pwmCount; }

  FanDialogModel& model_;
  std::size_t fan_;
  QLabel* speed_ = nullptr;
  QLabel* duty_ = nullptr;
  QLabel* old_ = nullptr;
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
