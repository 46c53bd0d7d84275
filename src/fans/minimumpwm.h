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
#include "link/linknewcomport06.h"

namespace krx {

inline constexpr std::size_t steadyReadingCount = 21;  ///< the first one is discarded
inline constexpr std::uint16_t standstillCount = 0xFFFF;

/// What twenty kept readings say about one duty.
struct SteadyVerdict {
  double Mean = 0;  ///< tach counts
  int Misses = 0;   ///< outside ±30 % of the mean, limits included, or no pulses at all
  bool Passed = false;
};
SteadyVerdict JudgeReadings(std::span<const std::uint16_t, steadyReadingCount> counts);

/// What was measured at one duty.
struct DutyEvidence {
  int Duty = 0;  ///< %
  double SecondsToStop = 0;
  std::array<std::uint16_t, steadyReadingCount> Counts{};
  SteadyVerdict Verdict;
};

enum class DetectionEnd { Found, NoneFound, Absent, DidNotStop, TooHot, Cancelled };

struct DetectionResult {
  std::int16_t Value = 100;  ///< the first duty in % that passed, 0 when none did, 100 when there is no result
  DetectionEnd End = DetectionEnd::Cancelled;
  std::string Message;  ///< for a box with the critical-error icon; empty: none is shown
  std::vector<DutyEvidence> Evidence;
};

/// Counts, mean, misses, time to stop and verdict of every tested duty, as text.
std::string EvidenceText(const DetectionResult& result, int fan);

/// What a run shows while it goes on.
struct DetectionProgress {
  int Duty = 0;                                      ///< % under test
  double Values = 0;                                 ///< first bar, 0..100
  double Readings = 0;                               ///< second bar, 0..100
  float SpeedRpm = 0;                                ///< last speed read
  double SecondsLeft = 0;                            ///< of the whole run, if every remaining duty has to be tried
  std::optional<double> StandstillSecondsLeft = {};  ///< while the fan is waited for to stop
};

/// The surroundings of a run: its display, its clock and its only control.
class DetectionMonitor {
 public:
  virtual ~DetectionMonitor() = default;
  virtual void Show(const DetectionProgress& progress) = 0;
  /// Seconds from an arbitrary origin, in the time of the fans.
  virtual double Seconds() = 0;
  /// Waits without any chip traffic; false when the user cancelled.
  virtual bool Wait(double seconds) = 0;
};

/// Finds the lowest duty at which a fan starts from standstill and runs steadily. The output is in manual control
/// meanwhile; its configuration register is put back on every way out, an exception included.
class MinimumPwm {
 public:
  MinimumPwm(Link& link, const FanCommon& fans, DetectionMonitor& monitor);

  /// index: 0..2. Throws what the link throws, after the configuration has been put back.
  DetectionResult Min_PWM(std::size_t index);

 private:
  struct Cancelled {};
  struct TooHot {};
  struct DidNotStop {};

  void RunValues(std::size_t index, DetectionResult& result);
  bool IsPresent(std::size_t index);
  void WaitForStandstill(std::size_t index, DutyEvidence& evidence);
  void TestSteadyRun(std::size_t index, DutyEvidence& evidence);
  std::uint16_t ReadCount(std::size_t index);
  float SpeedOf(std::size_t index, std::uint16_t count) const;
  bool AtThermLimit();
  void Wait(double seconds);
  void ShowProgress();
  std::string DidNotStopText() const;

  Link& link_;
  const FanCommon& fans_;
  DetectionMonitor& monitor_;
  DetectionProgress progress_;
  double valueStart_ = 0;
  float speedBefore_ = 0;
  float speedAtZero_ = 0;
};

}  // namespace krx
