// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/firstvalues.h"

#include "registers/chip.h"

namespace krx {
namespace {

constexpr double firstConversionSeconds = 1;  ///< of a tachometer, the slowest

constexpr std::uint8_t ResetByte(ChannelKind kind) {
  switch (kind) {
    case ChannelKind::Temperature:
      return 0x80;
    case ChannelKind::Fan:
      return 0xFF;
    case ChannelKind::Voltage:
      break;
  }
  return 0;
}

bool UnlikeReset(const RegisterImage& seen, const Channel& channel) {
  const auto unlike = [&](int reg) {
    const auto byte = seen.Byte(static_cast<std::uint8_t>(reg));
    return byte && *byte != ResetByte(channel.Kind);
  };
  if (unlike(channel.ValueRegister)) return true;
  return channel.Kind == ChannelKind::Fan && unlike(channel.ValueRegister + 1);
}

bool Starts(std::optional<std::uint8_t> configuration) {
  return configuration && (*configuration & chip::Start) != 0;
}

}  // namespace

FirstValues::FirstValues(Link& link)
    : link_(link), watch_(link.Seen.Subscribe([this](std::uint8_t reg, std::optional<std::uint8_t> byte) {
        if (reg == chip::Configuration1) SawMonitoring(Starts(byte));
      })) {
  SawMonitoring(Starts(link.Seen.Byte(chip::Configuration1)));
}

void FirstValues::SawMonitoring(bool on) {
  if (!on) {
    monitoringSince_.reset();
  } else if (!monitoringSince_) {
    monitoringSince_ = link_.ElapsedSeconds();
  }
}

bool FirstValues::Took(std::size_t channel) {
  bool& measured = measured_.at(channel);
  measured = measured || UnlikeReset(link_.Seen, channels[channel]) ||
             (monitoringSince_ && link_.ElapsedSeconds() - *monitoringSince_ >= firstConversionSeconds);
  return measured && Monitoring() != false;
}

std::optional<bool> FirstValues::Monitoring() const {
  const auto configuration = link_.Seen.Byte(chip::Configuration1);
  if (!configuration) return std::nullopt;
  return Starts(configuration);
}

}  // namespace krx
