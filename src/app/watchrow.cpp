// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/watchrow.h"

#include <fmt/chrono.h>
#include <fmt/format.h>

#include <cmath>
#include <ctime>
#include <limits>
#include <string_view>

#include "app/jsontext.h"
#include "link/commserror.h"
#include "registers/numerics.h"

namespace krx {
namespace {

// The five voltages have the longest round.
constexpr int ticksForAll = 5;

// Marks a value that no tick has stored yet.
constexpr float unread = std::numeric_limits<float>::quiet_NaN();

std::size_t WidthOf(std::size_t channel) {
  switch (channels[channel].Kind) {
    case ChannelKind::Temperature:
      return 10;
    case ChannelKind::Fan:
      return 8;
    case ChannelKind::Voltage:
      break;
  }
  return 9;
}

constexpr std::array<std::string_view, channelCount> jsonKeys{"local", "remote1", "remote2", "fan1", "fan2", "fan3",
                                                              "fan4",  "v5",      "v12",     "vccp", "vcc",  "v2_5"};

/// A pin with another function measures nothing.
bool InUse(std::size_t channel, const PinSettings& pins) {
  switch (channel) {
    case 6:
      return pins.ThermPinMode != 2;
    case 7:
      return pins.ThermPinMode != 1;
    case 11:
      return pins.Alert25vMode != 2;
    default:
      return true;
  }
}

bool StoredSince(std::size_t channel, const Measurements& measured) {
  const std::size_t slot = channels[channel].Slot;
  switch (channels[channel].Kind) {
    case ChannelKind::Temperature:
      return measured.Temperatures.at(slot) == measured.Temperatures.at(slot);
    case ChannelKind::Fan:
      return measured.FanSpeeds.at(slot) == measured.FanSpeeds.at(slot);
    case ChannelKind::Voltage:
      break;
  }
  return measured.Voltages.at(slot) == measured.Voltages.at(slot);
}

void ForgetReadings(Workbench& bench) {
  bench.Measured.Temperatures.fill(unread);
  bench.Measured.FanSpeeds.fill(unread);
  bench.Measured.Voltages.fill(unread);
  bench.Measured.DutyTexts.fill("");
  bench.Cycle.Alarms = {};
}

std::string ValueText(const WatchRow& row, std::size_t channel) {
  if (!row.Values[channel]) return "-";
  return FormatFixed(*row.Values[channel], ChannelQuantity(channel, row.PowerMode).Decimals);
}

std::string DutyValueText(std::optional<int> duty) {
  return duty ? std::to_string(*duty) : "-";
}

bool Alarmed(const WatchRow& row, std::size_t channel) {
  return row.Values[channel] && row.Alarms[channel] == AlarmState::Bad;
}

std::string JsonNumber(const WatchRow& row, std::size_t channel) {
  return row.Values[channel] ? ValueText(row, channel) : "null";
}

std::string LocalTime(std::chrono::system_clock::time_point time) {
  return fmt::format("{:%H:%M:%S}", fmt::localtime(std::chrono::system_clock::to_time_t(time)));
}

}  // namespace

WatchRow MeasureRow(Workbench& bench) {
  WatchRow row;
  ForgetReadings(bench);
  for (int tick = 0; tick < ticksForAll; ++tick) {
    try {
      bench.Cycle.Tick();
    } catch (const CommsError& error) {
      ++row.Faults;
      row.LastFault = error.BoxText();
    }
  }
  row.PowerMode = bench.Power.PowerMode;
  row.Alarms = bench.Cycle.Alarms;
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    row.Captions[channel] = ChannelCaption(channel, bench.Fans, row.PowerMode);
    if (!InUse(channel, bench.Pins) || !StoredSince(channel, bench.Measured)) continue;
    row.AnythingRead = true;
    if (!bench.First.Measured(channel, bench.Power)) continue;
    const double value = ChannelValue(channel, bench.Measured, bench.Power);
    // A current depends on Vccp, too.
    if (!std::isnan(value)) row.Values[channel] = value;
  }
  for (std::size_t output = 0; output < row.Duties.size(); ++output) {
    const std::string& text = bench.Measured.DutyTexts[output];
    if (!text.empty()) row.Duties[output] = CInt(Val(text));
  }
  return row;
}

std::string TableHeader(const WatchRow& row) {
  std::string captions = fmt::format("{:<8}", "Time");
  std::string units(captions.size(), ' ');
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    const std::size_t width = WidthOf(channel) - 1;
    captions += fmt::format("{:>{}} ", row.Captions[channel], width);
    units += fmt::format("{:>{}} ", ChannelQuantity(channel, row.PowerMode).ReadoutUnit, width);
  }
  for (std::size_t output = 0; output < row.Duties.size(); ++output) {
    captions += fmt::format("{:>5}{}", "PWM", output + 1);
    units += fmt::format("{:>6}", "%");
  }
  return captions + '\n' + units;
}

std::string TableLine(const WatchRow& row) {
  std::string line = LocalTime(row.Time);
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    line += fmt::format("{:>{}}{}", ValueText(row, channel), WidthOf(channel) - 1, Alarmed(row, channel) ? '!' : ' ');
  }
  for (const auto& duty : row.Duties) line += fmt::format("{:>6}", DutyValueText(duty));
  return line;
}

std::string JsonLine(const WatchRow& row, const std::string& place) {
  const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(row.Time.time_since_epoch()) % 1000;
  std::string line =
      fmt::format(R"({{"time":"{:%Y-%m-%dT%H:%M:%S}.{:03}Z","source":{})",
                  fmt::gmtime(std::chrono::system_clock::to_time_t(row.Time)), milliseconds.count(), JsonText(place));
  const std::size_t voltages = row.PowerMode ? currentChannel : channelCount;
  for (std::size_t channel = 0; channel < voltages; ++channel) {
    line += fmt::format(R"(,"{}":{})", jsonKeys[channel], JsonNumber(row, channel));
  }
  if (row.PowerMode) line += R"(,"v2_5":null)";
  line += fmt::format(R"(,"current":{})", row.PowerMode ? JsonNumber(row, currentChannel) : "null");
  for (std::size_t output = 0; output < row.Duties.size(); ++output) {
    line += fmt::format(R"(,"pwm{}":{})", output + 1, row.Duties[output] ? DutyValueText(row.Duties[output]) : "null");
  }
  std::string alarms;
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    if (!Alarmed(row, channel)) continue;
    const bool current = channel == currentChannel && row.PowerMode;
    alarms += fmt::format(R"({}"{}")", alarms.empty() ? "" : ",", current ? "current" : jsonKeys[channel]);
  }
  const bool alarmsRead = row.Alarms.front() != AlarmState::Unread;
  return line + fmt::format(R"(,"alarms":{},"faults":{}}})", alarmsRead ? "[" + alarms + "]" : "null", row.Faults);
}

std::string ScreenPage(const WatchRow& row, const std::string& title) {
  std::string page = fmt::format("{}   {}\n\n", title, LocalTime(row.Time));
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    page += fmt::format("  {:<10} {:>9} {:<3}  {}\n", row.Captions[channel], ValueText(row, channel),
                        ChannelQuantity(channel, row.PowerMode).ReadoutUnit, Alarmed(row, channel) ? "ALARM" : "");
  }
  page += '\n';
  for (std::size_t output = 0; output < row.Duties.size(); ++output) {
    page += fmt::format("  PWM{} {:>3} %", output + 1, DutyValueText(row.Duties[output]));
  }
  return page + '\n';
}

}  // namespace krx
