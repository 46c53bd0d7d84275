// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/initform.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include "link/bushost.h"
#include "support/scripteddialogs.h"
#include "support/testbench.h"

namespace krx {
namespace {

/// The simulated computer with a neighbour that has its chips.
struct SharedComms : CommsModule, BusHost {
  SharedComms(std::unique_ptr<CommsModule> inner, std::optional<std::string>& holder)
      : Inner(std::move(inner)), Neighbour(holder) {}
  std::unique_ptr<PrinterPortAdapter> ObtainPrinterPortAdapter() override { return Inner->ObtainPrinterPortAdapter(); }
  std::unique_ptr<SmbusController> ObtainSmbusController() override { return Inner->ObtainSmbusController(); }
  void SelectMedium(int medium) override { Inner->SelectMedium(medium); }
  BusHost* Host() override { return this; }
  std::vector<SmbusAdapter> SmbusAdapters() override { return {{1, "SMBus I801 adapter at 0700, i2c-1"}}; }
  void UseSmbusAdapter(int) override {}
  int PortNumber(int port) override { return port; }
  std::optional<std::string> SmbusHolder(std::uint8_t, WriteRight) override { return Neighbour; }
  std::optional<std::string> PortHolder(WriteRight) override { return Neighbour; }
  std::unique_ptr<CommsModule> Inner;
  std::optional<std::string>& Neighbour;
};

struct WizardBench {
  explicit WizardBench(SimOptions options = {}, bool simulatedOffered = true)
      : Chip(TestBench::Medium::Board, std::move(options)), Form(Wizard, Dialogs, "", simulatedOffered) {
    Chip.Bus.CommsMedium = 0;
    Chip.Bus.ChipAddress = 0;
    QObject::connect(&Form, &InitForm::Finished, &Form, [this] { Ends += "finished "; });
    QObject::connect(&Form, &InitForm::Abandoned, &Form, [this] { Ends += "abandoned "; });
    QObject::connect(&Form, &InitForm::ReadOnlyWanted, &Form, [this] { Ends += "read-only "; });
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
  InitForm Form;
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
  EXPECT_EQ(list.item(1)->toolTip(), "2Eh on the SMBus");
  EXPECT_EQ(bench.Find<QLabel>("PlaceLBL").text(), "Selected: 2Dh on printer port 0");
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
  EXPECT_EQ(bench.Find<QLabel>("PlaceLBL").text(), "Searched: the SMBus");
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
  std::optional<std::string> holder = "krx5580 (process 4711)";
  WizardBench bench;
  bench.Chip.Root.Change([&] { return std::make_unique<SharedComms>(bench.Chip.Sim.MakeCommsModule(), holder); });
  bench.Form.Load();
  bench.Press("NextCMD");
  bench.Search();
  EXPECT_EQ(bench.Find<QLabel>("PlaceLBL").text(),
            "Selected: 2Eh on SMBus I801 adapter at 0700, i2c-1, used by krx5580 (process 4711)");
  bench.Press("FinishCMD");
  EXPECT_EQ(bench.Dialogs.Shown, std::vector<std::string>{"ask|" + wizardtext::Held(*holder) + "|Go on read-only"});
  EXPECT_EQ(bench.Ends, "kept ") << "No leaves the wizard open";
  bench.Dialogs.Yes = true;
  bench.Press("FinishCMD");
  EXPECT_EQ(bench.Ends, "kept read-only finished ");
}

}  // namespace
}  // namespace krx
