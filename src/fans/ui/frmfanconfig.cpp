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
#include "controls/ui/texts.h"
#include "controls/ui/userdialogs.h"
#include "fans/ui/fantab.h"

namespace krx {

using namespace Qt::StringLiterals;

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
  setObjectName(u"frmFanConfig"_s);
  setWindowTitle(u"Fan Configuration"_s);
  auto* const layout = new QVBoxLayout(this);
  tabs_ = new QTabWidget;
  tabs_->setObjectName(u"tabFans"_s);
  tabs_->setDocumentMode(true);
  tabs_->setAccessibleName(u"Fans"_s);
  layout->addWidget(tabs_, 1);
  for (std::size_t fan = 0; fan < fanCount; ++fan) {
    auto* const page = new FanTab(model_, fan);
    pages_.at(fan) = page;
    auto* const place = new QWidget;
    auto* const around = new QVBoxLayout(place);
    around->setContentsMargins(0, fontMetrics().height() / 2, 0, 0);
    around->addWidget(page);
    tabs_->addTab(place, u"Fan %1"_s.arg(fan + 1));
    connect(page, &FanTab::Edited, this, &FrmFanConfig::ShowButtons);
    connect(page, &FanTab::AutoDetectRequested, this, [this, fan] { AutoDetect(fan); });
    connect(page, &FanTab::SaveEvidenceRequested, this, [this, fan] { SaveEvidence(fan); });
  }
  connect(tabs_, &QTabWidget::currentChanged, this, &FrmFanConfig::ShowTab);

  auto* const buttons = new QHBoxLayout;
  layout->addLayout(buttons);
  const auto add = [&](const QString& name, const QString& caption, void (FrmFanConfig::*pressed)()) {
    auto* const button = new QPushButton(caption);
    button->setObjectName(name);
    buttons->addWidget(button);
    connect(button, &QPushButton::clicked, this, pressed);
    return button;
  };
  writes_ = add(u"cmdShowWrites"_s, u"Show writes..."_s, &FrmFanConfig::ShowWrites);
  buttons->addStretch();
  add(u"cmdOk"_s, u"OK"_s, &FrmFanConfig::Ok)->setDefault(true);
  auto* const cancel = new QPushButton(u"Cancel"_s);
  cancel->setObjectName(u"cmdCancel"_s);
  buttons->addWidget(cancel);
  connect(cancel, &QPushButton::clicked, this, &FrmFanConfig::close);
  apply_ = new QPushButton(u"Apply"_s);
  apply_->setObjectName(u"cmdApply"_s);
  buttons->addWidget(apply_);
  connect(apply_, &QPushButton::clicked, this, &FrmFanConfig::Apply);
}

bool FrmFanConfig::Open() {
  if (!RunUserAction(dialogs_, [this] { model_.Open(); })) return false;
  pages_.front()->Show();
  ShowReadings();
  ShowButtons();
  show();
  return true;
}

void FrmFanConfig::ShowReadings() {
  if (!services_.Reading) return;
  for (std::size_t fan = 0; fan < fanCount; ++fan) pages_.at(fan)->ShowReading(services_.Reading(fan));
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
    dialogs_.Critical(QtText(refusal->Message));
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
  view.setObjectName(u"frmShowWrites"_s);
  view.setWindowTitle(u"What Apply would write"_s);
  auto* const layout = new QVBoxLayout(&view);
  auto* const text = new QPlainTextEdit(lines.isEmpty() ? u"Nothing"_s : lines.join(u'\n'));
  text->setObjectName(u"txtWrites"_s);
  text->setAccessibleName(u"What Apply would write"_s);
  text->setReadOnly(true);
  text->setLineWrapMode(QPlainTextEdit::NoWrap);
  layout->addWidget(text);
  auto* const closing = new QPushButton(u"Close"_s);
  layout->addWidget(closing, 0, Qt::AlignRight);
  connect(closing, &QPushButton::clicked, &view, &QDialog::accept);
  const QFontMetrics metrics = fontMetrics();
  view.resize(metrics.horizontalAdvance(u'm') * 40, metrics.height() * 20);
  view.exec();
}

void FrmFanConfig::AutoDetect(std::size_t fan) {
  if (fan >= pwmCount) {
    dialogs_.Information(u"Fan 4 has no PWM output of its own: there is nothing to detect"_s);
    return;
  }
  const QString warning = QtText(services_.Warning());
  if (!warning.isEmpty() && !dialogs_.Ask(warning, u"Continue"_s)) return;
  DetectionResult result;
  {
    const BusyPointer busy(*this);
    const std::string name = "Auto Detect of fan " + std::to_string(fan + 1);
    if (!RunUserAction(
            dialogs_, [&] { result = services_.Detect(fan); }, name))
      return;
  }
  if (result.Value != noResult) {
    const QString remark = QtText(DetectionRemark(result));
    pages_.at(fan)->SetMinimumDuty(result.Value, remark);
    emit Notice(u"Fan %1: %2"_s.arg(QString::number(fan + 1), remark));
  }
  pages_.at(fan)->SetEvidenceAvailable(!result.Evidence.empty());
  evidence_.at(fan) = result;
  ShowOutcome(fan, result);
}

void FrmFanConfig::ShowOutcome(std::size_t fan, const DetectionResult& result) {
  QStringList parts;
  if (!result.Message.empty()) parts << QtText(result.Message);
  if (result.NotRestored.empty()) {
    if (!parts.isEmpty()) dialogs_.Critical(parts.front());
    return;
  }
  if (result.Fault && dialogs_.LinkFault) dialogs_.LinkFault(*result.Fault);
  parts << QtText(result.NotRestored);
  while (dialogs_.Ask(parts.join(u"\n\n"_s), u"Try again"_s)) {
    const std::string left = services_.PutBack(fan);
    if (left.empty()) return;
    parts = {QtText(left)};
  }
}

void FrmFanConfig::SaveEvidence(std::size_t fan) {
  if (!evidence_.at(fan)) return;
  const auto name = AskSaveName(dialogs_, u"Text Files (*.txt)|*.txt"_s, u"fan%1-minimum-pwm.txt"_s.arg(fan + 1));
  if (!name) return;
  const QByteArray text = QByteArray::fromStdString(EvidenceText(*evidence_.at(fan), static_cast<int>(fan) + 1));
  emit Notice(SaveAndTell(dialogs_, u"The evidence"_s, *name, text));
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
