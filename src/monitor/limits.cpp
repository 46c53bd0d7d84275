// SPDX-License-Identifier: GPL-3.0-or-later
#include "monitor/limits.h"

#include "link/registeraccess.h"
#include "monitor/channels.h"
#include "power/processorpower.h"
#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

using Bytes = GaugeMarkers::RegisterBytes;

bool LimitsAreCurrents(std::size_t channel, const LimitContext& context) {
  return channel == currentChannel && context.Power.PowerMode;
}

/// False while a limit's bytes cannot be converted, so that it cannot be shown or moved.
bool IsConvertible(std::size_t channel, const LimitContext& context) {
  if (channels.at(channel).Kind == ChannelKind::Fan) return context.Fans.PulsesKnown;
  return channel != currentChannel || context.VccpKnown || !context.Power.NeedsVccp();
}

double LimitFromByte(std::size_t channel, std::uint8_t byte, const LimitContext& context) {
  const Channel& row = channels.at(channel);
  if (row.Kind == ChannelKind::Temperature) return TempFromByte(byte, 0);
  const float volts = VoltageFromByte(static_cast<int>(row.Slot), byte);
  if (!LimitsAreCurrents(channel, context)) return volts;
  return ProcessorCurrent(volts, context.Measured.Voltages[chip::VccpSupply], context.Power);
}

std::uint8_t LimitToByte(std::size_t channel, double value, const LimitContext& context) {
  const Channel& row = channels.at(channel);
  if (row.Kind == ChannelKind::Temperature) return TempToByte(CInt(value));
  auto volts = static_cast<float>(value);
  if (LimitsAreCurrents(channel, context)) {
    volts = SenseVoltsFor(volts, context.Measured.Voltages[chip::VccpSupply], context.Power);
  }
  return VoltageToByte(chip::Supplies.at(row.Slot).Name, volts);
}

float FanLimitFromBytes(const Channel& row, std::uint8_t low, std::uint8_t high, const LimitContext& context) {
  return context.Fans.Corrected(TachToRPM(static_cast<float>(high * 256 + low)), row.Slot);
}

/// The bytes represented by a marker: as placed, or converted if it was moved; empty if unknown.
Bytes MarkerBytes(std::size_t channel, Marker marker, const LimitContext& context, const GaugeMarkers& markers) {
  if (!markers.IsKnown(marker)) return {};
  if (auto remembered = markers.Bytes(marker)) return *remembered;
  const double value = markers.ValueOf(marker);
  const Channel& row = channels.at(channel);
  if (row.Kind != ChannelKind::Fan) return {LimitToByte(channel, value, context)};
  const std::uint16_t count = TachLimitCount(static_cast<float>(value), context.Fans.PulseCorrection(row.Slot));
  return {static_cast<std::uint8_t>(count & 0xFF), static_cast<std::uint8_t>(count >> 8)};
}

void WriteFanLimit(Link& link, const Channel& row, const Bytes& low, GaugeMarkers& markers) {
  if (low.empty()) return;
  WriteByte(link, row.LowLimitRegister, low.at(0));
  WriteByte(link, row.HighLimitRegister, low.at(1));
  markers.Place(Marker::Low, markers.Low(), low);
  markers.Park(Marker::High, fanScale.Maximum);
}

void PlaceBytes(std::size_t channel, std::uint8_t low, std::uint8_t high, const LimitContext& context,
                GaugeMarkers& markers) {
  const Channel& row = channels.at(channel);
  const bool fan = row.Kind == ChannelKind::Fan;
  if (fan) markers.Park(Marker::High, fanScale.Maximum);
  if (!IsConvertible(channel, context)) return;
  if (fan) return markers.Place(Marker::Low, FanLimitFromBytes(row, low, high, context), Bytes{low, high});
  markers.Place(Marker::Low, LimitFromByte(channel, low, context), Bytes{low});
  markers.Place(Marker::High, LimitFromByte(channel, high, context), Bytes{high});
}

void WriteLimit(Link& link, std::uint8_t reg, Marker marker, const Bytes& bytes, GaugeMarkers& markers) {
  if (bytes.empty()) return;
  WriteByte(link, reg, bytes.at(0));
  markers.Place(marker, markers.ValueOf(marker), bytes);
}

}  // namespace

void PlaceLimits(Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers) {
  const Channel& row = channels.at(channel);
  const GaugeScale scale = ChannelScale(channel, context.Power.PowerMode);
  markers.SetScale(scale.Minimum, scale.Maximum);
  const std::uint8_t low = ReadByte(link, row.LowLimitRegister);
  const std::uint8_t high = ReadByte(link, row.HighLimitRegister);
  PlaceBytes(channel, low, high, context, markers);
}

void PlaceSeenLimits(const Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers) {
  const Channel& row = channels.at(channel);
  const auto low = link.Seen.Byte(row.LowLimitRegister);
  const auto high = link.Seen.Byte(row.HighLimitRegister);
  if (low && high) PlaceBytes(channel, *low, *high, context, markers);
}

std::optional<double> SeenLimit(const RegisterImage& seen, std::size_t channel, Marker marker,
                                const LimitContext& context) {
  const Channel& row = channels.at(channel);
  const auto low = seen.Byte(row.LowLimitRegister);
  const auto high = seen.Byte(row.HighLimitRegister);
  if (!IsConvertible(channel, context)) return std::nullopt;
  if (row.Kind == ChannelKind::Fan) {
    if (marker == Marker::High || !low || !high) return std::nullopt;
    return FanLimitFromBytes(row, *low, *high, context);
  }
  const auto byte = marker == Marker::Low ? low : high;
  if (!byte) return std::nullopt;
  return LimitFromByte(channel, *byte, context);
}

void WriteLimits(Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers) {
  const Channel& row = channels.at(channel);
  const auto resetOnError = [&markers](const auto& action) {
    try {
      action();
    } catch (...) {
      markers.PutBack(Marker::Low);
      markers.PutBack(Marker::High);
      throw;
    }
  };
  Bytes low, high;
  resetOnError([&] {
    low = MarkerBytes(channel, Marker::Low, context, markers);
    if (row.Kind != ChannelKind::Fan) high = MarkerBytes(channel, Marker::High, context, markers);
  });
  try {
    resetOnError([&] {
      if (row.Kind == ChannelKind::Fan) return WriteFanLimit(link, row, low, markers);
      WriteLimit(link, row.LowLimitRegister, Marker::Low, low, markers);
      WriteLimit(link, row.HighLimitRegister, Marker::High, high, markers);
    });
  } catch (...) {
    RenewLimits(link.Seen, channel, context, markers);
    throw;
  }
}

void RenewLimits(const RegisterImage& seen, std::size_t channel, const LimitContext& context, GaugeMarkers& markers) {
  if (!markers.IsPlaced(Marker::Low)) return;
  const Channel& row = channels.at(channel);
  const auto low = seen.Byte(row.LowLimitRegister);
  const auto high = seen.Byte(row.HighLimitRegister);
  const auto renew = [&](Marker marker, std::optional<std::uint8_t> byte) {
    if (!byte) return markers.Forget(marker);
    markers.Renew(marker, LimitFromByte(channel, *byte, context), Bytes{*byte});
  };
  if (row.Kind != ChannelKind::Fan) {
    renew(Marker::Low, low);
    renew(Marker::High, high);
  } else if (low && high && context.Fans.PulsesKnown) {
    markers.Renew(Marker::Low, FanLimitFromBytes(row, *low, *high, context), Bytes{*low, *high});
  } else {
    markers.Forget(Marker::Low);
  }
}

}  // namespace krx
