// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>

#include "monitor/alarms.h"
#include "monitor/channels.h"
#include "monitor/limits.h"
#include "monitor/pwmbehaviour.h"

namespace krx {

class FirstValues;
class PinFunctions;
class ReadingCycle;
class SeenRanges;
class TraceHistory;
struct DisplayState;
struct LogState;
struct ZoneState;

/// What the tab works on; all of it outlives the tab.
struct VisualParts {
  Link& ChipLink;
  Measurements& Measured;
  const FanCommon& Fans;
  const ZoneState& Zones;
  const PowerSettings& Power;
  const LogState& Log;
  DisplayState& Display;
  TraceHistory& History;
  const FirstValues& First;
  SeenRanges& Ranges;
  PinFunctions& Pins;
  ReadingCycle& Cycle;
};

/// What the main window does for the tab.
class VisualFrame {
 public:
  virtual ~VisualFrame() = default;
  static constexpr int tickMilliseconds = 10;
  /// visual_timer, every tickMilliseconds.
  virtual void StartVisualTimer() = 0;
  virtual void StopVisualTimer() = 0;
  virtual bool VisualTimerRunning() const = 0;
  /// Timer3 and its switch: "Continuous Reading is Off".
  virtual void StopContinuousReading() = 0;
  /// Steps of the start-up have not succeeded yet.
  virtual bool OwesStartUp() const = 0;
  /// Tries them again.
  virtual void RetryStartUp() = 0;
};

/// The alarms of all shown channels.
struct AlarmReport {
  std::optional<int> Count;  ///< nothing before the first reading
  std::string Details;       ///< a line each: "Fan 1: below low limit 2400 RPM"
  bool Old = false;          ///< the chip does not measure
};

enum class CaptionMark {
  Plain,       ///< muted text
  FirstShown,  ///< dark green: channel 0 on the first visit, before anything was clicked
  Selected,    ///< bright green: clicked last
};

/// Everything the "Visual Display" tab shows that is not in the measurement state. Changed by VisualModel only.
struct VisualState {
  std::array<std::string, channelCount> Captions;
  std::array<bool, channelCount> ChannelShown{};  ///< caption, tile and indicator
  std::array<CaptionMark, channelCount> Marks{};
  AlarmStates Alarms{};

  Strip ShownStrip = Strip::Strip2;
  std::string Strip2Caption;
  std::string Strip3Caption;
  GaugeScale Strip2Range{-20, 120};
  std::array<std::string, traceCount> TraceNames;
  std::array<bool, traceCount> TraceShown{};

  GaugeMarkers Gauge;  ///< of the selected channel; its value is the channel's
  std::string Readout;

  bool SliderShown = false;   ///< pnlSlider; pnlPWM is shown in the opposite case
  std::string PanelCaption;   ///< "Fan1 PWM"
  std::string SliderCaption;  ///< "Fan1": chooses the register that the slider writes
  std::string PwmText;        ///< lblPWM; "–" where the duty was never seen
  PwmBehaviour Pwm;           ///< of the selected output
  std::string DutyCycleText;  ///< lblDutyCycle1
  int SliderValue = 255;      ///< 0..255

  // "40", "Disabled", or "–" where the register was never seen.
  std::array<std::string, 3> TminTexts;
  std::array<std::string, 3> OpPointTexts;
};

/// The rules of the "Visual Display" tab: what every handler reads and writes, in which order, and what is seen
/// afterwards. Handlers throw what the link throws; the state then shows what was reached, and the next one works.
class VisualModel {
 public:
  VisualModel(const VisualParts& parts, VisualFrame& frame);

  const VisualState& State() const { return state_; }

  /// The tab was selected.
  void EnterVisualDisplay();
  /// While the tab is shown somebody has written Configuration 1: a chip that monitors is read.
  void ConfigurationWritten(std::uint8_t byte);
  /// The "Read/Write" tab was selected: both timers stop. (The register panel then selects its row.)
  void EnterReadWrite();

  /// visual_timer's tick.
  void Tick();

  /// A caption was clicked.
  void SelectChannel(std::size_t channel);
  void EasySetup();
  /// Captions, visibility, traces and markers by the present labels, modes and pulses, without any transfer.
  void Relabel();
  /// What follows the bytes last seen on the bus, whoever asked for them, a tick that failed half-way too: the readout,
  /// the PWM panel and the zones.
  void ShowSeen();
  /// The readings by the present measurement state, without any transfer: for a change of labels or constants.
  void ShowReadings();

  /// Why the channel's alarm is set; empty while it is not, and for a channel that is not shown.
  std::string AlarmWords(std::size_t channel) const;
  AlarmReport ReportAlarms() const;
  /// A fan's pulses were changed behind the console's back: its speed is not the one shown until they are read again.
  bool PulsesDiffer(std::size_t channel) const;

  /// Runs what reads the chip's settings anew, without a tick between its reads, and shows what that changed.
  void ReRead(const std::function<void()>& read);

  // The duty slider. Values 0..255; which of the notifications writes depends on the medium.
  void SliderPressed();
  void SliderMoving(int value);
  void SliderReleased();
  void SliderReleasedAfterMove(int value);

  // A limit marker. Values in the channel's unit; which of the notifications writes depends on the medium. A value
  // that could not be written throws; the marker then stands where it was placed.
  void MarkerMoving(Marker marker, double value);
  void MarkerReleased(Marker marker, double value);

  // The boxes of the limits: written at once, on either medium. The gauge's scale does not bind them. A text outside
  // the range throws OutOfRange with the range as its text and writes nothing; the value that stands there writes
  // nothing either.
  void TypeLimit(Marker marker, const std::string& text);
  void StepLimit(Marker marker, int steps);
  /// What may be typed into the box of a limit now.
  std::string LimitRange(Marker marker) const;
  /// Where a step of the gauge's keys from one value to another ends, which a fan without such a count passes over.
  double LimitStepEnd(double from, double wanted) const;

 private:
  void LabelByPowerMode();
  void LabelByThermPin();
  void LabelByAlertPin();
  void ShowPwmPanel();
  void ShowReadout();
  void ShowDuty();
  void ShowZones();
  void ShowSlider(int value);
  void WriteSlider(int value);
  void StartCycle();
  void ShowChangedMode(bool powerModeBefore);
  void MoveMarker(Marker marker, double value);
  void EnterLimit(Marker marker, std::optional<double> value);
  void WriteMarkers(Marker dragged);
  void PlaceAwaitedLimits();
  LimitContext Limits() const;
  void SawByte(std::uint8_t reg);

  VisualParts parts_;
  VisualFrame& frame_;
  VisualState state_;
  bool visited_ = false;
  bool sliderPressed_ = false;
  RegisterImage::Subscription seen_;  ///< of limits that others read or write
};

}  // namespace krx
