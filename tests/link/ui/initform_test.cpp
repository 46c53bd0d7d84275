// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/initform.h"

#include <gtest/gtest.h>

#include <QtTest>
#include <QtWidgets>

#include "support/scripteddialogs.h"
#include "support/testbench.h"
#include "support/words.h"

namespace krx {
namespace {

struct WizardBench {
  explicit WizardBench(SimOptions options = {}, bool simulatedOffered = true)
      : Chip(TestBench::Medium::Board, std::move(options)), Form(Wizard, Dialogs, "A note", simulatedOffered) {
    Chip.Bus.CommsMedium = 0;
    Chip.Bus.ChipAddress = 0;
    QObject::connect(&Form, &InitForm::Finished, &Form, [this] { Ends += "finished "; });
    QObject::connect(&Form, &InitForm::Abandoned, &Form, [this] { Ends += "abandoned "; });
    // The close box, while page 3 shows.
    QObject::connect(&Form, &InitForm::MainWindowRequested, &Form,
                     [this] { Ends += Form.close() ? "closed " : "kept "; });
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

TEST(InitForm, LeadsFromWelcomeToTheSelectedChip) {
  WizardBench bench;
  const auto words = [&] { return Words(bench.Form) + Flaws(bench.Form); };
  EXPECT_EQ(bench.Form.windowTitle(), "KRX5580 Search Wizard");
  EXPECT_EQ(words(),
            "Welcome|This KRX5580 Search Wizard will find any KRX5580s that can be controlled by this software|Click "
            "'Next' to start.|A note|(< Back)|Next >|Cancel|(Finish)");
  bench.Press("NextCMD");
  EXPECT_EQ(words(),
            "Search Media|Parallel Printer Port|Remember to connect the KRX5580 evaluation board to the printer port|"
            "USB|Connect the evaluation board to the printer port|On-Board SMBus|Found an ICH4(82801DB)|Click 'Next' "
            "to search for the KRX5580.|A note|< Back|Next >|Cancel|(Finish)");
  bench.Press("BackCMD");
  EXPECT_TRUE(bench.Find<QWidget>("WelcomePanel").isVisible());
  EXPECT_EQ(bench.Form.focusWidget(), &bench.Find<QWidget>("NextCMD"));
  bench.Press("NextCMD");
  bench.Find<QCheckBox>("PPCheck").click();
  bench.Search();
  EXPECT_EQ(bench.Ends, "kept ") << "the close box does nothing during the search";

  auto& list = bench.Find<QListWidget>("SearchResultsLIST");
  ASSERT_EQ(list.count(), 2);
  EXPECT_EQ(words(),
            "Search Results|Selected: 2Dh on printer port 0|Please select one of the KRX5580s found above.|Click "
            "'Finish' to Continue|A note|< Back|(Next >)|Cancel|Finish");
  for (const int row : {0, 1}) {
    EXPECT_EQ(list.item(row)->text().toStdString(), bench.Wizard.Rows()[static_cast<std::size_t>(row)].Text);
    const auto* drawn = qobject_cast<QStyledItemDelegate*>(list.itemDelegate());
    EXPECT_TRUE(drawn->displayText(list.item(row)->text(), {}).endsWith(row == 0 ? "port:0h" : "on the SMBus"));
  }
  EXPECT_EQ(list.item(1)->toolTip(), "2Eh on the SMBus");
  list.clearSelection();
  EXPECT_FALSE(bench.Enabled("FinishCMD")) << "nothing is selected";
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(bench.Ends, "kept ");
  list.setCurrentRow(1);
  EXPECT_EQ(bench.Label("PlaceLBL"), "Selected: 2Eh on the SMBus");
  QTest::keyClick(&list, Qt::Key_Return);
  EXPECT_EQ(bench.Ends, "kept finished ");
  EXPECT_EQ(bench.Chip.Bus.ChipAddress, 0x2E);
  EXPECT_EQ(bench.Chip.Bus.CommsMedium, 0);
}

TEST(InitForm, ReturnThreeTimesReachesTheSimulatedBoard) {
  WizardBench bench({}, false);
  QApplication::setActiveWindow(&bench.Form);
  for (int page = 0; page < 3; ++page) {
    QTest::keyClick(bench.Form.focusWidget(), Qt::Key_Return);
    QTest::qWait(60);
  }
  EXPECT_EQ(bench.Ends, "kept finished ");
  EXPECT_EQ(bench.Chip.Bus.CommsMedium, 1);
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

TEST(InitForm, WithAnUnsupportedChipsetTheSmbusIsDisabled) {
  SimOptions options;
  options.ChipsetReport = "Unsupported and unrecognised";
  WizardBench bench(options);
  bench.Press("NextCMD");
  const auto& check = bench.Find<QCheckBox>("SMBusCheck");
  EXPECT_FALSE(check.isChecked() || check.isEnabled());
  EXPECT_EQ(check.accessibleDescription(), "The available southbridge or ICH is currently unsupported.");
}

}  // namespace
}  // namespace krx
