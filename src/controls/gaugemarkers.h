// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace krx {

/// The two limit markers, by their pointer numbers (pointer 1 is the value).
enum class Marker { Low = 2, High = 3 };

/// The gauge's scale: its range, its graduation and the mapping to a distance along the bar.
struct GaugeScale {
  double Minimum = 0;
  double Maximum = 100;

  double Clamp(double value) const;
  /// Position of a value between 0 (minimum) and 1 (maximum); values outside stand at the ends, NaN at the minimum.
  double Fraction(double value) const;
  double ValueAt(double fraction) const;
  /// Digits after the point of a marker: none on a scale of 100 or more, else two. Dragged markers snap to them.
  int Decimals() const;
  double Snap(double value) const;
  /// One arrow key's step: 1, 2 or 5 times a power of ten, about a 200th of the scale.
  double Step() const;
  /// Graduations inside the scale, at most `most` (at least 2) of them, 1, 2 or 5 times a power of ten apart.
  std::vector<double> Ticks(int most) const;

  bool operator==(const GaugeScale&) const = default;
};

/// The state of a limit gauge: the value pointer and two markers. A marker exists for the user only after a channel
/// selection has placed it.
class GaugeMarkers {
 public:
  using RegisterBytes = std::vector<std::uint8_t>;

  /// A new scale; both markers are gone until they are placed on it.
  void SetScale(double minimum, double maximum);
  const GaugeScale& Scale() const { return scale_; }

  double Value() const { return value_; }
  void SetValue(double value) { value_ = value; }

  /// A marker's value; it may lie outside the scale if it was placed there. 0 before it is placed.
  double Low() const { return Get(Marker::Low).Value; }
  double High() const { return Get(Marker::High).Value; }
  double ValueOf(Marker marker) const { return Get(marker).Value; }

  /// Places a marker where the chip's limit stands: the value is kept as it is, also outside the scale. `bytes` are
  /// the register bytes it was made from, in the order they were read; a marker that is not moved writes them back.
  void Place(Marker marker, double value, std::optional<RegisterBytes> bytes);
  /// Shows a marker that stands for no register and cannot be dragged: the high marker of a fan.
  void Park(Marker marker, double value);

  /// The chip's limit is another one now. A marker that the user is moving stays where it is.
  void Renew(Marker marker, double value, RegisterBytes bytes);
  /// Nobody knows what the chip's limit is: the marker keeps its place, but stands for no bytes until it is moved.
  void Forget(Marker marker) { Get(marker).Bytes.reset(); }
  /// False after Forget: its value is not the chip's.
  bool IsKnown(Marker marker) const { return Get(marker).Parked || Get(marker).Moved || Get(marker).Bytes.has_value(); }

  bool IsPlaced(Marker marker) const { return Get(marker).Placed; }
  bool IsDraggable(Marker marker) const { return Get(marker).Placed && !Get(marker).Parked; }
  /// True from a move until the marker is placed again or put back.
  bool IsMoved(Marker marker) const { return Get(marker).Moved; }
  /// The bytes the marker was placed from; nothing once it was moved.
  std::optional<RegisterBytes> Bytes(Marker marker) const;

  /// Moves a marker to a value the user wants: kept on the scale and on its side of the other marker, which stays where
  /// it is. Not snapped: a typed limit may be finer than the scale's decimals. Where both are impossible the scale
  /// wins. Returns the marker's value; a marker that cannot be dragged stays.
  double Move(Marker marker, double wanted);
  /// A typed value: kept as it is, whatever the scale and the other marker. A marker that cannot be dragged stays.
  void Enter(Marker marker, double value);
  /// Undoes the moves since the marker was placed, for a value that could not be written.
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
