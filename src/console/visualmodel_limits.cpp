// SPDX-License-Identifier: GPL-3.0-or-later
// The boxes of the limits; the rest of the model is in visualmodel.cpp.
#include "console/limitentry.h"
#include "console/visualmodel.h"
#include "console/workbench.h"

namespace krx {

void VisualModel::TypeLimit(Marker marker, const std::string& text) {
  const auto channel = static_cast<std::size_t>(bench_.Display.SelectedChannel);
  EnterLimit(marker, TypedLimit(text, channel, marker, Limits(), state_.Gauge));
}

void VisualModel::StepLimit(Marker marker, int steps) {
  const auto channel = static_cast<std::size_t>(bench_.Display.SelectedChannel);
  EnterLimit(marker, SteppedLimit(steps, channel, marker, Limits(), state_.Gauge));
}

void VisualModel::EnterLimit(Marker marker, std::optional<double> value) {
  if (!value) return;
  state_.Gauge.Enter(marker, *value);
  WriteMarkers(marker);
}

double VisualModel::LimitStepEnd(double from, double wanted) const {
  return krx::LimitStepEnd(static_cast<std::size_t>(bench_.Display.SelectedChannel), bench_.Fans, from, wanted);
}

}  // namespace krx
