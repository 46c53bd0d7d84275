// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/limits.h"

#include "console/channels.h"
#include "link/registeraccess.h"
#include "power/processorpower.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

constexpr std::size_t vccpSlot = 2;

using Bytes = GaugeMarkers::RegisterBytes;

bool LimitsAreCurrents(std::size_t channel, const LimitContext& context) {
  return channel == currentChannel && context.Power.PowerMode;
}

double LimitFromByte(std::size_t channel, std::uint8_t byte, const LimitContext& context) {
  const Channel& row = channels.at(channel);
  if (row.Kind == ChannelKind::Temperature) return TempFromByte(byte, 0);
  const float volts = VoltageFromByte(static_cast<int>(row.Slot), byte);
  if (!LimitsAreCurrents(channel, context)) return volts;
  return ProcessorCurrent(volts, context.Measured.Voltages[vccpSlot], context.Power);
}

std::uint8_t LimitToByte(std::size_t channel, double value, const LimitContext& context) {
  const Channel& row = channels.at(channel);
  if (row.Kind == ChannelKind::Temperature) return TempToByte(CInt(value));
  auto volts = static_cast<float>(value);
  if (LimitsAreCurrents(channel, context)) {
    volts = SenseVoltsFor(volts, context.Measured.Voltages[vccpSlot], context.Power);
  }
  return VoltageToByte(voltageChannels.at(row.Slot).Name, volts);
}

/// The bytes a marker stands for: remembered, or converted when it was moved.
Bytes MarkerBytes(std::size_t channel, Marker marker, const LimitContext& context, const GaugeMarkers& markers) {
  if (auto remembered = markers.Bytes(marker)) return *remembered;
  const double value = markers.ValueOf(marker);
  const Channel& row = channels.at(channel);
  if (row.Kind != ChannelKind::Fan) return {LimitToByte(channel, value, context)};
  const std::uint16_t count = TachLimitCount(static_cast<float>(value), context.Fans.PulseCorrection(row.Slot));
  return {static_cast<std::uint8_t>(count & 0xFF), static_cast<std::uint8_t>(count >> 8)};
}

void WriteFanLimit(Link& link, const Channel& row, const Bytes& low, GaugeMarkers& markers) {
  WriteByte(link, row.LowLimitRegister, low.at(0));
  WriteByte(link, row.HighLimitRegister, low.at(1));
  markers.Place(Marker::Low, markers.Low(), low);
  markers.Park(Marker::High, fanScale.Maximum);
}

void PlaceFanLimit(const Channel& row, std::uint8_t low, std::uint8_t high, const LimitContext& context,
                   GaugeMarkers& markers) {
  markers.Park(Marker::High, fanScale.Maximum);
  // Without the pulses the count is no speed: nothing that could be shown, and nothing to be moved.
  if (!context.Fans.PulsesKnown) return;
  const float rpm = TachToRPM(static_cast<float>(high * 256 + low));
  markers.Place(Marker::Low, context.Fans.Corrected(rpm, row.Slot), Bytes{low, high});
}

}  // namespace

void PlaceLimits(Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers) {
  const Channel& row = channels.at(channel);
  const GaugeScale scale = ChannelScale(channel, context.Power.PowerMode);
  markers.SetScale(scale.Minimum, scale.Maximum);
  const std::uint8_t low = ReadByte(link, row.LowLimitRegister);
  const std::uint8_t high = ReadByte(link, row.HighLimitRegister);
  if (row.Kind == ChannelKind::Fan) return PlaceFanLimit(row, low, high, context, markers);
  markers.Place(Marker::Low, LimitFromByte(channel, low, context), Bytes{low});
  markers.Place(Marker::High, LimitFromByte(channel, high, context), Bytes{high});
}

void PlaceSeenFanLimit(const Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers) {
  const Channel& row = channels.at(channel);
  const auto low = link.Seen.Byte(row.LowLimitRegister);
  const auto high = link.Seen.Byte(row.HighLimitRegister);
  if (low && high) PlaceFanLimit(row, *low, *high, context, markers);
}

std::optional<double> SeenLimit(const RegisterImage& seen, std::size_t channel, Marker marker,
                                const LimitContext& context) {
  const Channel& row = channels.at(channel);
  const auto low = seen.Byte(row.LowLimitRegister);
  const auto high = seen.Byte(row.HighLimitRegister);
  if (row.Kind == ChannelKind::Fan) {
    if (marker == Marker::High || !low || !high || !context.Fans.PulsesKnown) return std::nullopt;
    return context.Fans.Corrected(TachToRPM(static_cast<float>(*high * 256 + *low)), row.Slot);
  }
  const auto byte = marker == Marker::Low ? low : high;
  if (!byte) return std::nullopt;
  return LimitFromByte(channel, *byte, context);
}

void WriteLimits(Link& link, std::size_t channel, const LimitContext& context, GaugeMarkers& markers) {
  const Channel& row = channels.at(channel);
  try {
    const Bytes low = MarkerBytes(channel, Marker::Low, context, markers);
    if (row.Kind == ChannelKind::Fan) return WriteFanLimit(link, row, low, markers);
    const Bytes high = MarkerBytes(channel, Marker::High, context, markers);
    WriteByte(link, row.LowLimitRegister, low.at(0));
    markers.Place(Marker::Low, markers.Low(), low);
    WriteByte(link, row.HighLimitRegister, high.at(0));
    markers.Place(Marker::High, markers.High(), high);
  } catch (...) {
    markers.PutBack(Marker::Low);
    markers.PutBack(Marker::High);
    throw;
  }
}

}  // namespace krx
