// SPDX-License-Identifier: GPL-3.0-or-later
#include "registers/numerics.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "link/commserror.h"

namespace krx {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

TEST(Numerics, ValTakesTheLeadingNumberAndIsNumberTheWholeText) {
  for (const char* text : {"", " ", "fan", ".", "-", "-.", "+-5", "- 3", "e5", "inf", "nan"}) {
    EXPECT_TRUE(Val(text) == 0 && !IsNumber(text)) << text;
  }
  const std::pair<const char*, double> numbers[] = {
      {" \t-7.25 ", -7.25}, {"+3", 3}, {"-.5", -.5}, {"5.", 5}, {"2.5E-1", .25}, {"-1e999", -infinity}, {"1e-999", 0}};
  const std::pair<const char*, double> beginnings[] = {{".5 Sec", .5}, {"45°C", 45},   {"25 (Fan1)", 25}, {"0x10", 0},
                                                       {"1,000", 1},   {"1.2.3", 1.2}, {"1e", 1},         {"1e+V", 1}};
  for (const auto& [text, value] : numbers) EXPECT_TRUE(Val(text) == value && IsNumber(text)) << text;
  for (const auto& [text, value] : beginnings) EXPECT_TRUE(Val(text) == value && !IsNumber(text)) << text;
  EXPECT_EQ(Val(std::string_view("123456").substr(0, 3)), 123) << "never behind the end of the text";
}

TEST(Numerics, CIntTakesHalvesToTheEvenNeighbourAndOverflowsOutsideInt) {
  std::string wholes;
  for (const double value :
       {0.5, 1.5, 2.5, -0.5, -1.5, -2.5, 2.500001, 0.49999999999999994, 2147483647.4, -2147483648.5}) {
    wholes += std::to_string(CInt(value)) + " ";
  }
  EXPECT_EQ(wholes, "0 2 2 0 -2 -2 3 0 2147483647 -2147483648 ");
  for (const double value : {2147483647.5, -2147483649.0, infinity, std::nan("")}) EXPECT_THROW(CInt(value), Overflow);
}

TEST(Numerics, RoundTakesExactHalvesToEvenAndFormatsTakeThemAwayFromZero) {
  const std::tuple<double, int, const char*, const char*> rows[] = {
      {0.125, 2, ".12", "0.13"},    {0.375, 2, ".38", "0.38"},
      {-0.125, 2, "-.12", "-0.13"}, {0.5, 0, "0", "1"},
      {2.5, 0, "2", "3"},           {-2.5, 0, "-2", "-3"},
      {1.005, 2, "1", "1.00"},      {-0.004, 2, "0", "0.00"},
      {-0.005, 2, "-.01", "-0.01"}, {99.996, 2, "100", "100.00"},
      {22.76, 1, "22.8", "22.8"},   {3.15625, 4, "3.1562", "3.1563"},
      {0, 3, "0", "0.000"},         {4503599627370497.5, 0, "4503599627370498", "4503599627370498"},
  };
  for (const auto& [value, decimals, rounded, formatted] : rows) {
    EXPECT_EQ(ShortestText(Round(value, decimals)), rounded) << value;
    EXPECT_EQ(FormatFixed(value, decimals), formatted) << value;
  }
  EXPECT_EQ(Floor(-0.5), -1);
  EXPECT_EQ(FormatFixed(1e300, 2).size(), 304U);
}

TEST(Numerics, TheShortestTextHasNoDigitBeforeThePointBelowOne) {
  std::string texts;
  for (const double value :
       {.84, -.9, 159.32, -0.0, -10.5, 100000., 0.00001, 10.05, 999999999999999., 1e15, 1e-15, -1e-16}) {
    texts += ShortestText(value) + " ";
  }
  EXPECT_EQ(texts, ".84 -.9 159.32 0 -10.5 100000 .00001 10.05 999999999999999 1e+15 .000000000000001 -1e-16 ");
  EXPECT_EQ(ShortestText(.84F), ".84") << "a single is not shown with a double's digits";
  EXPECT_EQ(ShortestText(16777216.0F), "16777216");
}

TEST(Numerics, UnitTextsFollowTheNumber) {
  EXPECT_EQ(TempText(-0.25F) + ", " + SpeedText(2400.4F) + ", " + VoltageText(3.312F), "-0.25C, 2400 RPM, 3.312 V");
  EXPECT_EQ(CurrentText(12.5F) + ", " + DutyText(50.2F) + ", " + ThermText(22.76F), "12.50 A, 50%, THERM=22.8%");
}

}  // namespace
}  // namespace krx
