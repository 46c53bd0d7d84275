// SPDX-License-Identifier: GPL-3.0-or-later
#include "console/ui/visualdisplaypage.h"

#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <optional>
#include <utility>

#include "console/ui/channelcard.h"
#include "console/ui/channeltile.h"
#include "console/ui/labels.h"
#include "console/ui/pwmpanel.h"
#include "console/workbench.h"
#include "controls/ui/indicator.h"
#include "controls/ui/palette.h"
#include "controls/ui/stripchart.h"
#include "controls/ui/userdialogs.h"
#include "link/commserror.h"
#include "registers/numerics.h"

namespace krx {
namespace {

struct Group {
  const char* Title;
  std::size_t First;
  std::size_t End;
};
constexpr std::array<Group, 3> groups{
    {{QT_TR_NOOP("TEMPERATURES"), 0, 3}, {QT_TR_NOOP("FANS"), 3, 7}, {QT_TR_NOOP("VOLTAGES"), 7, 12}}};

/// A readout's number and its unit: "47.25C" and "2400 RPM" part at the first character that belongs to no number.
std::pair<QString, QString> SplitReadout(const QString& readout) {
  qsizetype end = 0;
  while (end < readout.size() && (readout[end].isDigit() || QStringLiteral("-.+").contains(readout[end]))) ++end;
  return {readout.left(end), readout.mid(end).trimmed()};
}

constexpr int ticksToMeasureAll = 5;  ///< the voltages, one a tick, take longest

constexpr std::size_t firstStrip3Trace = thermTrace + 1;
constexpr std::size_t firstFanTrace = 3;

std::size_t FirstTrace(Strip strip) {
  return strip == Strip::Strip2 ? 0 : firstStrip3Trace;
}
std::size_t EndTrace(Strip strip) {
  return strip == Strip::Strip2 ? firstStrip3Trace : traceCount;
}
bool IsFanTrace(std::size_t trace) {
  return trace >= firstFanTrace && trace < powerTrace;
}

struct TraceFormat {
  const char* Unit;
  int Decimals;
};

TraceFormat FormatOf(std::size_t trace) {
  if (trace < firstFanTrace) return {"C", 2};
  if (IsFanTrace(trace)) return {"RPM", 0};
  if (trace == powerTrace) return {"W", 2};
  if (trace == thermTrace) return {"%", 1};
  return {"V", 3};
}

/// "40 °C"; "Disabled" stays as it is.
QString WithDegrees(const std::string& text) {
  const QString shown = QString::fromStdString(text);
  return IsNumber(text) ? shown + QStringLiteral(" °C") : shown;
}

IndicatorState LampOf(const VisualState& state, std::size_t channel) {
  if (!state.ChannelShown[channel]) return IndicatorState::Hidden;
  switch (state.Alarms[channel]) {
    case AlarmState::Ok:
      return IndicatorState::Ok;
    case AlarmState::Bad:
      return IndicatorState::Bad;
    case AlarmState::Unread:
      break;
  }
  return IndicatorState::Unknown;
}

}  // namespace

VisualDisplayPage::VisualDisplayPage(VisualModel& model, Workbench& bench, UserDialogs& dialogs, bool readOnly,
                                     QWidget* parent)
    : QWidget(parent), model_(model), bench_(bench), dialogs_(dialogs) {
  traceShown_.fill(true);
  auto* middle = new QHBoxLayout;
  middle->setSpacing(10);
  card_ = new ChannelCard;
  middle->addWidget(MakeCharts(), 1);
  middle->addWidget(card_);
  auto* right = new QVBoxLayout;
  right->setSpacing(10);
  right->addLayout(middle, 1);
  pwm_ = new PwmPanel;
  right->addWidget(MakeBottom(readOnly));
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(10, 10, 10, 6);
  row->setSpacing(10);
  row->insertWidget(0, MakeTiles());
  row->addLayout(right, 1);

  connect(card_, &ChannelCard::MarkerMoving, this,
          [this](Marker marker, double value) { MoveLimit([&] { model_.MarkerMoving(marker, value); }, true); });
  connect(card_, &ChannelCard::MarkerReleased, this,
          [this](Marker marker, double value) { MoveLimit([&] { model_.MarkerReleased(marker, value); }, false); });
  connect(pwm_, &PwmPanel::SliderPressed, this, [this] { Do([&] { model_.SliderPressed(); }); });
  connect(pwm_, &PwmPanel::SliderMoving, this, [this](int value) {
    // The box over a failed write takes the mouse's release, and the cycle would stand still for want of it.
    if (!Do([&] { model_.SliderMoving(value); })) pwm_->LetGo();
  });
  connect(pwm_, &PwmPanel::SliderReleased, this, [this] { Do([&] { model_.SliderReleased(); }); });
  connect(pwm_, &PwmPanel::SliderReleasedAfterMove, this,
          [this](int value) { Do([&] { model_.SliderReleasedAfterMove(value); }); });
}

QWidget* VisualDisplayPage::MakeTiles() {
  auto* tiles = new QWidget;
  auto* column = new QVBoxLayout(tiles);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(5);
  for (const Group& group : groups) {
    QLabel* title = MakeLabel("", 0.9, true, true);
    title->setText(tr(group.Title));
    column->addWidget(title);
    for (std::size_t channel = group.First; channel < group.End; ++channel) {
      lamps_[channel] = new Indicator;
      lamps_[channel]->setObjectName(QStringLiteral("SSPanel11_%1").arg(channel));
      auto* tile = new ChannelTile(lamps_[channel]);
      tiles_[channel] = tile;
      tile->setObjectName(QStringLiteral("visualdisplaytext_%1").arg(channel));
      tile->setToolTip(tr("Clicking will cause the bargraph to measure details of this parameter"));
      connect(tile, &ChannelTile::clicked, this, [this, channel] { Do([&] { model_.SelectChannel(channel); }); });
      column->addWidget(tile, 1);
    }
    column->addSpacing(4);
  }
  column->addStretch(1);

  auto* scroll = new QScrollArea;  // for large fonts in a low window
  scroll->setFrameShape(QFrame::NoFrame);
  scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  scroll->setWidgetResizable(true);
  scroll->setFocusPolicy(Qt::NoFocus);
  scroll->setWidget(tiles);
  scroll->setFixedWidth(tiles_[0]->sizeHint().width());
  scroll->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
  return scroll;
}

StripChart* VisualDisplayPage::MakeChart(const char* name, Strip strip) {
  auto* chart = new StripChart(bench_.History);
  chart->setObjectName(QString::fromLatin1(name));
  chart->setAccessibleName(QString::fromLatin1(name));
  const std::size_t first = FirstTrace(strip);
  std::vector<ChartTrace> traces;
  for (std::size_t trace = first; trace < EndTrace(strip); ++trace) {
    const TraceFormat format = FormatOf(trace);
    traces.push_back({.HistoryIndex = trace,
                      .Name = QString::fromStdString(model_.State().TraceNames[trace]),
                      .PaletteIndex = trace - first,
                      .SecondAxis = IsFanTrace(trace),
                      .Unit = QString::fromLatin1(format.Unit),
                      .Decimals = format.Decimals});
  }
  chart->SetTraces(traces);
  connect(chart, &StripChart::ExportWanted, this, [this, chart](ChartFormat format) { ExportChart(*chart, format); });
  return chart;
}

QWidget* VisualDisplayPage::MakeCharts() {
  strip2_ = MakeChart("Strip2", Strip::Strip2);
  strip2_->SetAxisTitles(tr("Temperature"), tr("Fans"));
  strip3_ = MakeChart("Strip3", Strip::Strip3);
  strip3_->SetAxisTitles(tr("Voltage"), {});
  strip3_->SetValueRange(0, 14);
  auto* frame = new QFrame;
  MakeCard(*frame);
  auto* column = new QVBoxLayout(frame);
  column->setContentsMargins(8, 8, 8, 8);
  column->addWidget(strip2_);
  column->addWidget(strip3_);
  return frame;
}

void VisualDisplayPage::SetWaitBudget(WaitBudget* budget) {
  strip2_->SetWaitBudget(budget);
  strip3_->SetWaitBudget(budget);
}

void VisualDisplayPage::ExportChart(StripChart& chart, ChartFormat format) {
  struct File {
    const char* Filter;
    const char* Name;
  };
  const File file = format == ChartFormat::Png   ? File{"Pictures (*.png)|*.png", "chart.png"}
                    : format == ChartFormat::Pdf ? File{"Documents (*.pdf)|*.pdf", "chart.pdf"}
                                                 : File{"Comma-separated values (*.csv)|*.csv", "chart.csv"};
  const auto name = dialogs_.SaveFile(tr(file.Filter), QString::fromLatin1(file.Name));
  if (name && !chart.Export(format, *name)) dialogs_.Exclamation(tr("The file %1 could not be written.").arg(*name));
}

QWidget* VisualDisplayPage::MakeZoneRow() {
  zoneRow_ = new QWidget;
  zoneRow_->setObjectName(QStringLiteral("pnlDynamicTmin"));
  auto* row = new QHBoxLayout(zoneRow_);
  row->setContentsMargins(0, 0, 0, 0);
  QLabel* title = MakeLabel("", 1, true);
  title->setText(tr("Tmin / operating point"));
  row->addWidget(title);
  for (std::size_t zone = 0; zone < tminLabels_.size(); ++zone) {
    row->addSpacing(fontMetrics().averageCharWidth() * 3);
    QLabel* name = MakeLabel("", 1, false, true);
    name->setText(QString::fromStdString(std::string(channels[zone].Caption)));
    tminLabels_[zone] = MakeLabel("", 1, false);
    tminLabels_[zone]->setObjectName(QStringLiteral("lblTmin_%1").arg(zone));
    opPointLabels_[zone] = MakeLabel("", 1, false);
    opPointLabels_[zone]->setObjectName(QStringLiteral("lblOpPoint_%1").arg(zone));
    QLabel* slash = MakeLabel("", 1, false, true);
    slash->setText(QStringLiteral("/"));
    row->addWidget(name);
    row->addWidget(tminLabels_[zone]);
    row->addWidget(slash);
    row->addWidget(opPointLabels_[zone]);
  }
  row->addStretch(1);
  return zoneRow_;
}

QPushButton* VisualDisplayPage::AddButton(const char* name, const QString& text) {
  auto* button = new QPushButton(text);
  button->setObjectName(QString::fromLatin1(name));
  button->setAccessibleName(text);
  return button;
}

QWidget* VisualDisplayPage::MakeBottom(bool readOnly) {
  auto* frame = new QFrame;
  MakeCard(*frame);
  auto* row = new QHBoxLayout;
  row->setSpacing(6);
  row->addWidget(pwm_, 1);
  row->addSpacing(10);

  QPushButton* easySetup = AddButton("Command1", tr("Easy Setup"));
  easySetup->setToolTip(tr("Click for EasySetup"));
  connect(easySetup, &QPushButton::clicked, this, &VisualDisplayPage::EasySetupRequested);
  QPushButton* setupLog = AddButton("cmdViewEasy", tr("Setup Log..."));
  connect(setupLog, &QPushButton::clicked, this, &VisualDisplayPage::SetupLogRequested);
  row->addWidget(easySetup);
  row->addWidget(setupLog);
  QPushButton* fanTest = AddButton("cmdFanTest", tr("Fan Test Setup"));
  connect(fanTest, &QPushButton::clicked, this, &VisualDisplayPage::FanTestRequested);
  QPushButton* glitchTest = AddButton("cmdGlitchTest", tr("glitch test"));
  connect(glitchTest, &QPushButton::clicked, this, &VisualDisplayPage::GlitchTestRequested);
  QPushButton* bigGraph = AddButton("cmdBigGraph", tr("Expand Graph"));
  bigGraph->setEnabled(false);
  bigGraph->setToolTip(tr("not available yet"));
  for (QPushButton* button : {fanTest, glitchTest, bigGraph}) row->addWidget(button);
  if (readOnly) {
    for (QPushButton* button : {easySetup, fanTest, glitchTest}) button->setEnabled(false);
    pwm_->setEnabled(false);
    card_->SetReadOnly();
  }

  auto* column = new QVBoxLayout(frame);
  column->setContentsMargins(14, 8, 14, 8);
  column->addLayout(row);
  column->addWidget(MakeZoneRow());
  return frame;
}

bool VisualDisplayPage::Do(const std::function<void()>& action) {
  const bool done = RunUserAction(dialogs_, action);
  ShowAll();
  return done;
}

void VisualDisplayPage::MoveLimit(const std::function<void()>& action, bool dragging) {
  bool refused = false;
  const bool done = RunUserAction(dialogs_, [&] {
    try {
      action();
    } catch (const OutOfRange& reason) {  // no failure of the link: the value has no byte
      refused = true;
      emit LimitRejected(QString::fromStdString(reason.what()));
    }
  });
  // While the mouse holds a marker the gauge has it.
  if (dragging && done && !refused) return;
  ShowAll();
}

void VisualDisplayPage::ShowAll() {
  ShowFrames();
  card_->ShowLimits(model_.State().Gauge, static_cast<std::size_t>(bench_.Display.SelectedChannel),
                    bench_.Power.PowerMode);
  ShowReadings(old_);
}

void VisualDisplayPage::ShowFrames() {
  const VisualState& state = model_.State();
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    ChannelTile& tile = *tiles_[channel];
    tile.setText(QString::fromStdString(state.Captions[channel]));
    tile.setAccessibleName(tile.text());
    lamps_[channel]->setAccessibleName(tr("Alarm of %1").arg(tile.text()));
    tile.SetMark(state.Marks[channel]);
    tile.setVisible(state.ChannelShown[channel]);
    // Only what the chart in sight draws has a colour: the other chart uses the same ones again.
    const Channel& row = channels[channel];
    const bool drawn = row.Chart == state.ShownStrip;
    tile.SetTrace(drawn ? std::optional(static_cast<int>(row.Trace - FirstTrace(row.Chart))) : std::nullopt);
  }
  strip2_->SetCaption(QString::fromStdString(state.Strip2Caption));
  strip3_->SetCaption(QString::fromStdString(state.Strip3Caption));
  strip2_->setVisible(state.ShownStrip == Strip::Strip2);
  strip3_->setVisible(state.ShownStrip == Strip::Strip3);
  if (std::exchange(strip2Range_, state.Strip2Range) != state.Strip2Range)
    strip2_->SetValueRange(state.Strip2Range.Minimum, state.Strip2Range.Maximum);
  for (std::size_t trace = 0; trace < traceCount; ++trace) {
    StripChart& chart = trace < firstStrip3Trace ? *strip2_ : *strip3_;
    const int number = static_cast<int>(trace < firstStrip3Trace ? trace : trace - firstStrip3Trace);
    chart.SetTraceName(number, QString::fromStdString(state.TraceNames[trace]));
    // Only a change: between two, the user may switch traces on and off.
    if (std::exchange(traceShown_[trace], state.TraceShown[trace]) != state.TraceShown[trace])
      chart.SetTraceVisible(number, state.TraceShown[trace]);
  }
  const auto selected = static_cast<std::size_t>(bench_.Display.SelectedChannel);
  const Channel& row = channels[selected];
  const bool drawn = row.Chart == state.ShownStrip;
  (row.Chart == Strip::Strip2 ? strip2_ : strip3_)
      ->SetSelectedTrace(drawn ? static_cast<int>(row.Trace - FirstTrace(row.Chart)) : -1);
}

void VisualDisplayPage::ShowReadings(bool old) {
  old_ = old;
  const VisualState& state = model_.State();
  for (std::size_t channel = 0; channel < channelCount; ++channel) {
    const auto [value, unit] =
        SplitReadout(QString::fromStdString(ReadoutText(channel, bench_.Measured, bench_.Power)));
    const bool read = ticks_ > 0;  // a zero that nobody measured is no reading
    tiles_[channel]->SetReading(read ? value : QStringLiteral("–"), unit);
    tiles_[channel]->SetOld(old && read);
    lamps_[channel]->SetState(LampOf(state, channel));
  }
  const auto selected = static_cast<std::size_t>(bench_.Display.SelectedChannel);
  card_->ShowReading(state, selected, RangeOf(selected), old);
  pwm_->Show(state, old);
  for (std::size_t zone = 0; zone < tminLabels_.size(); ++zone) {
    const QString name = QString::fromStdString(std::string(channels[zone].Caption));
    SetNamedText(*tminLabels_[zone], tr("Tmin, %1").arg(name), WithDegrees(state.TminTexts[zone]));
    SetNamedText(*opPointLabels_[zone], tr("Operating point, %1").arg(name), WithDegrees(state.OpPointTexts[zone]));
    SetMuted(*tminLabels_[zone], old);
    SetMuted(*opPointLabels_[zone], old);
  }
  zoneRow_->setVisible(bench_.Display.DynamicTminShown);
  strip2_->SetCaption(QString::fromStdString(state.Strip2Caption));
}

SeenRange VisualDisplayPage::RangeOf(std::size_t channel) const {
  const bool volts = channel == currentChannel && bench_.Power.PowerMode;  // its trace is not what the readout shows
  if (volts || ticks_ < ticksToMeasureAll) return {};
  const TraceHistory& history = bench_.History;
  const TraceColumn range = history.Range(channels[channel].Trace, measuredFrom_, history.LastTime() + 1);
  if (range.Empty()) return {};
  return {true, range.Min, range.Max};
}

void VisualDisplayPage::Posted() {
  // The first rows hold zeros for the channels whose turn has not come yet: neither a minimum nor a picture of them.
  if (++ticks_ == ticksToMeasureAll) {
    measuredFrom_ = bench_.History.LastTime();
    strip2_->Clear();
    strip3_->Clear();
  }
  strip2_->Posted();
  strip3_->Posted();
}

}  // namespace krx
