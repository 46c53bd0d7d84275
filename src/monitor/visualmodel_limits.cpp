// SPDX-License-Identifier: GPL-3.0-or-later
// The limits of the selected channel; the rest of the model is in visualmodel.cpp.
#include "monitor/displaystate.h"
#include "monitor/firstvalues.h"
#include "monitor/limitentry.h"
#include "monitor/visualmodel.h"

namespace krx {
namespace {

constexpr std::int16_t boardMedium = 1;
constexpr std::int16_t smbusMedium = 0;

}  // namespace

void VisualModel::MarkerMoving(Marker marker, double value) {
  MoveMarker(marker, value);
  if (parts_.ChipLink.EvalBoardMedium == boardMedium) WriteMarkers(marker);
}

void VisualModel::MarkerReleased(Marker marker, double value) {
  // On the board the last move has already written it or reset the marker.
  if (parts_.ChipLink.EvalBoardMedium != smbusMedium) return;
  MoveMarker(marker, value);
  WriteMarkers(marker);
}

void VisualModel::MoveMarker(Marker marker, double value) {
  // An unchanged value leaves the marker unmoved, with the bytes it was placed from.
  if (value != state_.Gauge.ValueOf(marker) || !state_.Gauge.IsKnown(marker)) state_.Gauge.Move(marker, value);
}

void VisualModel::WriteMarkers(Marker dragged) {
  if (!state_.Gauge.IsDraggable(dragged)) return;
  WriteLimits(parts_.ChipLink, static_cast<std::size_t>(parts_.Display.SelectedChannel), Limits(), state_.Gauge);
}

void VisualModel::PlaceAwaitedLimits() {
  // The pulses or Vccp may have become known since the channel was selected.
  if (state_.Gauge.IsPlaced(Marker::Low)) return;
  PlaceSeenLimits(parts_.ChipLink, static_cast<std::size_t>(parts_.Display.SelectedChannel), Limits(), state_.Gauge);
}

void VisualModel::SawByte(std::uint8_t reg) {
  const auto channel = static_cast<std::size_t>(parts_.Display.SelectedChannel);
  const Channel& row = channels.at(channel);
  if (reg != row.LowLimitRegister && reg != row.HighLimitRegister) return;
  RenewLimits(parts_.ChipLink.Seen, channel, Limits(), state_.Gauge);
}

LimitContext VisualModel::Limits() const {
  return {parts_.Fans, parts_.Power, parts_.Measured, parts_.First.Measured(vccpChannel)};
}

void VisualModel::TypeLimit(Marker marker, const std::string& text) {
  const auto channel = static_cast<std::size_t>(parts_.Display.SelectedChannel);
  EnterLimit(marker, TypedLimit(text, channel, marker, Limits(), state_.Gauge));
}

void VisualModel::StepLimit(Marker marker, int steps) {
  const auto channel = static_cast<std::size_t>(parts_.Display.SelectedChannel);
  EnterLimit(marker, SteppedLimit(steps, channel, marker, Limits(), state_.Gauge));
}

void VisualModel::EnterLimit(Marker marker, std::optional<double> value) {
  if (!value) return;
  state_.Gauge.Enter(marker, *value);
  WriteMarkers(marker);
}

std::string VisualModel::LimitRange(Marker marker) const {
  return LimitRangeText(static_cast<std::size_t>(parts_.Display.SelectedChannel), marker, Limits(), state_.Gauge);
}

double VisualModel::LimitStepEnd(double from, double wanted) const {
  return krx::LimitStepEnd(static_cast<std::size_t>(parts_.Display.SelectedChannel), parts_.Fans, from, wanted);
}

}  // namespace krx
