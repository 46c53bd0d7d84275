// SPDX-License-Identifier: GPL-3.0-or-later
#include "link/ui/initform.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QGuiApplication>
#include <QLabel>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTimer>
#include <QVBoxLayout>
#include <tuple>

#include "controls/ui/palette.h"
#include "controls/ui/texts.h"
#include "controls/ui/userdialogs.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

/// The rows carry a key behind a long run of blanks; it is not for the eye, however wide the window is.
class RowDelegate : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;
  QString displayText(const QVariant& value, const QLocale&) const override {
    const QString text = value.toString();
    const qsizetype blanks = text.indexOf(QString(10, u' '));
    return blanks < 0 ? text : text.left(blanks);
  }
};

/// The hourglass pointer for as long as it lives.
class BusyPointer {
 public:
  BusyPointer() { QGuiApplication::setOverrideCursor(Qt::WaitCursor); }
  ~BusyPointer() { QGuiApplication::restoreOverrideCursor(); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
};

QLabel* MakeLabel(const QString& name, const QString& text) {
  auto* const label = new QLabel(text);
  label->setObjectName(name);
  label->setWordWrap(true);
  return label;
}

/// Long enough for the main loop to have delivered what waited.
constexpr int afterSearchMilliseconds = 30;

std::size_t Index(SearchWizard::Page page) {
  return static_cast<std::size_t>(page) - 1;
}

}  // namespace

InitForm::InitForm(SearchWizard& wizard, UserDialogs& dialogs, const QString& mediumNote, bool simulatedOffered)
    : wizard_(wizard), dialogs_(dialogs), simulatedOffered_(simulatedOffered) {
  setObjectName(u"InitForm"_s);
  setWindowTitle(QtText(wizardtext::title));
  auto* const layout = new QVBoxLayout(this);
  MakeWelcomePanel();
  MakeMediumPanel();
  MakeSearchingPanel();
  MakeResultsPanel();
  for (QWidget* const panel : panels_) layout->addWidget(panel, 1);
  note_ = MakeLabel(u"MediumNoteLBL"_s, mediumNote);
  note_->setForegroundRole(QPalette::PlaceholderText);
  layout->addWidget(note_);
  layout->addWidget(MakeButtons());
  const int em = fontMetrics().horizontalAdvance(u'm');
  setMinimumSize(44 * em, 26 * em);
  ShowWizard();
}

void InitForm::Load() {
  const auto report = wizard_.Load();
  ShowChipset();
  ShowWizard();
  next_->setFocus();
  if (report) ShowReport(*report);
}

void InitForm::Restart(const QString& mediumNote, bool simulatedOffered) {
  note_->setText(mediumNote);
  simulatedOffered_ = simulatedOffered;
  Load();
  Next();
  printerPortCheck_->setChecked(true);
  Search();
}

QVBoxLayout* InitForm::MakePanel(SearchWizard::Page page, const QString& name, const QString& heading) {
  auto* const panel = new QFrame;
  panel->setObjectName(name);
  MakeCard(*panel);
  panels_.at(Index(page)) = panel;
  auto* const layout = new QVBoxLayout(panel);
  auto* const title = new QLabel(heading);
  QFont font = title->font();
  font.setBold(true);
  font.setPointSizeF(font.pointSizeF() * 1.3);
  title->setFont(font);
  layout->addWidget(title);
  return layout;
}

void InitForm::MakeWelcomePanel() {
  auto* const layout = MakePanel(SearchWizard::Page::Welcome, u"WelcomePanel"_s, u"Welcome"_s);
  layout->addWidget(MakeLabel(u"WelcomeLBL"_s, QtText(wizardtext::welcome)));
  layout->addStretch();
  layout->addWidget(MakeLabel(u"WelcomeInstructionsLBL"_s, QtText(wizardtext::welcomeInstructions)));
}

void InitForm::MakeMediumPanel() {
  auto* const layout = MakePanel(SearchWizard::Page::Medium, u"SeclectComsMediumPanel"_s, u"Search Media"_s);
  const auto addMedium = [&](const QString& name, const QString& caption, const QString& descriptionName,
                             const QString& description) {
    auto* const check = new QCheckBox(caption);
    check->setObjectName(name);
    auto* const line = MakeLabel(descriptionName, description);
    line->setIndent(fontMetrics().horizontalAdvance(u"mmm"_s));
    check->setAccessibleDescription(description);
    layout->addWidget(check);
    layout->addWidget(line);
    return std::pair(check, line);
  };
  printerPortCheck_ = addMedium(u"PPCheck"_s, u"Parallel Printer Port"_s, u"PPSearchDescLBL"_s,
                                QtText(wizardtext::printerPortDescription))
                          .first;
  // Return, Return, Return is to reach the simulated board with its heaters; on hardware a printer may be at the port.
  printerPortCheck_->setChecked(!simulatedOffered_);
  usbCheck_ = addMedium(u"USBCheck"_s, u"USB"_s, u"USBSearchDescLBL"_s, QtText(wizardtext::initialDescription)).first;
  std::tie(smbusCheck_, smbusDescription_) =
      addMedium(u"SMBusCheck"_s, u"On-Board SMBus"_s, u"SMBusSearchDescLBL"_s, QtText(wizardtext::initialDescription));
  layout->addStretch();
  layout->addWidget(MakeLabel(u"SearchMediumInstLBL"_s, QtText(wizardtext::mediumInstructions)));
}

void InitForm::MakeSearchingPanel() {
  auto* const layout = MakePanel(SearchWizard::Page::Searching, u"SearchingPanel"_s, u"Searching"_s);
  progress_ = new QProgressBar;
  progress_->setObjectName(u"SearchProgress"_s);
  progress_->setAccessibleName(u"Search progress"_s);
  progress_->setTextVisible(false);
  layout->addStretch();
  layout->addWidget(progress_);
  layout->addStretch();
  layout->addWidget(MakeLabel(u"SearchingDetailsLBL"_s, QtText(wizardtext::searchingDetails)));
}

void InitForm::MakeResultsPanel() {
  auto* const layout = MakePanel(SearchWizard::Page::Results, u"SearchResultsPanel"_s, u"Search Results"_s);
  list_ = new QListWidget;
  list_->setObjectName(u"SearchResultsLIST"_s);
  list_->setAccessibleName(u"Search Results"_s);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setItemDelegate(new RowDelegate(list_));
  place_ = MakeLabel(u"PlaceLBL"_s, QString());
  place_->setForegroundRole(QPalette::PlaceholderText);
  results_ = MakeLabel(u"SearchResultsLBL"_s, QString());
  instructions_ = MakeLabel(u"SearchInsLBL"_s, QString());
  simulated_ = new QPushButton(u"Use the simulated board"_s);
  simulated_->setObjectName(u"SimulatedCMD"_s);
  layout->addWidget(list_, 1);
  layout->addWidget(place_);
  layout->addWidget(results_);
  layout->addWidget(simulated_, 0, Qt::AlignLeft);
  layout->addWidget(instructions_);
  // The selection, not the current row: a click beside the rows leaves none selected.
  connect(list_, &QListWidget::itemSelectionChanged, this, [this] {
    wizard_.Select(list_->selectedItems().isEmpty() ? -1 : list_->currentRow());
    ShowWizard();
  });
  connect(list_, &QListWidget::itemActivated, this, &InitForm::Finish);
  connect(simulated_, &QPushButton::clicked, this, &InitForm::SimulatedBoardRequested);
}

QWidget* InitForm::MakeButtons() {
  auto* const row = new QWidget;
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  const auto add = [&](const QString& name, const QString& caption) {
    auto* const button = new QPushButton(caption);
    button->setObjectName(name);
    button->setAutoDefault(true);
    layout->addWidget(button);
    return button;
  };
  layout->addStretch();
  back_ = add(u"BackCMD"_s, u"< Back"_s);
  next_ = add(u"NextCMD"_s, u"Next >"_s);
  cancel_ = add(u"CancelCMD"_s, u"Cancel"_s);
  finish_ = add(u"FinishCMD"_s, u"Finish"_s);
  connect(back_, &QPushButton::clicked, this, &InitForm::Back);
  connect(next_, &QPushButton::clicked, this, &InitForm::Next);
  connect(cancel_, &QPushButton::clicked, this, &InitForm::close);
  connect(finish_, &QPushButton::clicked, this, &InitForm::Finish);
  return row;
}

void InitForm::ShowWizard() {
  if (searching_ && wizard_.CurrentPage() != SearchWizard::Page::Searching) return;
  for (std::size_t i = 0; i < panels_.size(); ++i) panels_.at(i)->setVisible(i == Index(wizard_.CurrentPage()));
  back_->setEnabled(wizard_.BackEnabled());
  next_->setEnabled(wizard_.NextEnabled());
  cancel_->setEnabled(wizard_.CancelEnabled());
  finish_->setEnabled(wizard_.FinishEnabled());
  place_->setText(QString::fromStdString(wizard_.PlaceText()));
  results_->setText(QString::fromStdString(wizard_.SearchResultsText()));
  instructions_->setText(QString::fromStdString(wizard_.SearchInstructionText()));
  simulated_->setVisible(simulatedOffered_ && wizard_.Rows().empty());
}

void InitForm::ShowChipset() {
  const auto& chipset = wizard_.Chipset();
  if (!chipset) return;
  smbusDescription_->setText(QString::fromStdString(chipset->Description));
  smbusCheck_->setAccessibleDescription(smbusDescription_->text());
  smbusCheck_->setChecked(chipset->SmbusOffered);
  smbusCheck_->setEnabled(chipset->SmbusOffered);
  // The two colours are fixed and made for a light ground, so the line brings one along.
  QPalette palette = smbusDescription_->palette();
  palette.setColor(QPalette::WindowText,
                   chipset->Colour == ReportColour::Red ? fixedcolours::wizardRed : fixedcolours::wizardGreen);
  palette.setColor(QPalette::Window, Palette::Light().card);
  smbusDescription_->setAutoFillBackground(true);
  smbusDescription_->setPalette(palette);
}

void InitForm::ShowResults() {
  const QSignalBlocker blocker(list_);
  list_->clear();
  for (const ResultRow& row : wizard_.Rows()) {
    auto* const item = new QListWidgetItem(QString::fromStdString(row.Text), list_);
    item->setToolTip(QString::fromStdString(row.Place()));
  }
  list_->setCurrentRow(wizard_.SelectedRow());
}

SearchMedia InitForm::TickedMedia() const {
  return {printerPortCheck_->isChecked(), smbusCheck_->isChecked(), usbCheck_->isChecked()};
}

void InitForm::Next() {
  switch (wizard_.Next(TickedMedia())) {
    case SearchWizard::NextStep::SelectMedium:
      dialogs_.Exclamation(QtText(wizardtext::noMediumText), QtText(wizardtext::noMediumTitle));
      break;
    case SearchWizard::NextStep::Search:
      Search();
      break;
    case SearchWizard::NextStep::Shown:
      ShowWizard();
      break;
  }
}

void InitForm::Back() {
  wizard_.Back();
  ShowResults();
  ShowWizard();
  if (wizard_.CurrentPage() == SearchWizard::Page::Welcome) next_->setFocus();
}

void InitForm::Search() {
  searching_ = true;
  std::vector<SearchReport> reports;
  {
    const BusyPointer pointer;
    const SearchMedia media = TickedMedia();
    const int maximum = wizard_.BeginSearch(media);
    // A maximum of 0 would turn the bar into a moving one; there is nothing to search, so it stays empty.
    progress_->setRange(0, maximum > 0 ? maximum : 1);
    progress_->setValue(0);
    ShowWizard();
    repaint();
    emit MainWindowRequested();
    reports = wizard_.RunSearch(media, [this](int value) {
      progress_->setValue(value);
      panels_.at(Index(SearchWizard::Page::Searching))->repaint();
    });
    ShowResults();
  }
  // What was clicked during the search is delivered now: page 3 is still shown, so it does nothing.
  QTimer::singleShot(afterSearchMilliseconds, this, [this, reports] { EndSearch(reports); });
}

void InitForm::EndSearch(const std::vector<SearchReport>& reports) {
  searching_ = false;
  ShowWizard();
  progress_->setValue(0);
  if (finish_->isEnabled()) {
    finish_->setFocus();
  } else if (next_->isEnabled()) {
    next_->setFocus();
  }
  for (const SearchReport& report : reports) ShowReport(report);
}

void InitForm::Finish() {
  if (!wizard_.FinishEnabled() || !wizard_.Finish()) return;
  if (const auto holder = wizard_.TakeChip()) {
    if (!dialogs_.Ask(QString::fromStdString(wizardtext::Held(*holder)), u"Continue read-only"_s,
                      QtText(wizardtext::title)))
      return;
    emit ReadOnlyRequested();
    wizard_.Finish();
  }
  finished_ = true;
  emit Finished();
  close();
}

void InitForm::ShowReport(const SearchReport& report) {
  dialogs_.Exclamation(QString::fromStdString(report.Text), QString::fromStdString(report.Title));
}

void InitForm::closeEvent(QCloseEvent* event) {
  if (searching_ || !wizard_.MayClose()) {
    event->ignore();
    return;
  }
  event->accept();
  if (!finished_) emit Abandoned();
}

}  // namespace krx
