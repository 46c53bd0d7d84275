// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "link/chipsearch.h"

namespace krx {

/// Pages, buttons and texts of the search wizard, driving a ChipSearch; its window only shows them.
class SearchWizard {
 public:
  enum class Page { Welcome = 1, Medium = 2, Searching = 3, Results = 4 };
  enum class NextStep { Shown, SelectMedium, Search };

  explicit SearchWizard(ChipSearch& search);

  /// Loads the form: control byte 0, page 1, texts, medium page. Returns the box to show, if any.
  std::optional<SearchReport> Load();

  /// The Next button. SelectMedium: nothing is selected, and the window asks for it; Search: the window calls
  /// BeginSearch, shows page 3 and runs the search; Shown: page and buttons are up to date.
  NextStep Next(const SearchMedia& media);
  void Back();

  /// Page 3, every button disabled; returns the maximum of the progress bar (0 when there is nothing to search).
  int BeginSearch(const SearchMedia& media);
  /// The search itself, then page 4 with its rows. Returns the boxes to show.
  std::vector<SearchReport> RunSearch(const SearchMedia& media, const ChipSearch::Progress& progress);

  /// Selects a row of the list; a number outside the list clears the selection.
  void Select(int row);

  /// Sets up the link for the selected row; false when none is selected.
  bool Finish();

  /// After Finish: acquires the write lock of the chip. Returns the other program that holds it, if any; then only
  /// reading is possible.
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
  /// The place of the selected chip and the program using it; without a chip, what was searched.
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
/// The question asked when another program holds the write lock of the chosen chip.
std::string Held(const std::string& holder);
}  // namespace wizardtext

}  // namespace krx
