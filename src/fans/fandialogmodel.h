// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "fans/fanconfig.h"

namespace krx {

/// The fan dialog's rules: which tabs are loaded, which edits are pending, when Apply is enabled. Lives as long as the
/// dialog is open. Operations that access the chip throw what the link throws.
class FanDialogModel {
 public:
  FanDialogModel(FanConfig& config, FanCommon& fans);

  /// Opens the dialog: loads the first fan, no edits pending.
  void Open();

  /// The tab of a fan (0..3) is shown; it is read from the chip the first time. With edits pending, the newly loaded
  /// fields count as edited, too, so that the next Apply writes them back as read.
  void ShowTab(std::size_t fan);

  /// The user edited a setting; the window has put its new text or mark into Fields.
  void Edited(FanSetting setting, std::size_t fan);

  /// Returns the text of the tach limit to show: anything but a number becomes "0". Counts as an edit.
  const std::string& EditTachLimit(std::size_t fan, std::string text);

  /// Writes the pending settings. A refusal writes nothing; after a refusal or a failed transfer Apply stays enabled.
  std::optional<FanRefusal> Apply();

  /// The chip was changed elsewhere: updates the loaded fans from the bytes last seen on the bus. Fields that the user
  /// has changed and not yet applied are kept.
  void Renew();

  bool ApplyEnabled() const { return applyEnabled_; }
  bool Loaded(std::size_t fan) const { return loaded_.at(fan); }

  AllFanFields Fields;

 private:
  void Load(std::size_t fan);
  void ClearEdits();

  FanConfig& config_;
  FanCommon& fans_;
  std::array<bool, fanCount> loaded_{};
  AllFanFields known_;  ///< as last loaded or applied
  bool applyEnabled_ = false;
};

}  // namespace krx
