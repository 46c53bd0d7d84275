// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/fandialogmodel.h"

#include <gtest/gtest.h>

#include "link/registeraccess.h"
#include "support/fanbench.h"

namespace krx {
namespace {

TEST(FanDialogModel, ReadsATabOnceAndLoadingAloneIsNoEdit) {
  FanBench bench;
  bench.Model.Open();
  bench.Model.ShowTab(2);
  EXPECT_FALSE(bench.Model.ApplyEnabled());
  bench.Traffic();
  bench.Model.Fields[2].SpinUp = "None";
  bench.Model.Edited(FanSetting::SpinUp, 2);
  bench.Model.ShowTab(0);
  bench.Model.ShowTab(2);
  EXPECT_EQ(bench.Traffic(), "");
  EXPECT_EQ(bench.Model.Fields[2].SpinUp, "None");
  bench.Model.Apply();
  EXPECT_EQ(bench.Traffic(), "R5E W5E:60");
  EXPECT_FALSE(bench.Model.ApplyEnabled());
  bench.Model.Edited(FanSetting::MinimumDuty, 0);
  bench.Model.Apply();
  EXPECT_EQ(bench.Traffic(), "R5E W5E:60 W64:80") << "what was applied before is written again";
  bench.Model.Fields[0].MinimumDuty = "10";
  bench.Model.Edited(FanSetting::MinimumDuty, 0);
  WriteByte(bench.Bus, 0x5E, 0x62);
  bench.Model.Renew();
  bench.Model.Apply();
  EXPECT_EQ(bench.Traffic(), "W5E:62 R5E W5E:62 W64:1A") << "but not what an undo has put back since";
  bench.Model.ShowTab(0);
  bench.Model.Edited(FanSetting::MinimumDuty, 0);
  bench.Model.Apply();
  EXPECT_EQ(bench.Traffic(), "W64:1A") << "showing a tab without pending edits clears the flags";
  bench.Poke(0x5E, 0x65);
  bench.Model.Open();
  bench.Model.ShowTab(2);
  EXPECT_EQ(bench.Model.Fields[2].SpinUp, "1 sec");
}

TEST(FanDialogModel, WithEditsPendingAFreshTabIsWrittenBackAsItWasRead) {
  FanBench bench;
  bench.Model.Open();
  bench.Model.Fields[0].SpinUp = "None";
  bench.Model.Edited(FanSetting::SpinUp, 0);
  bench.Model.ShowTab(1);
  EXPECT_TRUE(bench.Model.ApplyEnabled());
  bench.Traffic();
  bench.Model.Apply();
  EXPECT_EQ(bench.BusTraffic(),
            "R5D W5D:62 R60 W60:C4 R5C W5C:60 R5D W5D:62 W65:80 R7B W7B:55 R62 W62:00 R5D W5D:62 R73 W73:00 V90 "
            "S90:40 W57:FF W56:FF R63 W63:00 R63 W63:00");
}

TEST(FanDialogModel, WhatHasNoEncodingIsRefusedBeforeAnythingIsWritten) {
  struct Row {
    FanSetting Setting;
    std::string FanFields::*Field;
    const char* Text;
    const char* Message;  ///< null: accepted
  };
  const Row rows[] = {
      {FanSetting::MinimumDuty, &FanFields::MinimumDuty, "101", "Invalid Min PWM Value"},
      {FanSetting::MinimumDuty, &FanFields::MinimumDuty, "-1", "Invalid Min PWM Value"},
      {FanSetting::MinimumDuty, &FanFields::MinimumDuty, "100", nullptr},
      {FanSetting::MinimumDuty, &FanFields::MinimumDuty, "", nullptr},
      {FanSetting::TachLimit, &FanFields::TachLimit, "81", "Invalid Tach Limit"},
      {FanSetting::TachLimit, &FanFields::TachLimit, "83", nullptr},
      {FanSetting::TachLimit, &FanFields::TachLimit, "-1000", "Invalid Tach Limit"},
      {FanSetting::TachLimit, &FanFields::TachLimit, "0", nullptr},
  };
  for (const Row& row : rows) {
    FanBench bench;
    bench.Model.Open();
    bench.Model.ShowTab(2);
    bench.Model.Fields[2].*row.Field = row.Text;
    bench.Model.Edited(row.Setting, 2);
    bench.Traffic();
    const auto refusal = bench.Model.Apply();
    ASSERT_EQ(refusal.has_value(), row.Message != nullptr) << row.Text;
    EXPECT_EQ(bench.Traffic().empty(), row.Message != nullptr) << row.Text;
    EXPECT_EQ(bench.Model.ApplyEnabled(), row.Message != nullptr);
    if (!refusal) continue;
    EXPECT_EQ(refusal->Message, row.Message);
    EXPECT_EQ(refusal->Setting, row.Setting);
    EXPECT_EQ(refusal->Fan, 2U);
  }
  FanBench bench;
  bench.Edit(FanSetting::TachLimit, 0, &FanFields::TachLimit, "200");
  EXPECT_FALSE(bench.Config.Check(bench.Fields));
  bench.Edit(FanSetting::ProgrammedPulses, 0, &FanFields::ProgrammedPulses, "4");
  EXPECT_TRUE(bench.Config.Check(bench.Fields)) << "four times 27000 counts with the pulses of the same apply";
}

TEST(FanDialogModel, AFailedLoadOrApplyLeavesNothingHalfDone) {
  FanBench bench;
  for (int nth = 1; nth <= 10; ++nth) {
    bench.Fans.PendingChange.Set(FanSetting::Behaviour, 2);  // of a dialog before
    UpToFailure(bench, nth, [&] { bench.Model.Open(); });
    EXPECT_FALSE(bench.Model.Loaded(0));
    EXPECT_FALSE(bench.Model.ApplyEnabled());
    EXPECT_FALSE(bench.Fans.PendingChange.Has(FanSetting::Behaviour, 2));
    EXPECT_EQ(bench.Model.Fields[0].Behaviour, "");
  }
  bench.Model.Open();
  bench.Model.Edited(FanSetting::SpinUp, 0);
  UpToFailure(bench, 10, [&] { bench.Model.ShowTab(1); });
  EXPECT_FALSE(bench.Fans.PendingChange.Has(FanSetting::SpinUp, 1));
  UpToFailure(bench, 2, [&] { bench.Model.Apply(); });
  EXPECT_TRUE(bench.Model.ApplyEnabled());
}

}  // namespace
}  // namespace krx
