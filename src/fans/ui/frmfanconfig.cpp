// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/ui/frmfanconfig.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

#include "controls/ui/filesaving.h"
#include "controls/ui/userdialogs.h"
#include "fans/ui/fantab.h"

namespace krx {
namespace {

constexpr int noResult = 100;

class BusyPointer {
 public:
  explicit BusyPointer(QWidget& widget) : widget_(widget) { widget_.setCursor(Qt::WaitCursor); }
  ~BusyPointer() { widget_.unsetCursor(); }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;

 private:
  QWidget& widget_;
};

}  // namespace

FrmFanConfig::FrmFanConfig(FanConfig& config, FanCommon& fans, UserDialogs& dialogs, Services services, QWidget* parent)
    : QDialog(parent), model_(config, fans), dialogs_(dialogs), services_(std::move(services)) {
  setObjectName("frmFanConfig");
  setWindowTitle("Fan Configuration");
  auto* const layout = new QVBoxLayout(this);
  tabs_ = new QTabWidget;
  tabs_->setObjectName("tabFans");
  tabs_->setAccessibleName(tr("Fans"));
  layout->addWidget(tabs_, 1);
  for (std::size_t fan = 0; fan < fanCount; ++fan) {
    auto* const page = new FanTab(model_, fan);
    pages_.at(fan) = page;
    tabs_->addTab(page, QString("Fan %1").arg(fan + 1));
    connect(page, &FanTab::Edited, this, &FrmFanConfig::ShowButtons);
    connect(page, &FanTab::AutoDetectWanted, this, [this, fan] { AutoDetect(fan); });
    connect(page, &FanTab::SaveEvidenceWanted, this, [this, fan] { SaveEvidence(fan); });
  }
  connect(tabs_, &QTabWidget::currentChanged, this, &FrmFanConfig::ShowTab);

  auto* const buttons = new QHBoxLayout;
  layout->addLayout(buttons);
  const auto add = [&](const char* name, const QString& caption, void (FrmFanConfig::*pressed)()) {
    auto* const button = new QPushButton(caption);
    button->setObjectName(name);
    buttons->addWidget(button);
    connect(button, &QPushButton::clicked, this, pressed);
    return button;
  };
  writes_ = add("cmdShowWrites", "Show writes...", &FrmFanConfig::ShowWrites);
  buttons->addStretch();
  add("cmdOk", "OK", &FrmFanConfig::Ok)->setDefault(true);
  auto* const cancel = new QPushButton("Cancel");
  cancel->setObjectName("cmdCancel");
  buttons->addWidget(cancel);
  connect(cancel, &QPushButton::clicked, this, &FrmFanConfig::close);
  apply_ = new QPushButton("Apply");
  apply_->setObjectName("cmdApply");
  buttons->addWidget(apply_);
  connect(apply_, &QPushButton::clicked, this, &FrmFanConfig::Apply);
}

bool FrmFanConfig::Open() {
  if (!RunUserAction(dialogs_, [this] { model_.Open(); })) return false;
  pages_.front()->Show();
  ShowButtons();
  show();
  return true;
}

void FrmFanConfig::SetReadOnly(bool readOnly) {
  readOnly_ = readOnly;
  for (FanTab* const page : pages_) page->setEnabled(!readOnly);
}

void FrmFanConfig::Renew() {
  RunUserAction(dialogs_, [this] { model_.Renew(); });
  for (std::size_t fan = 0; fan < fanCount; ++fan) {
    if (model_.Loaded(fan)) pages_.at(fan)->Show();
  }
  ShowButtons();
}

void FrmFanConfig::ShowTab(int index) {
  const auto fan = static_cast<std::size_t>(index);
  const bool loaded = model_.Loaded(fan);
  RunUserAction(dialogs_, [&] { model_.ShowTab(fan); });
  if (!loaded) pages_.at(fan)->Show();
  // A fan that could not be read has nothing to edit; showing its tab again tries once more.
  pages_.at(fan)->setEnabled(model_.Loaded(fan) && !readOnly_);
  ShowButtons();
}

void FrmFanConfig::ShowButtons() {
  apply_->setEnabled(model_.ApplyEnabled());
  writes_->setEnabled(model_.ApplyEnabled() && services_.Preview);
}

bool FrmFanConfig::Apply() {
  const BusyPointer busy(*this);
  std::optional<FanRefusal> refusal;
  const bool done = RunUserAction(
      dialogs_, [&] { refusal = model_.Apply(); }, "Fan Configuration: Apply");
  if (refusal) {
    tabs_->setCurrentIndex(static_cast<int>(refusal->Fan));
    pages_.at(refusal->Fan)->FocusOn(refusal->Setting);
    dialogs_.Critical(QString::fromStdString(refusal->Message));
  }
  ShowButtons();
  // Also after a failure: the steps before it have taken effect.
  emit Applied();
  return done && !refusal;
}

void FrmFanConfig::Ok() {
  if (model_.ApplyEnabled() && !Apply()) return;
  close();
}

void FrmFanConfig::ShowWrites() {
  QStringList lines;
  if (!RunUserAction(dialogs_, [&] { lines = services_.Preview(model_.Fields); })) return;
  QDialog view(this);
  view.setObjectName("frmShowWrites");
  view.setWindowTitle("What Apply would write");
  auto* const layout = new QVBoxLayout(&view);
  auto* const text = new QPlainTextEdit(lines.isEmpty() ? "Nothing" : lines.join('\n'));
  text->setObjectName("txtWrites");
  text->setAccessibleName("What Apply would write");
  text->setReadOnly(true);
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  layout->addWidget(text);
  auto* const closing = new QPushButton("Close");
  layout->addWidget(closing, 0, Qt::AlignRight);
  connect(closing, &QPushButton::clicked, &view, &QDialog::accept);
  const QFontMetrics metrics = fontMetrics();
  view.resize(metrics.horizontalAdvance('m') * 40, metrics.height() * 20);
  view.exec();
}

void FrmFanConfig::AutoDetect(std::size_t fan) {
  if (fan >= pwmCount) {
    dialogs_.Information("Fan 4 has no PWM output of its own: there is nothing to detect");
    return;
  }
  const QString warning = QString::fromStdString(services_.Warning());
  if (!warning.isEmpty() && !dialogs_.Ask(warning, "Continue")) return;
  DetectionResult result;
  {
    const BusyPointer busy(*this);
    const std::string name = "Auto Detect of fan " + std::to_string(fan + 1);
    if (!RunUserAction(
            dialogs_, [&] { result = services_.Detect(fan); }, name))
      return;
  }
  if (result.Value != noResult) {
    pages_.at(fan)->SetMinimumDuty(result.Value, result.Value == 0 ? "no tested duty kept the fan running" : QString());
  }
  pages_.at(fan)->SetEvidenceAvailable(!result.Evidence.empty());
  evidence_.at(fan) = result;
  ShowOutcome(fan, result);
}

void FrmFanConfig::ShowOutcome(std::size_t fan, const DetectionResult& result) {
  QStringList parts;
  if (!result.Message.empty()) parts << QString::fromStdString(result.Message);
  if (result.NotRestored.empty()) {
    if (!parts.isEmpty()) dialogs_.Critical(parts.front());
    return;
  }
  if (result.Fault && dialogs_.LinkFault) dialogs_.LinkFault(*result.Fault);
  parts << QString::fromStdString(result.NotRestored);
  while (dialogs_.Ask(parts.join("\n\n"), "Try again")) {
    const std::string left = services_.PutBack(fan);
    if (left.empty()) return;
    parts = {QString::fromStdString(left)};
  }
}

void FrmFanConfig::SaveEvidence(std::size_t fan) {
  if (!evidence_.at(fan)) return;
  const auto name = AskSaveName(dialogs_, "Text Files (*.txt)|*.txt", QString("fan%1-minimum-pwm.txt").arg(fan + 1));
  if (!name) return;
  const QByteArray text = QByteArray::fromStdString(EvidenceText(*evidence_.at(fan), static_cast<int>(fan) + 1));
  emit Notice(SaveAndTell(dialogs_, "The evidence", *name, text));
}

void FrmFanConfig::reject() {
  close();
}

void FrmFanConfig::closeEvent(QCloseEvent* event) {
  // Not the base class's: it rejects, which closes, and would keep the window open after all.
  event->accept();
  emit Closed();
}

}  // namespace krx
