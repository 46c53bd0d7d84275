// SPDX-License-Identifier: GPL-3.0-or-later
// Alarm texts of the display; its handlers are in visualmodel.cpp.
#include "monitor/alarmtext.h"
#include "monitor/displaystate.h"
#include "monitor/firstvalues.h"
#include "monitor/visualmodel.h"
#include "registers/chip.h"

namespace krx {

std::string VisualModel::AlarmWords(std::size_t channel) const {
  if (!state_.ChannelShown.at(channel) || state_.Alarms.at(channel) != AlarmState::Bad) return {};
  std::optional<double> value;
  if (parts_.First.Measured(channel, parts_.Power)) value = ChannelValue(channel, parts_.Measured, parts_.Power);
  return AlarmReason(channel, value, parts_.ChipLink.Seen, Limits());
}

AlarmReport VisualModel::ReportAlarms() const {
  AlarmReport report;
  report.Old = parts_.First.Monitoring() == false;
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    if (state_.Alarms[channel] != AlarmState::Unread) report.Count = report.Count.value_or(0);
    const std::string words = AlarmWords(channel);
    if (words.empty()) continue;
    ++*report.Count;
    report.Details += (report.Details.empty() ? "" : "\n") + state_.Captions[channel] + ": " + words;
  }
  return report;
}

bool VisualModel::PulsesDiffer(std::size_t channel) const {
  const Channel& row = channels.at(channel);
  const auto fields = parts_.ChipLink.Seen.Byte(chip::FanPulses);
  return row.Kind == ChannelKind::Fan && parts_.Fans.PulsesKnown && fields &&
         !parts_.Fans.AgreesWith(*fields, row.Slot);
}

}  // namespace krx
