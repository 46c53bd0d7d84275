// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/numerics.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>

#include "link/commserror.h"

namespace krx {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(Numerics, ValTakesTheLeadingNumberAndIsNumberTheWholeText) {
  for (const char* text : {"", " ", "fan", ".", "-", "-.", "+-5", "- 3", "e5", "inf", "nan"}) {
    EXPECT_EQ(Val(text), 0) << text;
    EXPECT_FALSE(IsNumber(text)) << text;
  }
  struct Row {
    const char* Text;
    double Value;
    bool IsNumber;
  };
  const Row rows[] = {
      {" \t-7.25 ", -7.25, true}, {"+3", 3, true},
      {"-.5", -.5, true},         {"5.", 5, true},
      {".5 Sec", .5, false},      {"45°C", 45, false},
      {"25 (Fan1)", 25, false},   {"0x10", 0, false},
      {"1,000", 1, false},        {"1.2.3", 1.2, false},
      {"2.5E-1", .25, true},      {"1e", 1, false},
      {"1e+V", 1, false},         {"-1e999", -infinity, true},
      {"1e-999", 0, true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(Val(row.Text), row.Value) << row.Text;
    EXPECT_EQ(IsNumber(row.Text), row.IsNumber) << row.Text;
  }
  EXPECT_EQ(Val(std::string_view("123456").substr(0, 3)), 123) << "never behind the end of the text";
}

TEST(Numerics, CIntTakesHalvesToTheEvenNeighbourAndOverflowsOutsideInt) {
  const double values[] = {0.5, 1.5, 2.5, -0.5, -1.5, -2.5, 2.500001, 0.49999999999999994, 2147483647.4};
  const int wholes[] = {0, 2, 2, 0, -2, -2, 3, 0, 2147483647};
  for (std::size_t i = 0; i < std::size(values); ++i) EXPECT_EQ(CInt(values[i]), wholes[i]) << values[i];
  for (const double value : {2147483647.5, -2147483649.0, infinity, std::nan("")}) EXPECT_THROW(CInt(value), Overflow);
}

TEST(Numerics, RoundTakesExactHalvesToEvenAndFormatsTakeThemAwayFromZero) {
  struct Row {
    double Value;
    int Decimals;
    const char *Rounded, *Formatted;
  };
  const Row rows[] = {
      {0.125, 2, ".12", "0.13"},    {0.375, 2, ".38", "0.38"},
      {-0.125, 2, "-.12", "-0.13"}, {0.5, 0, "0", "1"},
      {2.5, 0, "2", "3"},           {-2.5, 0, "-2", "-3"},
      {1.005, 2, "1", "1.00"},      {-0.004, 2, "0", "0.00"},
      {-0.005, 2, "-.01", "-0.01"}, {99.996, 2, "100", "100.00"},
      {22.76, 1, "22.8", "22.8"},   {3.15625, 4, "3.1562", "3.1563"},
      {0, 3, "0", "0.000"},         {4503599627370497.5, 0, "4503599627370498", "4503599627370498"},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(ShortestText(Round(row.Value, row.Decimals)), row.Rounded) << row.Value;
    EXPECT_EQ(FormatFixed(row.Value, row.Decimals), row.Formatted) << row.Value;
  }
  EXPECT_EQ(Floor(-0.5), -1);
  EXPECT_EQ(FormatFixed(1e300, 2).size(), 304U);
}

TEST(Numerics, TheShortestTextHasNoDigitBeforeThePointBelowOne) {
  const double values[] = {.84, -.9, 159.32, -0.0, -10.5, 100000, 0.00001, 10.05, 999999999999999, 1e15, -1e-16};
  const char* const texts[] = {".84",    "-.9",   "159.32",          "0",     "-10.5", "100000",
                               ".00001", "10.05", "999999999999999", "1e+15", "-1e-16"};
  for (std::size_t i = 0; i < std::size(values); ++i) EXPECT_EQ(ShortestText(values[i]), texts[i]);
  EXPECT_EQ(ShortestText(.84F), ".84") << "a single is not shown with a double's digits";
  EXPECT_EQ(ShortestText(159.32F), "159.32");
  EXPECT_EQ(ShortestText(16777216.0F), "16777216");
}

TEST(Numerics, TheShortestTextReadsBackAsTheSameValue) {
  std::mt19937 random(1);
  for (int i = 0; i < 20000; ++i) {
    const auto single = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (!std::isfinite(single)) continue;
    const auto value = static_cast<double>(single) / 3;
    ASSERT_EQ(Val(ShortestText(value)), value);
    const std::string text = ShortestText(single);
    float readBack = 0;
    std::from_chars(text.data(), text.data() + text.size(), readBack);
    ASSERT_EQ(readBack, single) << text;
  }
}

TEST(Numerics, UnitTextsFollowTheNumber) {
  EXPECT_EQ(TempText(45.25F), "45.25C");
  EXPECT_EQ(TempText(-0.25F), "-0.25C");
  EXPECT_EQ(SpeedText(2400.4F), "2400 RPM");
  EXPECT_EQ(VoltageText(3.312F), "3.312 V");
  EXPECT_EQ(CurrentText(12.5F), "12.50 A");
  EXPECT_EQ(DutyText(50.2F), "50%");
  EXPECT_EQ(ThermText(22.76F), "THERM=22.8%");
}

}  // namespace
}  // namespace krx
