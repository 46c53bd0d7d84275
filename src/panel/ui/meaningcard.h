// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "controls/ui/card.h"
#include "panel/registermeaning.h"

namespace krx {

class MeaningTable;

/// "What the register means": its purpose, its fields with what they hold, the codes of one field, and what else is
/// known of it.
class MeaningCard : public Card {
  Q_OBJECT
 public:
  MeaningCard();

  /// byte: what the register is shown with; nothing when it is not known.
  void Show(std::uint8_t reg, std::optional<std::uint8_t> byte);
  /// Without names and codes, which the tool tips then have.
  void SetNarrow(bool narrow);

 private:
  void ShowFields();
  void ShowCodes();

  std::uint8_t register_ = 0;
  std::optional<std::uint8_t> byte_;
  std::optional<std::size_t> codesOf_;  ///< the field whose codes are listed
  bool narrow_ = false;
  QLabel* purpose_;
  MeaningTable* fields_;
  QLabel* codesTitle_;
  MeaningTable* codes_;
  QLabel* footer_;
};

}  // namespace krx
