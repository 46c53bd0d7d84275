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

/// The objects used by the tab; all of them outlive it.
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

/// Services of the main window for the tab.
class VisualFrame {
 public:
  virtual ~VisualFrame() = default;
  static constexpr int tickMilliseconds = 10;
  /// visual_timer, every tickMilliseconds.
  virtual void StartVisualTimer() = 0;
  virtual void StopVisualTimer() = 0;
  virtual bool VisualTimerRunning() const = 0;
  /// Stops Timer3 and sets its switch to "Continuous Reading is Off".
  virtual void StopContinuousReading() = 0;
  /// True while start-up steps have failed and are pending.
  virtual bool OwesStartUp() const = 0;
  /// Retries them.
  virtual void RetryStartUp() = 0;
};

/// The alarms of all shown channels.
struct AlarmReport {
  std::optional<int> Count;  ///< empty before the first reading
  std::string Details;       ///< one line per alarm: "Fan 1: below low limit 2400 RPM"
  bool Old = false;          ///< the chip is not monitoring
};

enum class CaptionMark {
  Plain,       ///< muted text
  FirstShown,  ///< dark green: channel 0 on the first visit, before any click
  Selected,    ///< bright green: last clicked
};

/// Everything shown by the "Visual Display" tab that is not in the measurement state. Changed by VisualModel only.
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
  std::string SliderCaption;  ///< "Fan1": selects the register written by the slider
  std::string PwmText;        ///< lblPWM; "–" if the duty was never seen
  PwmBehaviour Pwm;           ///< of the selected output
  std::string DutyCycleText;  ///< lblDutyCycle1
  int SliderValue = 255;      ///< 0..255

  // "40", "Disabled", or "–" if the register was never seen.
  std::array<std::string, 3> TminTexts;
  std::array<std::string, 3> OpPointTexts;
};

/// The rules of the "Visual Display" tab: what each handler reads and writes, in which order, and what is shown
/// afterwards. Handlers throw what the link throws; the state then shows what was completed, and the next handler
/// works.
class VisualModel {
 public:
  VisualModel(const VisualParts& parts, VisualFrame& frame);

  const VisualState& State() const { return state_; }

  /// The tab was selected.
  void EnterVisualDisplay();
  /// Configuration 1 was written elsewhere while the tab is shown: starts the cycle if monitoring is on.
  void ConfigurationWritten(std::uint8_t byte);
  /// The "Read/Write" tab was selected: both timers stop. (The register panel then selects its row.)
  void EnterReadWrite();

  /// visual_timer's tick.
  void Tick();

  /// A caption was clicked.
  void SelectChannel(std::size_t channel);
  void EasySetup();
  /// Updates captions, visibility, traces and markers for the present labels, modes and pulses, without any transfer.
  void Relabel();
  /// Updates what depends on the bytes last seen on the bus, also after a tick that failed half-way: the readout, the
  /// PWM panel and the zones.
  void ShowSeen();
  /// Updates the readings from the measurement state, without any transfer: for a change of labels or constants.
  void ShowReadings();

  /// The reason of the channel's alarm; empty without an alarm and for a channel that is not shown.
  std::string AlarmWords(std::size_t channel) const;
  AlarmReport ReportAlarms() const;
  /// True if a fan's pulses were changed elsewhere: the shown speed is wrong until they are read again.
  bool PulsesDiffer(std::size_t channel) const;

  /// Runs code that reads the chip's settings again, without a tick between its reads, and shows the changes.
  void ReRead(const std::function<void()>& read);

  // The duty slider. Values 0..255; which of the notifications writes depends on the medium.
  void SliderPressed();
  void SliderMoving(int value);
  void SliderReleased();
  void SliderReleasedAfterMove(int value);

  // A limit marker. Values in the channel's unit; which of the notifications writes depends on the medium. A value that
  // cannot be written throws, and the marker returns to its placed value.
  void MarkerMoving(Marker marker, double value);
  void MarkerReleased(Marker marker, double value);

  // The limit boxes: written at once on either medium, not limited to the gauge's scale. A text out of range throws
  // OutOfRange with the range as its text and writes nothing; the present value writes nothing either.
  void TypeLimit(Marker marker, const std::string& text);
  void StepLimit(Marker marker, int steps);
  /// The range presently allowed in the box of a limit.
  std::string LimitRange(Marker marker) const;
  /// The end of a key step of the gauge; a fan limit skips values without a count.
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
  RegisterImage::Subscription seen_;  ///< for limits read or written elsewhere
};

}  // namespace krx
