// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/statusline.h"

#include <QPainter>
#include <QStyle>
#include <QTimer>

#include "controls/ui/labels.h"
#include "monitor/visualmodel.h"

namespace krx {

using namespace Qt::StringLiterals;

namespace {

constexpr int noticeMilliseconds = 12'000;

/// Texts may be longer than a narrow window: such a label gives way, instead of widening it, and shows that there is
/// more.
class YieldingLabel : public QLabel {
 public:
  YieldingLabel(const QString& name, int characters) {
    setObjectName(name);
    setMinimumWidth(fontMetrics().averageCharWidth() * characters);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    style()->drawItemText(&painter, rect(), Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideRight, width()), foregroundRole());
  }
};

}  // namespace

StatusLine::StatusLine(QWidget* parent) : QStatusBar(parent) {
  // The title has the whole of the one, the tool tips that of the others.
  connection_ = new YieldingLabel(u"lblMedium"_s, 16);
  cycle_ = MakeLabel(u"lblCycle"_s, 1, false);
  notice_ = new YieldingLabel(u"lblNotice"_s, 4);
  notice_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  SetMuted(*notice_, true);
  faultLabel_ = new YieldingLabel(u"lblFaults"_s, 16);
  faultLabel_->setText(u"No link faults"_s);
  setContentsMargins(fontMetrics().averageCharWidth(), 0, 0, 0);
  addWidget(connection_);
  addWidget(cycle_);
  addWidget(notice_, 1);
  alarms_ = MakeLabel(u"lblAlarms"_s, 1, false);
  addPermanentWidget(alarms_);
  addPermanentWidget(faultLabel_);
  noticeEnd_ = new QTimer(this);
  noticeEnd_->setSingleShot(true);
  connect(noticeEnd_, &QTimer::timeout, notice_, [this] { notice_->clear(); });
}

void StatusLine::ShowConnection(const QString& connection) {
  connection_->setText(connection);
  connection_->setToolTip(connection);
}

void StatusLine::ShowCycle(const CycleRates& report) {
  QString text = u"|  Not reading, values are out of date"_s;
  if (report.PauseSeconds > 0) {
    text = u"|  Bus failing, retrying every %1 s, values are out of date"_s.arg(report.PauseSeconds, 0, 'f', 1);
  } else if (report.NotMonitoring) {
    text = u"|  Not monitoring, values are out of date"_s;
  } else if (report.Running) {
    text = u"|  Monitoring, %1 reads/tick, %2 ticks/s"_s.arg(report.ReadsPerTick, 0, 'f', 0)
               .arg(report.TicksPerSecond, 0, 'f', 1);
  }
  SetTextIfChanged(*cycle_, text);
}

void StatusLine::ShowAlarms(const AlarmReport& report, bool old) {
  const int count = report.Count.value_or(0);
  QString text;
  if (report.Count) text = u"No alarms"_s;
  if (count > 0) text = count == 1 ? u"◆ 1 alarm"_s : u"◆ %1 alarms"_s.arg(count);
  if (report.Count && (old || report.Old)) text += u" (out of date)"_s;
  if (alarms_->text() == text && alarms_->toolTip().toStdString() == report.Details) return;
  alarms_->setText(text);
  alarms_->setToolTip(QString::fromStdString(report.Details));
  SetBad(*alarms_, count > 0);  // an old one too: until it is read again it stands
  QFont font = alarms_->font();
  font.setBold(count > 0);
  alarms_->setFont(font);
}

void StatusLine::ShowNotice(const QString& text) {
  notice_->setText(text.isEmpty() ? text : u"|  "_s + text);
  notice_->setToolTip(text);
  noticeEnd_->start(noticeMilliseconds);
}

void StatusLine::CountFault(const std::string& source, const CommsError& error) {
  ++faults_;
  const QString last = QString::fromStdString(error.BoxText());
  faultLabel_->setText(u"Link faults: %1, last: %2"_s.arg(faults_).arg(last));
  faultLabel_->setToolTip(u"In %1: %2"_s.arg(QString::fromStdString(source), last));
}

}  // namespace krx
