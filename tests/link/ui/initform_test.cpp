// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/initform.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "link/linux/fakekernel.h"
#include "link/linux/linuxcomms.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

struct WizardBench {
  explicit WizardBench(SimOptions options = {}, bool simulatedOffered = true)
      : Chip(TestBench::Medium::Board, std::move(options)), Form(Wizard, Dialogs, "", simulatedOffered) {
    Chip.Bus.CommsMedium = 0;
    Chip.Bus.ChipAddress = 0;
    QObject::connect(&Form, &InitForm::Finished, &Form, [this] { Ends += "finished "; });
    QObject::connect(&Form, &InitForm::Abandoned, &Form, [this] { Ends += "abandoned "; });
    QObject::connect(&Form, &InitForm::ReadOnlyWanted, &Form, [this] { Ends += "read-only "; });
    // The close box, while page 3 shows.
    QObject::connect(&Form, &InitForm::MainWindowWanted, &Form, [this] { Ends += Form.close() ? "closed " : "kept "; });
    Form.show();
    Form.Load();
  }

  template <typename Widget>
  Widget& Find(const char* name) {
    return *Form.findChild<Widget*>(name);
  }
  std::string Label(const char* name) { return Find<QLabel>(name).text().toStdString(); }
  void Press(const char* name) { Find<QPushButton>(name).click(); }
  bool Enabled(const char* name) { return Find<QPushButton>(name).isEnabled(); }
  /// From page 2 to the results.
  void Search() {
    Press("NextCMD");
    QTest::qWait(60);
  }

  TestBench Chip;
  ChipSearch Searching{Chip.Bus};
  SearchWizard Wizard{Searching};
  ScriptedDialogs Dialogs;
  std::string Ends;
  InitForm Form;
};

TEST(InitForm, LeadsFromWelcomeToTheChosenChip) {
  WizardBench bench;
  EXPECT_EQ(bench.Form.windowTitle(), "KRX5580 Search Wizard");
  EXPECT_FALSE(bench.Enabled("BackCMD"));
  bench.Press("NextCMD");
  EXPECT_TRUE(bench.Find<QWidget>("SeclectComsMediumPanel").isVisible());
  EXPECT_EQ(bench.Label("SMBusSearchDescLBL"), "Found an ICH4(82801DB)");
  bench.Find<QCheckBox>("PPCheck").click();
  bench.Search();
  EXPECT_EQ(bench.Ends, "kept ") << "the close box does nothing during the search";

  auto& list = bench.Find<QListWidget>("SearchResultsLIST");
  ASSERT_EQ(list.count(), 2);
  EXPECT_EQ(list.item(0)->text().toStdString(), bench.Wizard.Rows()[0].Text);
  EXPECT_EQ(list.item(1)->text().toStdString(), bench.Wizard.Rows()[1].Text);
  EXPECT_EQ(bench.Label("SearchInsLBL"), "Click 'Finish' to Continue");
  EXPECT_EQ(list.item(1)->toolTip(), "2Eh on the SMBus");
  EXPECT_EQ(bench.Label("PlaceLBL"), "Selected: 2Dh on printer port 0");
  list.clearSelection();
  EXPECT_FALSE(bench.Enabled("FinishCMD")) << "nothing is selected";
  list.setCurrentRow(1);
  bench.Press("FinishCMD");
  EXPECT_EQ(bench.Ends, "kept finished ");
  EXPECT_EQ(bench.Chip.Bus.ChipAddress, 0x2E);
  EXPECT_EQ(bench.Chip.Bus.CommsMedium, 0);
}

TEST(InitForm, NeedsAMediumAndOffersTheSimulatedBoardWhenNothingIsFound) {
  SimOptions options;
  options.SmbusChips.clear();
  WizardBench bench(options);
  bench.Press("NextCMD");
  bench.Find<QCheckBox>("SMBusCheck").click();
  bench.Press("NextCMD");
  EXPECT_EQ(bench.Dialogs.Shown,
            std::vector<std::string>{"exclamation|Please select a search medium|A problem was detected"});
  bench.Find<QCheckBox>("SMBusCheck").click();
  bench.Search();
  EXPECT_TRUE(bench.Label("SearchResultsLBL").starts_with("Sorry, no KRX5580s were found."));
  EXPECT_FALSE(bench.Enabled("FinishCMD"));
  EXPECT_EQ(bench.Label("PlaceLBL"), "Searched: the SMBus");
  EXPECT_TRUE(bench.Find<QPushButton>("SimulatedCMD").isVisible());
  bench.Press("BackCMD");
  EXPECT_TRUE(bench.Find<QWidget>("SeclectComsMediumPanel").isVisible());
  bench.Press("CancelCMD");
  EXPECT_EQ(bench.Ends, "kept abandoned ");
}

TEST(InitForm, ReturnThreeTimesReachesTheSimulatedBoard) {
  WizardBench bench({}, false);
  QApplication::setActiveWindow(&bench.Form);
  for (const int pause : {0, 60, 0}) {
    ASSERT_NE(bench.Form.focusWidget(), nullptr);
    QTest::keyClick(bench.Form.focusWidget(), Qt::Key_Return);
    QTest::qWait(pause);
  }
  EXPECT_EQ(bench.Ends, "kept finished ");
  EXPECT_EQ(bench.Chip.Bus.CommsMedium, 1);
}

TEST(InitForm, AChipOfAnotherProgramIsTakenReadOnlyOrNotAtAll) {
  TestRoots roots;
  FakeKernel kernel;
  FakeI2cAdapter adapter;
  WizardBench bench;
  adapter.Chips = bench.Chip.Sim.MakeCommsModule()->ObtainSmbusController();
  const std::string node = roots.Roots.Dev + "/i2c-1", holder = "krx5580 (process 4711)";
  roots.Adapter(1, "SMBus I801 adapter at 0700");
  roots.File(roots.Roots.Proc + "/4711/comm", "krx5580");
  kernel.Nodes[node] = [&] { return std::make_unique<FakeI2cFile>(adapter); };
  kernel.HeldByOthers[{node, 0x2E}] = 4711;
  LinuxOptions options;
  options.Roots = roots.Roots;
  bench.Chip.Root.Change([&] { return std::make_unique<LinuxComms>(options, kernel, bench.Chip.Time); });
  bench.Form.Load();
  bench.Press("NextCMD");
  bench.Search();
  EXPECT_EQ(bench.Label("PlaceLBL"),
            "Selected: 2Eh on SMBus I801 adapter at 0700, i2c-1, used by krx5580 (process 4711)");
  bench.Press("FinishCMD");
  EXPECT_EQ(bench.Dialogs.Shown, std::vector<std::string>{"ask|" + wizardtext::Held(holder) + "|Go on read-only"});
  EXPECT_EQ(bench.Ends, "kept ") << "No leaves the wizard open";
  bench.Dialogs.Yes = true;
  bench.Press("FinishCMD");
  EXPECT_EQ(bench.Ends, "kept read-only finished ");
}

}  // namespace
}  // namespace krx
