// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/fandialogmodel.h"

#include <gtest/gtest.h>

#include "link/registeraccess.h"
#include "support/fanbench.h"

namespace krx {
namespace {

using enum FanSetting;

TEST(FanDialogModel, ReadsATabOnceAndLoadingAloneIsNotAnEdit) {
  FanBench bench;
  const auto apply = [&] {
    bench.Traffic();
    EXPECT_FALSE(bench.Model.Apply());
    EXPECT_FALSE(bench.Model.ApplyEnabled());
    return bench.Traffic();
  };
  bench.Model.Open();
  bench.Model.ShowTab(2);
  EXPECT_FALSE(bench.Model.ApplyEnabled());
  bench.Traffic();
  bench.Model.Fields[2].SpinUp = "None";
  bench.Model.Edited(SpinUp, 2);
  for (const std::size_t tab : {0U, 2U}) bench.Model.ShowTab(tab);
  EXPECT_EQ(bench.Traffic(), "");
  EXPECT_EQ(apply(), "R5E W5E:60");
  bench.Model.Edited(MinimumDuty, 0);
  EXPECT_EQ(apply(), "R5E W5E:60 W64:80") << "an earlier Apply is written again";
  bench.Model.Fields[0].MinimumDuty = "10";
  bench.Model.Edited(MinimumDuty, 0);
  WriteByte(bench.Bus, 0x5E, 0x62);
  bench.Model.Renew();
  EXPECT_EQ(apply(), "R5E W5E:62 W64:1A") << "but not what an undo has restored since";
  bench.Model.ShowTab(0);
  bench.Model.Edited(MinimumDuty, 0);
  EXPECT_EQ(apply(), "W64:1A") << "showing a tab without pending edits clears the flags";
  bench.Poke("5E:65");
  bench.Model.Open();
  bench.Model.ShowTab(2);
  EXPECT_EQ(bench.Model.Fields[2].SpinUp, "1 sec");
}

TEST(FanDialogModel, WithEditsPendingAFreshTabIsWrittenBackAsItWasRead) {
  FanBench bench;
  bench.Model.Open();
  bench.Model.Fields[0].SpinUp = "None";
  bench.Model.Edited(SpinUp, 0);
  bench.Model.ShowTab(1);
  EXPECT_TRUE(bench.Model.ApplyEnabled());
  bench.Traffic();
  bench.Model.Apply();
  EXPECT_EQ(bench.BusTraffic(),
            "R5D W5D:62 R60 W60:C4 R5C W5C:60 R5D W5D:62 W65:80 R7B W7B:55 R62 W62:00 R5D W5D:62 R73 W73:00 V90 "
            "S90:40 W57:FF W56:FF R63 W63:00 R63 W63:00");
}

TEST(FanDialogModel, AnInvalidEntryIsRejectedBeforeAnythingIsWritten) {
  const std::tuple<FanSetting, const char*, const char*> rows[] = {
      {MinimumDuty, "101", "Invalid Min PWM Value"},
      {MinimumDuty, "-1", "Invalid Min PWM Value"},
      {MinimumDuty, "100", nullptr},
      {MinimumDuty, "", nullptr},
      {TachLimit, "81", "Invalid Tach Limit"},
      {TachLimit, "83", nullptr},
      {TachLimit, "-1000", "Invalid Tach Limit"},
      {TachLimit, "0", nullptr},
  };
  for (const auto& [setting, text, message] : rows) {
    FanBench bench;
    bench.Model.Open();
    bench.Model.ShowTab(2);
    (setting == MinimumDuty ? bench.Model.Fields[2].MinimumDuty : bench.Model.Fields[2].TachLimit) = text;
    bench.Model.Edited(setting, 2);
    bench.Traffic();
    const auto refusal = bench.Model.Apply();
    ASSERT_EQ(refusal.has_value(), message != nullptr) << text;
    EXPECT_EQ(bench.Traffic().empty(), message != nullptr) << text;
    EXPECT_EQ(bench.Model.ApplyEnabled(), message != nullptr);
    if (!refusal) continue;
    EXPECT_EQ(std::tie(refusal->Message, refusal->Setting, refusal->Fan), std::tuple(message, setting, 2U));
  }
  FanBench bench;
  bench.Edit(0, {{TachLimit, "200"}});
  EXPECT_FALSE(bench.Config.Check(bench.Fields));
  bench.Edit(0, {{ProgrammedPulses, "4"}});
  EXPECT_TRUE(bench.Config.Check(bench.Fields)) << "four times 27000 counts with the pulses of the same apply";
}

TEST(FanDialogModel, AFailedLoadOrApplyLeavesNothingHalfDone) {
  FanBench bench;
  for (int nth = 1; nth <= 10; ++nth) {
    bench.Fans.PendingChange.Set(Behaviour, 2);  // of an earlier dialog
    UpToFailure(bench, nth, [&] { bench.Model.Open(); });
    EXPECT_FALSE(bench.Model.Loaded(0) || bench.Model.ApplyEnabled() || bench.Fans.PendingChange.Has(Behaviour, 2));
    EXPECT_EQ(bench.Model.Fields[0].Behaviour, "");
  }
  bench.Model.Open();
  bench.Model.Edited(SpinUp, 0);
  UpToFailure(bench, 10, [&] { bench.Model.ShowTab(1); });
  EXPECT_FALSE(bench.Fans.PendingChange.Has(SpinUp, 1));
  UpToFailure(bench, 2, [&] { bench.Model.Apply(); });
  EXPECT_TRUE(bench.Model.ApplyEnabled());
}

}  // namespace
}  // namespace krx
