// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/windowopener.h"

#include <algorithm>

#include "board/ui/frmswitchaccess.h"
#include "console/pageparts.h"
#include "console/ui/aboutbox.h"
#include "console/ui/helpwindow.h"
#include "console/ui/mainmenu.h"
#include "console/ui/mainpage.h"
#include "console/ui/setuplog.h"
#include "console/ui/textdialog.h"
#include "console/workbench.h"
#include "control/ui/controlpage.h"
#include "fans/applypreview.h"
#include "fans/manualcontrol.h"
#include "fans/ui/frmautodetect.h"
#include "fans/ui/frmfanconfig.h"
#include "monitor/ui/visualdisplaypage.h"

namespace krx {
namespace {

using namespace Qt::StringLiterals;

void Raise(QDialog& window) {
  window.show();
  window.raise();
  window.activateWindow();
}

/// Reads all switches, at each request.
void OpenSwitchAccess(QDialog& window) {
  static_cast<FrmSwitchAccess&>(window).Open();
  window.raise();
}

/// What cannot be read is not shown.
void OpenFanConfig(QDialog& window) {
  if (window.isVisible()) return Raise(window);
  if (!static_cast<FrmFanConfig&>(window).Open()) delete &window;
}

void OpenModal(QDialog& window) {
  window.exec();
}

QDialog* DeletedOnClose(QDialog* window) {
  window->setAttribute(Qt::WA_DeleteOnClose);
  return window;
}

}  // namespace

WindowOpener::WindowOpener(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, bool readOnly,
                           double fanSecondsPerSecond, QWidget* parent)
    : QObject(parent),
      bench_(bench),
      turns_(turns),
      dialogs_(dialogs),
      readOnly_(readOnly),
      fanSecondsPerSecond_(fanSecondsPerSecond),
      parent_(parent) {
  const auto makeHelp = [this] { return DeletedOnClose(new HelpWindow(parent_)); };
  const auto makeSwitches = [this] { return new FrmSwitchAccess(bench_.EvalBoard, dialogs_, readOnly_, parent_); };
  const auto makeSetupLog = [this] {
    return DeletedOnClose(new TextDialog(u"frmSetupLog"_s, u"Setup Log"_s, SetupLogText(), parent_));
  };
  constexpr bool single = true, several = false;
  rows_ = {{AppWindow::SwitchAccess, single, makeSwitches, OpenSwitchAccess},
           {AppWindow::FanConfig, single, [this] { return MakeFanConfig(); }, OpenFanConfig},
           {AppWindow::SetupLog, several, makeSetupLog, Raise},
           {AppWindow::About, several, [this] { return DeletedOnClose(new AboutBox(parent_)); }, OpenModal},
           {AppWindow::Help, single, makeHelp, Raise}};
}

void WindowOpener::Serve(const MainPage& main, const VisualDisplayPage& visual, const ControlPage& control,
                         const MainMenu& menu) {
  const auto open = [this](AppWindow which) { return [this, which] { Open(which); }; };
  connect(&main, &MainPage::AboutRequested, this, open(AppWindow::About));
  connect(&menu, &MainMenu::AboutRequested, this, open(AppWindow::About));
  connect(&menu, &MainMenu::HelpRequested, this,
          [this](HelpPage page) { static_cast<HelpWindow*>(Open(AppWindow::Help))->ShowPage(page); });
  connect(&visual, &VisualDisplayPage::SetupLogRequested, this, open(AppWindow::SetupLog));
  connect(&control, &ControlPage::SwitchAccessRequested, this, open(AppWindow::SwitchAccess));
  connect(&control, &ControlPage::FanConfigRequested, this, open(AppWindow::FanConfig));
}

QDialog* WindowOpener::Open(AppWindow which) {
  const auto row = std::ranges::find(rows_, which, &Row::Which);
  if (!row->Single || row->Window.isNull()) row->Window = row->Make();
  row->Show(*row->Window);
  return row->Window;
}

template <class Window>
Window* WindowOpener::Opened(AppWindow which) const {
  return static_cast<Window*>(std::ranges::find(rows_, which, &Row::Which)->Window.data());
}

FrmFanConfig* WindowOpener::MakeFanConfig() {
  const FrmFanConfig::Services services{
      [this](std::size_t index) {
        FrmAutoDetect detection(bench_.ChipLink, bench_.Owed, bench_.Fans, turns_, fanSecondsPerSecond_,
                                Opened<FrmFanConfig>(AppWindow::FanConfig));
        return detection.Run(index);
      },
      [this] { return MonitoringWarning(bench_.ChipLink); },
      [this](std::size_t index) {
        bench_.Owed.PutBackOverdue();
        return NotRestoredText(bench_.ChipLink, bench_.Owed, index);
      },
      [this](const AllFanFields& fields) { return PreviewFanWrites(fields); },
      [this](std::size_t fan) { return FanReadingNow(LivingPartsOf(bench_), fan, old_); }};
  auto* const window = new FrmFanConfig(bench_.FanSettings, bench_.Fans, dialogs_, services, parent_);
  window->SetReadOnly(readOnly_);
  connect(window, &FrmFanConfig::Applied, this, &WindowOpener::FansApplied);
  connect(window, &FrmFanConfig::Notice, this, &WindowOpener::Notice);
  connect(window, &FrmFanConfig::Closed, window, &QObject::deleteLater);
  return window;
}

QStringList WindowOpener::PreviewFanWrites(const AllFanFields& fields) {
  const ApplyPreview preview = PreviewApply(bench_.ChipLink, bench_.Fans, fields);
  QStringList lines;
  if (preview.Refusal) lines << QString::fromStdString(preview.Refusal->Message);
  for (const PlannedWrite& write : preview.Writes) lines << QString::fromStdString(PlannedWriteText(write));
  return lines;
}

void WindowOpener::SwitchesChanged() {
  if (auto* const window = Opened<FrmSwitchAccess>(AppWindow::SwitchAccess)) window->ShowLamps();
}

void WindowOpener::ShowReadings(bool old) {
  old_ = old;
  if (auto* const window = Opened<FrmFanConfig>(AppWindow::FanConfig)) window->ShowReadings();
}

void WindowOpener::RenewFanConfig() {
  if (auto* const window = Opened<FrmFanConfig>(AppWindow::FanConfig)) window->Renew();
}

}  // namespace krx
