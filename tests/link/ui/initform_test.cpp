// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/initform.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

struct WizardBench {
  explicit WizardBench(SimOptions options = {}) : Chip(TestBench::Medium::Board, std::move(options)) {
    Chip.Bus.CommsMedium = 0;
    Chip.Bus.ChipAddress = 0;
    QObject::connect(&Form, &InitForm::Finished, &Form, [this] { Ends += "finished "; });
    QObject::connect(&Form, &InitForm::Abandoned, &Form, [this] { Ends += "abandoned "; });
    QObject::connect(&Form, &InitForm::MainWindowWanted, &Form, [this] {
      // The close box, while page 3 shows.
      Ends += Form.close() ? "closed " : "kept ";
    });
    Form.show();
    Form.Load();
  }

  template <typename Widget>
  Widget& Find(const char* name) {
    return *Form.findChild<Widget*>(name);
  }
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
  InitForm Form{Wizard, Dialogs, "", true};
};

TEST(InitForm, LeadsFromWelcomeToTheChosenChip) {
  WizardBench bench;
  EXPECT_EQ(bench.Form.windowTitle(), "KRX5580 Search Wizard");
  EXPECT_FALSE(bench.Enabled("BackCMD"));
  bench.Press("NextCMD");
  EXPECT_TRUE(bench.Find<QWidget>("SeclectComsMediumPanel").isVisible());
  EXPECT_EQ(bench.Find<QLabel>("SMBusSearchDescLBL").text(), "Found an ICH4(82801DB)");
  bench.Find<QCheckBox>("PPCheck").click();
  bench.Search();
  EXPECT_EQ(bench.Ends, "kept ") << "the close box does nothing during the search";

  auto& list = bench.Find<QListWidget>("SearchResultsLIST");
  ASSERT_EQ(list.count(), 2);
  EXPECT_EQ(list.item(0)->text(),
            "Found an KRX5580 at:2Dh, on printer port:0h" + QString(50, QLatin1Char(' ')) + "Printer 1");
  EXPECT_EQ(list.item(1)->text(),
            "An KRX5580 was found at:2Eh, on the SMBus" + QString(98, QLatin1Char(' ')) + "SMBus2E");
  EXPECT_EQ(bench.Find<QLabel>("SearchInsLBL").text(), "Click 'Finish' to Continue");
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
  EXPECT_EQ(bench.Find<QLabel>("SearchResultsLBL").text(),
            "Sorry, no KRX5580s were found. Please check all connections and try again");
  EXPECT_FALSE(bench.Enabled("FinishCMD"));
  EXPECT_TRUE(bench.Find<QPushButton>("SimulatedCMD").isVisible());
  bench.Press("BackCMD");
  EXPECT_TRUE(bench.Find<QWidget>("SeclectComsMediumPanel").isVisible());
  bench.Press("CancelCMD");
  EXPECT_EQ(bench.Ends, "kept abandoned ");
}

}  // namespace
}  // namespace krx
