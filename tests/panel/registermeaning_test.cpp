// SPDX-License-Identifier: GPL-3.0-or-later
#include "panel/registermeaning.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include "registers/meanings.h"
#include "registers/registermap.h"

namespace krx {
namespace {

TEST(RegisterMeaning, SaysEachFieldShortAndWithItsCode) {
  const std::tuple<int, std::optional<std::uint8_t>, const char*> rows[] = {
      {0x5C, 0xC2,
       "7–5 Behaviour=110:Fastest of all Temps[110 · Fastest of all Temps] 4 Polarity=0:active low[0 · active low] "
       "3 SLOW=0:not interpreted[0] 2–0 Spin-up=010:250 ms[010 · 250 ms]"},
      {0x5C, std::nullopt, "7–5 Behaviour=–:[–] 4 Polarity=–:[–] 3 SLOW=–:[–] 2–0 Spin-up=–:[–]"},
      {0x6D, 0x4A, "7–4 Remote1=0100:4 °C[4 °C] 3–0 Local=1010:10 °C[10 °C]"},
      {0x4F, 0x81, "7–0 Remote1 high limit=81h:-127 °C[-127 °C]"},
      {0x43, 0x47, "7 VIDSEL=0:not interpreted[0] 6 THLD=1:not interpreted[1] 5–0 VID5 to VID0=07h:000111[000111]"},
      {0x76, 0x1B,
       "7–6 5V=00:+0.0000 V[+0.0000 V] 5–4 Vcc=01:+0.0042 V[+0.0042 V] 3–2 Vccp=10:+0.0059 V[+0.0059 V] "
       "1–0 2.5V=11:+0.0096 V[+0.0096 V]"},
      {0x7C, 0x00, ""},
  };
  for (const auto& [address, byte, text] : rows) {
    std::string said;
    for (const FieldRow& row : FieldRows(address, byte)) {
      said += fmt::format("{}{} {}={}:{}[{}]", said.empty() ? "" : " ", row.Bits, row.Name, row.Value, row.Meaning,
                          row.Caption);
    }
    EXPECT_EQ(said, text) << address;
  }
}

TEST(RegisterMeaning, ListsTheCodesOfAFieldAndMarksThePresentOne) {
  const std::tuple<int, std::size_t, int, const char*> rows[] = {
      {0x5D, 3, 0x07, "000 None,001 100 ms,010 250 ms,011 400 ms,100 667 ms,101 1 sec,110 2 sec,111 4 sec*,"},
      {0x7B, 1, 0x10, "00 1,01 2*,10 3,11 4,"},
      {0x78, 7, 0x00, "0 PWM2 output*,1 SMBus alert output,"},
      {0x78, 2, 0x00, ""},  // its codes have no meaning here
      {0x4F, 0, 0x00, ""},
      {0x5C, 9, 0x00, ""},
  };
  for (const auto& [address, field, byte, text] : rows) {
    std::string said;
    for (const CodeRow& row : CodeRows(address, field, static_cast<std::uint8_t>(byte)))
      said += row.Code + ' ' + row.Meaning + (row.Present ? "*," : ",");
    EXPECT_EQ(said, text) << address;
  }
  EXPECT_EQ(MainCodeField(0x62), 5U);
  EXPECT_EQ(MainCodeField(0x40), std::nullopt);
}

TEST(RegisterMeaning, EveryRegisterHasAPurposeOfItsOwnSubject) {
  for (const RegisterEntry& entry : Registers())
    EXPECT_TRUE(RegisterMeaning(entry.Address).ends_with('.')) << entry.PanelName;
  EXPECT_EQ(RegisterMeaning(0x7C) + RegisterMeaning(0x3A), "");
  EXPECT_EQ(RegisterMeaning(0x4D), "Highest 12V voltage without an alarm.");
  EXPECT_EQ(RegisterMeaning(0x52), "Lowest Remote2 temperature without an alarm.");
  EXPECT_EQ(
      RegisterMeaning(0x60),
      "Range of the Local zone's temperature over which its fans go up to full speed, and the frequency of PWM2.");
  EXPECT_TRUE(RegisterMeaning(0x2D).starts_with("High byte of the Tach3 count"));
}

}  // namespace
}  // namespace krx
