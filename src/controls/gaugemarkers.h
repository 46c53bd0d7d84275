// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace krx {

/// The two limit markers, with their pointer numbers (pointer 1 is the value).
enum class Marker { Low = 2, High = 3 };

/// The gauge's scale: range, graduation and mapping to a position along the bar.
struct GaugeScale {
  double Minimum = 0;
  double Maximum = 100;

  double Clamp(double value) const;
  /// Position of a value between 0 (minimum) and 1 (maximum); values outside map to the ends, NaN to the minimum.
  double Fraction(double value) const;
  double ValueAt(double fraction) const;
  /// Decimals of a marker: none on a scale of 100 or more, else two. Dragged markers snap to them.
  int Decimals() const;
  double Snap(double value) const;
  /// Step of an arrow key: 1, 2 or 5 times a power of ten, about 1/200 of the scale.
  double Step() const;
  /// At most `most` (at least 2) graduations inside the scale, 1, 2 or 5 times a power of ten apart.
  std::vector<double> Ticks(int most) const;

  bool operator==(const GaugeScale&) const = default;
};

/// The state of a limit gauge: the value pointer and two markers. A marker is visible only after a channel selection
/// has placed it.
class GaugeMarkers {
 public:
  using RegisterBytes = std::vector<std::uint8_t>;

  /// Sets a new scale; both markers are removed until they are placed on it.
  void SetScale(double minimum, double maximum);
  const GaugeScale& Scale() const { return scale_; }

  double Value() const { return value_; }
  void SetValue(double value) { value_ = value; }

  /// A marker's value; it may be outside the scale if it was placed there. 0 before it is placed.
  double Low() const { return Get(Marker::Low).Value; }
  double High() const { return Get(Marker::High).Value; }
  double ValueOf(Marker marker) const { return Get(marker).Value; }

  /// Places a marker at the chip's limit, also outside the scale. `bytes` are the register bytes of the limit, in the
  /// order they were read; an unmoved marker writes them back.
  void Place(Marker marker, double value, std::optional<RegisterBytes> bytes);
  /// Shows a marker without a register that cannot be dragged: the high marker of a fan.
  void Park(Marker marker, double value);

  /// The chip's limit has changed. A marker being moved by the user stays where it is.
  void Renew(Marker marker, double value, RegisterBytes bytes);
  /// The chip's limit is unknown: the marker stays in place, but has no bytes until it is moved.
  void Forget(Marker marker) { Get(marker).Bytes.reset(); }
  /// False after Forget: its value is not that of the chip.
  bool IsKnown(Marker marker) const { return Get(marker).Parked || Get(marker).Moved || Get(marker).Bytes.has_value(); }

  bool IsPlaced(Marker marker) const { return Get(marker).Placed; }
  bool IsDraggable(Marker marker) const { return Get(marker).Placed && !Get(marker).Parked; }
  /// True from a move until the marker is placed again or reset.
  bool IsMoved(Marker marker) const { return Get(marker).Moved; }
  /// The bytes the marker was placed from; empty once it was moved.
  std::optional<RegisterBytes> Bytes(Marker marker) const;

  /// Moves a marker to the user's value, limited to the scale and by the other marker, which stays where it is. Not
  /// snapped: a typed limit may be finer than the scale's decimals. If both limits conflict, the scale takes
  /// precedence. Returns the marker's value; a marker that cannot be dragged is not moved.
  double Move(Marker marker, double wanted);
  /// Sets a typed value, regardless of the scale and the other marker. A marker that cannot be dragged is not moved.
  void Enter(Marker marker, double value);
  /// Resets the marker to its placed value, for a value that could not be written.
  void PutBack(Marker marker);

 private:
  struct State {
    double Value = 0;
    double PlacedValue = 0;
    bool Placed = false;
    bool Parked = false;
    bool Moved = false;
    std::optional<RegisterBytes> Bytes;
  };
  const State& Get(Marker marker) const { return states_[marker == Marker::Low ? 0 : 1]; }
  State& Get(Marker marker) { return states_[marker == Marker::Low ? 0 : 1]; }

  GaugeScale scale_;
  double value_ = 0;
  std::array<State, 2> states_;
};

}  // namespace krx
