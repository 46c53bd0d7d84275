// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>

#include "controls/ui/card.h"
#include "panel/registerpanel.h"

namespace krx {

class BitToggle;
class FieldBrackets;

/// The selected register: address, name, value, and its eight bits with their fields.
class RegisterCard : public Card {
  Q_OBJECT
 public:
  RegisterCard();

  /// writable: the bits take presses.
  void Show(const RegisterView& view, bool writable);

 signals:
  void BitClicked(int bit);

 private:
  QLayout* MakeHead();
  QLayout* MakeBits();

  QLabel* address_ = nullptr;
  QLabel* name_ = nullptr;
  QLabel* hexValue_ = nullptr;
  QLabel* decimalValue_ = nullptr;
  std::array<QLabel*, 8> bitNumbers_{};
  std::array<QLabel*, 8> bitNames_{};
  std::array<BitToggle*, 8> bits_{};
  FieldBrackets* fields_ = nullptr;
};

}  // namespace krx
