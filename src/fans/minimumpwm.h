// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "fans/fancommon.h"
#include "link/commserror.h"
#include "link/linknewcomport06.h"
#include "link/owedwrites.h"

namespace krx {

class ManualControl;

inline constexpr std::size_t steadyReadingCount = 21;  ///< the first one is discarded
inline constexpr std::uint16_t standstillCount = 0xFFFF;

/// The verdict of the twenty kept readings at one duty.
struct SteadyVerdict {
  double Mean = 0;  ///< tach counts
  int Misses = 0;   ///< readings outside ±30 % of the mean (limits count as inside) or without pulses
  bool Passed = false;
};
SteadyVerdict JudgeReadings(std::span<const std::uint16_t, steadyReadingCount> counts);

/// The measurements at one duty.
struct DutyEvidence {
  int Duty = 0;  ///< %
  double SecondsToStop = 0;
  std::array<std::uint16_t, steadyReadingCount> Counts{};
  SteadyVerdict Verdict;
};

enum class DetectionEnd { Found, NoneFound, Absent, DidNotStop, TooHot, Cancelled, LinkFault };

struct DetectionResult {
  std::int16_t Value = 100;  ///< the first duty in % that passed, 0 if none did, 100 if there is no result
  DetectionEnd End = DetectionEnd::Cancelled;
  std::string Message;  ///< for a box with the critical icon; empty: no box
  std::vector<DutyEvidence> Evidence;
  std::string NotRestored;          ///< state of an output that could not be restored; empty: restored
  std::optional<CommsError> Fault;  ///< why the restore failed
};

/// Counts, mean, misses, stopping time and verdict of every tested duty, as text.
std::string EvidenceText(const DetectionResult& result, int fan);

/// The text beside the field that took the result: "30 % found and entered". Empty without a result.
std::string DetectionRemark(const DetectionResult& result);

/// The warning to confirm before a detection: without monitoring, a zone that gets hot while its fan is stopped is not
/// detected. Based on the byte last seen on the bus; empty when monitoring is on.
std::string MonitoringWarning(const Link& link);

/// The progress of a run.
struct DetectionProgress {
  int Duty = 0;                                      ///< % under test
  double Values = 0;                                 ///< first bar, 0..100
  double Readings = 0;                               ///< second bar, 0..100
  float SpeedRpm = 0;                                ///< last speed read
  double SecondsLeft = 0;                            ///< of the whole run, if every remaining duty has to be tested
  std::optional<double> StandstillSecondsLeft = {};  ///< while waiting for the fan to stop
};

/// The environment of a run: display, clock and Cancel.
class DetectionMonitor {
 public:
  virtual ~DetectionMonitor() = default;
  virtual void Show(const DetectionProgress& progress) = 0;
  /// Seconds from an arbitrary origin, in the fans' time.
  virtual double Seconds() = 0;
  /// Waits without any chip traffic; false when the user cancelled.
  virtual bool Wait(double seconds) = 0;
};

/// Finds the lowest duty at which a fan starts from standstill and runs steadily. The output is in manual control
/// meanwhile; its configuration register is restored on every exit, including exceptions, and stays a pending restore
/// if that fails.
class MinimumPwm {
 public:
  MinimumPwm(Link& link, OwedWrites& owed, const FanCommon& fans, DetectionMonitor& monitor);

  /// index: 0..2. Throws what the link throws, unless the output could not be restored: then the result reports both.
  DetectionResult Min_PWM(std::size_t index);

 private:
  struct Cancelled {};
  struct TooHot {};
  struct DidNotStop {};

  void Detect(std::size_t index, DetectionResult& result);
  void RunValues(std::size_t index, ManualControl& control, DetectionResult& result);
  bool IsPresent(std::size_t index);
  void WaitForStandstill(std::size_t index, DutyEvidence& evidence);
  void TestSteadyRun(std::size_t index, ManualControl& control, DutyEvidence& evidence);
  std::uint8_t Read(std::uint8_t reg);
  std::uint16_t ReadCount(std::size_t index);
  float SpeedOf(std::size_t index, std::uint16_t count) const;
  bool AtThermLimit();
  void Wait(double seconds);
  void ShowProgress();
  std::string DidNotStopText() const;

  Link& link_;
  OwedWrites& owed_;
  const FanCommon& fans_;
  DetectionMonitor& monitor_;
  DetectionProgress progress_;
  double valueStart_ = 0;
  float speedBefore_ = 0;
  float speedAtZero_ = 0;
};

}  // namespace krx
