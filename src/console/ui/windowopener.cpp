// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/windowopener.h"

#include "board/ui/frmswitchaccess.h"
#include "console/ui/aboutbox.h"
#include "console/ui/setuplog.h"
#include "console/ui/textdialog.h"
#include "console/workbench.h"
#include "fans/applypreview.h"
#include "fans/manualcontrol.h"
#include "fans/ui/frmautodetect.h"
#include "fans/ui/frmfanconfig.h"

namespace krx {

using namespace Qt::StringLiterals;

WindowOpener::WindowOpener(Workbench& bench, ChipTurns& turns, UserDialogs& dialogs, bool readOnly,
                           double fanSecondsPerSecond, QWidget* parent)
    : QObject(parent),
      bench_(bench),
      turns_(turns),
      dialogs_(dialogs),
      readOnly_(readOnly),
      fanSecondsPerSecond_(fanSecondsPerSecond),
      parent_(parent) {}

void WindowOpener::OpenSwitchAccess() {
  if (!switchAccess_) switchAccess_ = new FrmSwitchAccess(bench_.EvalBoard, dialogs_, readOnly_, parent_);
  switchAccess_->Open();
  switchAccess_->raise();
}

QStringList WindowOpener::PreviewFanWrites(const AllFanFields& fields) {
  const ApplyPreview preview = PreviewApply(bench_.ChipLink, bench_.Fans, fields);
  QStringList lines;
  if (preview.Refusal) lines << QString::fromStdString(preview.Refusal->Message);
  for (const PlannedWrite& write : preview.Writes) lines << QString::fromStdString(PlannedWriteText(write));
  return lines;
}

void WindowOpener::OpenFanConfig() {
  if (fanConfig_) {
    fanConfig_->raise();
    fanConfig_->activateWindow();
    return;
  }
  const FrmFanConfig::Services services{[this](std::size_t index) {
                                          FrmAutoDetect detection(bench_.ChipLink, bench_.Owed, bench_.Fans, turns_,
                                                                  fanSecondsPerSecond_, fanConfig_);
                                          return detection.Run(index);
                                        },
                                        [this] { return MonitoringWarning(bench_.ChipLink); },
                                        [this](std::size_t index) {
                                          bench_.Owed.PutBackOverdue();
                                          return NotRestoredText(bench_.ChipLink, bench_.Owed, index);
                                        },
                                        [this](const AllFanFields& fields) { return PreviewFanWrites(fields); }};
  fanConfig_ = new FrmFanConfig(bench_.FanSettings, bench_.Fans, dialogs_, services, parent_);
  fanConfig_->SetReadOnly(readOnly_);
  connect(fanConfig_, &FrmFanConfig::Applied, this, &WindowOpener::FansApplied);
  connect(fanConfig_, &FrmFanConfig::Notice, this, &WindowOpener::Notice);
  connect(fanConfig_, &FrmFanConfig::Closed, fanConfig_, &QObject::deleteLater);
  if (!fanConfig_->Open()) delete fanConfig_;
}

void WindowOpener::OpenSetupLog() {
  TextDialog::Open(parent_, u"frmSetupLog"_s, u"Setup Log"_s, SetupLogText());
}

void WindowOpener::ShowAbout() {
  AboutBox box(parent_);
  box.exec();
}

void WindowOpener::SwitchesChanged() {
  if (switchAccess_) switchAccess_->ShowLamps();
}

void WindowOpener::RenewFanConfig() {
  if (fanConfig_) fanConfig_->Renew();
}

}  // namespace krx
