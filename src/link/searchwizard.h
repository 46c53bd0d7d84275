// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "link/chipsearch.h"

namespace krx {

/// The pages, buttons and texts of the search wizard over a ChipSearch; its window only shows them.
class SearchWizard {
 public:
  enum class Page { Welcome = 1, Medium = 2, Searching = 3, Results = 4 };
  enum class NextStep { Shown, SelectMedium, Search };

  explicit SearchWizard(ChipSearch& search);

  /// What loading the form does: control byte 0, page 1, texts, medium page. Returns the box to show, if any.
  std::optional<SearchReport> Load();

  /// The Next button. SelectMedium: nothing is ticked, the window says so; Search: the window calls BeginSearch,
  /// shows page 3 and runs it; Shown: the page and the buttons are as they have to be.
  NextStep Next(const SearchMedia& media);
  void Back();

  /// Page 3, every button disabled; returns the maximum of the progress bar (0 when there is nothing to search).
  int BeginSearch(const SearchMedia& media);
  /// The search itself, then page 4 with its rows. Returns the boxes to show.
  std::vector<SearchReport> RunSearch(const SearchMedia& media, const ChipSearch::Progress& progress);

  /// The user chose a row of the list; a number outside it means that none is selected.
  void Select(int row);

  /// Hands the selected row to the link; false when none is selected.
  bool Finish();

  /// After Finish: takes the right to write to the chip. Returns the other program that has it; then only reading is
  /// left.
  std::optional<std::string> TakeChip();

  Page CurrentPage() const { return page_; }
  bool BackEnabled() const { return backEnabled_; }
  bool NextEnabled() const { return nextEnabled_; }
  bool CancelEnabled() const { return cancelEnabled_; }
  bool FinishEnabled() const { return finishEnabled_ && SelectedRow() >= 0; }
  /// The close box does nothing while a search runs.
  bool MayClose() const { return page_ != Page::Searching; }

  const std::optional<MediumReport>& Chipset() const { return chipset_; }
  const std::vector<ResultRow>& Rows() const { return rows_; }
  int SelectedRow() const { return selectedRow_; }
  /// Where the selected chip is and who else uses it; what was searched when there is none.
  std::string PlaceText() const;
  const std::string& SearchResultsText() const { return searchResults_; }
  const std::string& SearchInstructionText() const { return searchInstruction_; }

 private:
  void FillResults();

  ChipSearch& search_;
  Page page_ = Page::Welcome;
  bool backEnabled_ = false;
  bool nextEnabled_ = true;
  bool cancelEnabled_ = true;
  bool finishEnabled_ = false;
  std::optional<MediumReport> chipset_;
  std::vector<ResultRow> rows_;
  int selectedRow_ = -1;
  int progressMaximum_ = 0;
  std::string searchResults_;
  std::string searchInstruction_;
};

/// The fixed texts of the wizard's labels and boxes.
namespace wizardtext {
inline constexpr const char* title = "KRX5580 Search Wizard";
inline constexpr const char* welcome =
    "This KRX5580 Search Wizard will find any KRX5580s that can be controlled by this software";
inline constexpr const char* welcomeInstructions = "Click 'Next' to start.";
inline constexpr const char* initialDescription = "Connect the evaluation board to the printer port";
inline constexpr const char* printerPortDescription =
    "Remember to connect the KRX5580 evaluation board to the printer port";
inline constexpr const char* mediumInstructions = "Click 'Next' to search for the KRX5580.";
inline constexpr const char* searchingDetails = "Please wait while searching for available KRX5580s.";
inline constexpr const char* noMediumText = "Please select a search medium";
inline constexpr const char* noMediumTitle = "A problem was detected";
/// A question: the chip was chosen, but another program may write to it.
std::string Held(const std::string& holder);
}  // namespace wizardtext

}  // namespace krx
