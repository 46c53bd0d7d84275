// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "control/ui/controlchoice.h"
#include "controls/ui/card.h"

class QLabel;

namespace krx {

/// "THERM Setup": which pin is the THERM input.
class ThermSection : public Card {
  Q_OBJECT
 public:
  explicit ThermSection(const ControlAccess& access);
  void ShowState(const ControlState& state);

 private:
  bool readOnly_;
  QCheckBox* chkProchot_;
  QRadioButton* opt5V_;
  QRadioButton* optTach4_;
  QLabel* consequence_;
};

/// "SMBAlert Setup": which pins carry the alert output.
class AlertSection : public Card {
  Q_OBJECT
 public:
  explicit AlertSection(const ControlAccess& access);
  void ShowState(const ControlState& state);

 private:
  bool readOnly_;
  QCheckBox* chkAlert_;
  QCheckBox* chkPwm2Alert_;
  QCheckBox* chk25vAlert_;
  QRadioButton* opt25V_;
  QRadioButton* optPwm2_;
  QLabel* consequence_;
};

}  // namespace krx
