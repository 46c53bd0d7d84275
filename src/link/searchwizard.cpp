// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/searchwizard.h"

namespace krx {
namespace {

constexpr const char* selectText = "Please select one of the KRX5580s found above.";
constexpr const char* nextText = "Click 'Next' to Continue";
constexpr const char* finishText = "Click 'Finish' to Continue";
constexpr const char* noneFoundText = "Sorry, no KRX5580s were found. Please check all connections and try again";
constexpr const char* backText = "Click Back to continue...";

}  // namespace

SearchWizard::SearchWizard(ChipSearch& search) : search_(search) {}

std::optional<SearchReport> SearchWizard::Load() {
  search_.Load();
  page_ = Page::Welcome;
  std::optional<SearchReport> report;
  chipset_ = search_.ReadChipset(report);
  searchResults_ = selectText;
  searchInstruction_ = nextText;
  search_.ClearFinds();
  return report;
}

SearchWizard::NextStep SearchWizard::Next(const SearchMedia& media) {
  switch (page_) {
    case Page::Welcome:
      page_ = Page::Medium;
      backEnabled_ = true;
      break;
    case Page::Medium:
      return media.Any() ? NextStep::Search : NextStep::SelectMedium;
    case Page::Searching:
      break;
    case Page::Results:
      backEnabled_ = true;
      finishEnabled_ = true;
      nextEnabled_ = false;
      break;
  }
  return NextStep::Shown;
}

void SearchWizard::Back() {
  if (page_ == Page::Medium) {
    page_ = Page::Welcome;
    backEnabled_ = false;
  } else if (page_ == Page::Results) {
    search_.ClearFinds();
    rows_.clear();
    selectedRow_ = -1;
    page_ = Page::Medium;
    nextEnabled_ = true;
    finishEnabled_ = false;
  }
}

int SearchWizard::BeginSearch(const SearchMedia& media) {
  page_ = Page::Searching;
  cancelEnabled_ = backEnabled_ = nextEnabled_ = finishEnabled_ = false;
  progressMaximum_ = search_.ProgressMaximum(media);
  return progressMaximum_;
}

std::vector<SearchReport> SearchWizard::RunSearch(const SearchMedia& media, const ChipSearch::Progress& progress) {
  std::vector<SearchReport> reports = search_.Search(media, progressMaximum_, progress);
  cancelEnabled_ = backEnabled_ = finishEnabled_ = true;
  nextEnabled_ = false;
  FillResults();
  page_ = Page::Results;
  return reports;
}

void SearchWizard::FillResults() {
  rows_ = search_.Rows();
  selectedRow_ = rows_.empty() ? -1 : 0;
  searchResults_ = rows_.empty() ? noneFoundText : selectText;
  searchInstruction_ = rows_.empty() ? backText : finishText;
  if (rows_.empty()) finishEnabled_ = false;
}

void SearchWizard::Select(int row) {
  selectedRow_ = row >= 0 && row < static_cast<int>(rows_.size()) ? row : -1;
}

bool SearchWizard::Finish() {
  if (selectedRow_ < 0) return false;
  search_.Finish(rows_[static_cast<std::size_t>(selectedRow_)]);
  return true;
}

std::optional<std::string> SearchWizard::TakeChip() {
  try {
    return search_.TakeChip();
  } catch (const CommsError&) {
    // Finish continues after failures; the first write acquires the lock itself and reports the error.
    return std::nullopt;
  }
}

std::string SearchWizard::PlaceText() const {
  if (selectedRow_ >= 0) return "Selected: " + rows_[static_cast<std::size_t>(selectedRow_)].Place();
  const std::string searched = rows_.empty() ? search_.Searched() : "";
  return searched.empty() ? "" : "Searched: " + searched;
}

std::string wizardtext::Held(const std::string& holder) {
  return "The chip is in use by " + holder +
         ". Two programs that write to the same chip overwrite each other's settings. Continue read-only? Then nothing "
         "is "
         "written to the chip or the board.";
}

}  // namespace krx
