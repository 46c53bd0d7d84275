// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/gaugemarkers.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <limits>

namespace krx {
namespace {

using Bytes = GaugeMarkers::RegisterBytes;

GaugeMarkers Temperatures(double low, double high) {
  GaugeMarkers markers;
  markers.SetScale(-55, 127);
  markers.Place(Marker::Low, low, Bytes{0x81});
  markers.Place(Marker::High, high, Bytes{0x50});
  return markers;
}

TEST(GaugeMarkers, OnlyTheMarkerThatIsMovedIsKeptOnTheScaleAndInOrder) {
  const struct {
    const char* name;
    double low, high;
    Marker moved;
    double wanted, newLow, newHigh;
  } rows[] = {
      {"free", 10, 80, Marker::Low, 20, 20, 80},
      {"finer than the scale's digits", 10, 80, Marker::High, 70.5, 10, 70.5},
      {"low stops at high", 10, 80, Marker::Low, 100, 80, 80},
      {"high stops at low", 10, 80, Marker::High, -20, 10, 10},
      {"end of the scale", 10, 80, Marker::High, 500, 10, 127},
      {"the other one stays outside", -127, 80, Marker::High, 60, -127, 60},
      {"high below the scale: the scale wins", -127, -100, Marker::Low, 0, -55, -100},
      {"stops at a broken number", 10, 79.6, Marker::Low, 90, 79.6, 79.6},
      {"no number", 10, 80, Marker::Low, std::numeric_limits<double>::quiet_NaN(), 10, 80},
  };
  for (const auto& row : rows) {
    GaugeMarkers markers = Temperatures(row.low, row.high);
    const double result = markers.Move(row.moved, row.wanted);
    EXPECT_EQ(std::pair(markers.Low(), markers.High()), std::pair(row.newLow, row.newHigh)) << row.name;
    EXPECT_EQ(result, markers.ValueOf(row.moved)) << row.name;
  }
}

TEST(GaugeMarkers, AMarkerKeepsItsBytesUntilItIsMovedAndGetsThemBack) {
  GaugeMarkers markers = Temperatures(-127, 80);
  markers.Move(Marker::High, 60);
  EXPECT_EQ(markers.Bytes(Marker::Low), Bytes{0x81});
  EXPECT_EQ(markers.Bytes(Marker::High), std::nullopt);
  markers.PutBack(Marker::High);
  EXPECT_EQ(markers.High(), 80);
  EXPECT_EQ(markers.Bytes(Marker::High), Bytes{0x50});
  markers.Move(Marker::Low, 0);
  markers.Place(Marker::Low, 0, Bytes{0x00});
  EXPECT_EQ(markers.Bytes(Marker::Low), Bytes{0x00}) << "what was written is what it now stands for";
}

TEST(GaugeMarkers, WhatNoChannelHasPlacedCannotBeDragged) {
  GaugeMarkers markers;
  markers.SetScale(0, 20000);
  EXPECT_EQ(markers.Move(Marker::Low, 500), 0);
  markers.Place(Marker::Low, 82, Bytes{0xFF, 0xFF});
  markers.Park(Marker::High, 20000);
  EXPECT_EQ(markers.Move(Marker::High, 500), 20000);
  EXPECT_EQ(markers.Move(Marker::Low, 500), 500);
  markers.SetScale(0, 8);
  EXPECT_FALSE(markers.IsDraggable(Marker::Low)) << "the marker of another channel";
}

TEST(GaugeScale, GraduationStepsDecimalsAndPlacesSuitEachScale) {
  const std::tuple<double, double, const char*> rows[] = {
      // Three ticks, their number; step and decimals.
      {-55, 127, "-40 -20 120 9; 1 0"},     {0, 20000, "0 2000 20000 11; 100 0"}, {0, 8, "0 1 8 9; 0.05 2"},
      {0, 18, "0 2 18 10; 0.1 2"},          {0, 4, "0 0.5 4 9; 0.02 2"},          {0, 180, "0 20 180 10; 1 0"},
      {0, 0.07, "0 0.01 0.07 8; 0.0005 2"},
  };
  for (const auto& [least, most, wanted] : rows) {
    const GaugeScale range{least, most};
    const auto ticks = range.Ticks(11);
    EXPECT_EQ(fmt::format("{:g} {:g} {:g} {}; {:g} {}", ticks.at(0) + 0.0, ticks.at(1), ticks.back(), ticks.size(),
                          range.Step(), range.Decimals()),
              wanted);
  }
  const GaugeScale scale{-55, 127};
  EXPECT_LE(scale.Ticks(2).size(), 2U);
  // A value outside stands at the end stop.
  for (const auto& [value, share] : {std::pair{200, 1.0}, {-128, 0.0}, {36, 0.5}})
    EXPECT_EQ(scale.Fraction(value), share) << value;
  EXPECT_EQ(std::pair(scale.ValueAt(0.5), scale.ValueAt(2)), std::pair(36.0, 127.0));
}

}  // namespace
}  // namespace krx
