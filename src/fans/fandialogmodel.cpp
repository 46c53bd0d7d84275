// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/fandialogmodel.h"

#include <utility>

#include "registers/numerics.h"

namespace krx {
namespace {

constexpr std::array<FanSetting, 8> outputSettings{
    FanSetting::Behaviour,  FanSetting::Polarity,  FanSetting::SpinUp,    FanSetting::MinimumDuty,
    FanSetting::Hysteresis, FanSetting::Frequency, FanSetting::Acoustics, FanSetting::RampRate};
// Not the fan type: loading sets its text, and only the user's choice of an item is an edit.
constexpr std::array<FanSetting, 4> tachSettings{FanSetting::TachLimit, FanSetting::TachSource,
                                                 FanSetting::ProgrammedPulses, FanSetting::ActualPulses};

constexpr std::array<std::string FanFields::*, 9> texts{
    &FanFields::FanType,   &FanFields::Behaviour,        &FanFields::SpinUp,
    &FanFields::Frequency, &FanFields::MinimumDuty,      &FanFields::RampRate,
    &FanFields::TachLimit, &FanFields::ProgrammedPulses, &FanFields::ActualPulses};
constexpr std::array<bool FanFields::*, 4> marks{&FanFields::HysteresisOn, &FanFields::ActiveHigh,
                                                 &FanFields::EnhancedAcoustics, &FanFields::TwoWire};

/// Takes the seen fields, except those that the user has changed since.
void TakeUnedited(FanFields& fields, const FanFields& known, const FanFields& seen) {
  const auto take = [&](const auto& members) {
    for (const auto member : members) {
      if (fields.*member == known.*member) fields.*member = seen.*member;
    }
  };
  take(texts);
  take(marks);
}

}  // namespace

FanDialogModel::FanDialogModel(FanConfig& config, FanCommon& fans) : config_(config), fans_(fans) {}

void FanDialogModel::Open() {
  loaded_ = {};
  // Before the load, too: the flags outlive a dialog, and a failed load must not leave those of the previous one.
  ClearEdits();
  Load(0);
  ClearEdits();
}

void FanDialogModel::ShowTab(std::size_t fan) {
  const bool pendingBefore = applyEnabled_;
  if (!loaded_.at(fan)) Load(fan);
  if (!pendingBefore) ClearEdits();
}

void FanDialogModel::Load(std::size_t fan) {
  // Into a copy: a failed transfer must not leave a partly loaded fan that the next Apply would write.
  FanFields fields;
  config_.LoadFanSettings(fan, fields);
  Fields.at(fan) = known_.at(fan) = std::move(fields);
  if (fan < pwmCount) {
    for (const FanSetting setting : outputSettings) Edited(setting, fan);
  }
  for (const FanSetting setting : tachSettings) Edited(setting, fan);
  loaded_.at(fan) = true;
}

void FanDialogModel::Renew() {
  for (std::size_t fan = 0; fan < fanCount; ++fan) {
    FanFields seen;
    if (!loaded_.at(fan)) continue;
    config_.LoadSeen(fan, seen);
    // Flags set by an edit of another fan or an earlier Apply must not write the old byte again.
    TakeUnedited(Fields.at(fan), applyEnabled_ ? known_.at(fan) : Fields.at(fan), seen);
    known_.at(fan) = std::move(seen);
  }
  // As after any load: what an earlier Apply wrote is no longer an edit.
  if (!applyEnabled_) ClearEdits();
}

void FanDialogModel::ClearEdits() {
  applyEnabled_ = false;
  fans_.PendingChange.Clear();
}

void FanDialogModel::Edited(FanSetting setting, std::size_t fan) {
  applyEnabled_ = true;
  fans_.PendingChange.Set(setting, fan);
}

const std::string& FanDialogModel::EditTachLimit(std::size_t fan, std::string text) {
  std::string& limit = Fields.at(fan).TachLimit;
  limit = IsNumber(text) ? std::move(text) : "0";
  Edited(FanSetting::TachLimit, fan);
  return limit;
}

std::optional<FanRefusal> FanDialogModel::Apply() {
  if (auto refusal = config_.Check(Fields)) return refusal;
  config_.ApplyFanSettings(Fields);
  known_ = Fields;
  applyEnabled_ = false;
  return std::nullopt;
}

}  // namespace krx
