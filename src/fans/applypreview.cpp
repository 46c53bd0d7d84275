// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/applypreview.h"

#include <fmt/format.h>

#include "journal/recordingmodule.h"
#include "registers/fields.h"
#include "registers/registermap.h"

namespace krx {
namespace {

std::string PlaceOf(const RecordedWrite& write) {
  if (!write.OfDevice) {
    const RegisterEntry* entry = LookupAddress(write.Address);
    return fmt::format("{:X}h {}", write.Address, entry == nullptr ? "" : entry->PanelName);
  }
  return fmt::format("{:X}h switches {}", write.Address, SwitchDeviceName(write.Address).value_or(""));
}

}  // namespace

std::string PlannedWriteText(const PlannedWrite& write) {
  const std::string text =
      fmt::format("{}: {} → {:02X}h", write.Place, write.Old ? fmt::format("{:02X}h", *write.Old) : "?", write.New);
  return write.Change.empty() ? text : fmt::format("{} ({})", text, write.Change);
}

ApplyPreview PreviewApply(Link& link, const FanCommon& fans, const AllFanFields& fields) {
  RecordingLink recording(link);
  BoardState boardState;
  OwedWrites owed(recording.Recording());
  Board board(recording.Recording(), boardState, owed);
  FanCommon fansCopy = fans;
  std::array<std::uint8_t, 3> behaviourCodes{};
  FanConfig config(recording.Recording(), board, fansCopy, behaviourCodes);

  ApplyPreview preview;
  preview.Refusal = config.Check(fields);
  if (preview.Refusal) return preview;
  config.ApplyFanSettings(fields);
  for (const RecordedWrite& write : recording.Writes()) {
    const bool known = !write.OfDevice;
    preview.Writes.push_back({PlaceOf(write), write.Old, write.New,
                              known ? ChangeText(write.Address, write.Old, write.New) : std::string()});
  }
  return preview;
}

}  // namespace krx
