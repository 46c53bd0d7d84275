// SPDX-License-Identifier: GPL-3.0-or-later
#include "fans/minimumpwm.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>

#include "fans/fanconfig.h"
#include "fans/manualcontrol.h"
#include "link/commserror.h"
#include "link/registeraccess.h"
#include "registers/chip.h"
#include "registers/conversions.h"
#include "registers/numerics.h"

namespace krx {
namespace {

constexpr std::array<int, 8> testValues{15, 20, 25, 30, 35, 40, 45, 50};
constexpr double pauseSeconds = 0.5;
constexpr double settlingSeconds = 1;
constexpr double readingSeconds = 1;
constexpr double secondsPerValue = pauseSeconds + settlingSeconds + readingSeconds * steadyReadingCount;
constexpr double valuesBarStep = 100.0 / 8;
constexpr double readingsBarStep = 100.0 / 20;
constexpr int failingMisses = 3;

// Limits the wait for a fan that this output does not drive. Large fans coast for about ten seconds.
constexpr double standstillLimitSeconds = 30;
// The tachometer is updated at most four times a second; faster polling only loads the bus.
constexpr double standstillPollSeconds = 0.02;
// There is no cooling while waiting for the fan to stop.
constexpr double heatCheckSeconds = 1;

constexpr std::uint8_t fullDuty = 0xFF;

std::string Rpm(float speed) {
  return FormatFixed(speed, 0) + " RPM";
}

}  // namespace

SteadyVerdict JudgeReadings(std::span<const std::uint16_t, steadyReadingCount> counts) {
  const auto kept = counts.subspan<1>();
  std::int64_t sum = 0;
  for (const std::uint16_t count : kept) sum += count;
  const auto number = static_cast<std::int64_t>(kept.size());
  SteadyVerdict verdict;
  verdict.Mean = static_cast<double>(sum) / static_cast<double>(number);
  for (const std::uint16_t count : kept) {
    // |count - mean| > 0.3 mean in integers, so that a reading exactly on the limit is inside.
    const bool outside = std::llabs(count * number - sum) * 10 > 3 * sum;
    // A fan that never starts reads 65535 throughout, which is within the band around its mean.
    if (outside || count == standstillCount) ++verdict.Misses;
  }
  verdict.Passed = verdict.Misses < failingMisses;
  return verdict;
}

MinimumPwm::MinimumPwm(Link& link, OwedWrites& owed, const FanCommon& fans, DetectionMonitor& monitor)
    : link_(link), owed_(owed), fans_(fans), monitor_(monitor) {}

DetectionResult MinimumPwm::Min_PWM(std::size_t index) {
  DetectionResult result;
  progress_ = {};
  progress_.SecondsLeft = secondsPerValue * static_cast<double>(testValues.size());
  try {
    Detect(index, result);
  } catch (const Cancelled&) {
    result.End = DetectionEnd::Cancelled;
  } catch (const CommsError& error) {
    if (NotRestoredText(link_, owed_, index).empty()) throw;
    result.End = DetectionEnd::LinkFault;
    result.Message = error.BoxText();
  }
  result.NotRestored = NotRestoredText(link_, owed_, index);
  if (!result.NotRestored.empty()) result.Fault = owed_.LastFailure();
  return result;
}

void MinimumPwm::Detect(std::size_t index, DetectionResult& result) {
  if (AtThermLimit()) {
    result.End = DetectionEnd::TooHot;
    result.Message = "Temperature Too High!\n\nA temperature zone is at its THERM limit; the fan will not be stopped.";
    return;
  }
  if (!IsPresent(index)) {
    result.End = DetectionEnd::Absent;
    result.Message = "Fan Not Present!";
    return;
  }
  ManualControl control(link_, owed_, index, true);
  try {
    RunValues(index, control, result);
    if (result.End == DetectionEnd::Found) control.KeepDuty();
  } catch (const DidNotStop&) {
    result.End = DetectionEnd::DidNotStop;
    result.Message = DidNotStopText();
  } catch (const TooHot&) {
    control.SetDuty(fullDuty);
    result.End = DetectionEnd::TooHot;
    result.Message = "Temperature Too High!\n\nA temperature zone reached its THERM limit; the detection was aborted.";
  }
  control.PutBack();
}

void MinimumPwm::RunValues(std::size_t index, ManualControl& control, DetectionResult& result) {
  for (const int duty : testValues) {
    valueStart_ = monitor_.Seconds();
    control.SetDuty(0);
    progress_.Values = std::min(100.0, progress_.Values + valuesBarStep);
    progress_.Duty = duty;
    ShowProgress();
    Wait(pauseSeconds);
    DutyEvidence evidence;
    evidence.Duty = duty;
    WaitForStandstill(index, evidence);
    TestSteadyRun(index, control, evidence);
    result.Evidence.push_back(evidence);
    progress_.SecondsLeft -= secondsPerValue;
    if (evidence.Verdict.Passed) {
      progress_.Values = 100;
      ShowProgress();
      result.Value = static_cast<std::int16_t>(duty);
      result.End = DetectionEnd::Found;
      return;
    }
  }
  result.Value = 0;
  result.End = DetectionEnd::NoneFound;
}

bool MinimumPwm::IsPresent(std::size_t index) {
  ManualControl control(link_, owed_, index, false);
  const std::uint16_t count = ReadCount(index);
  speedBefore_ = SpeedOf(index, count);
  if (!control.PutBack()) throw CommsError(owed_.LastFailure());
  return count != standstillCount;
}

void MinimumPwm::WaitForStandstill(std::size_t index, DutyEvidence& evidence) {
  const double start = monitor_.Seconds();
  double nextHeatCheck = start + heatCheckSeconds;
  for (std::uint16_t count = ReadCount(index); count != standstillCount; count = ReadCount(index)) {
    speedAtZero_ = SpeedOf(index, count);
    const double now = monitor_.Seconds();
    const double passed = now - start;
    if (passed >= standstillLimitSeconds) throw DidNotStop();
    if (now >= nextHeatCheck) {
      if (AtThermLimit()) throw TooHot();
      nextHeatCheck = now + heatCheckSeconds;
    }
    progress_.StandstillSecondsLeft = standstillLimitSeconds - passed;
    ShowProgress();
    Wait(standstillPollSeconds);
  }
  evidence.SecondsToStop = monitor_.Seconds() - start;
  progress_.StandstillSecondsLeft.reset();
}

void MinimumPwm::TestSteadyRun(std::size_t index, ManualControl& control, DutyEvidence& evidence) {
  // The same byte that is written when the result is accepted.
  control.SetDuty(MinimumDutyByte(evidence.Duty).value_or(fullDuty));
  Wait(settlingSeconds);
  progress_.Readings = 0;
  for (std::uint16_t& count : evidence.Counts) {
    progress_.Readings = std::min(100.0, progress_.Readings + readingsBarStep);
    count = ReadCount(index);
    ShowProgress();
    Wait(readingSeconds);
    if (AtThermLimit()) throw TooHot();
  }
  evidence.Verdict = JudgeReadings(evidence.Counts);
}

std::uint8_t MinimumPwm::Read(std::uint8_t reg) {
  // On a slow bus the next check for Cancel would be too late when the program is asked to end.
  if (link_.EndAsked && link_.EndAsked()) throw Cancelled();
  return ReadByte(link_, reg);
}

std::uint16_t MinimumPwm::ReadCount(std::size_t index) {
  const int low = Read(chip::Tachs.at(index).Low);
  const auto count = static_cast<std::uint16_t>(low + 256 * Read(chip::Tachs.at(index).High));
  progress_.SpeedRpm = SpeedOf(index, count);
  return count;
}

float MinimumPwm::SpeedOf(std::size_t index, std::uint16_t count) const {
  return fans_.Corrected(TachToRPM(count), index);
}

bool MinimumPwm::AtThermLimit() {
  return std::any_of(chip::Zones.begin(), chip::Zones.end(), [&](const chip::Zone& zone) {
    const std::uint8_t limit = Read(zone.Therm);
    return limit != chip::NoThermLimit && TempFromByte(Read(zone.Value), 0) >= TempFromByte(limit, 0);
  });
}

void MinimumPwm::Wait(double seconds) {
  if (!monitor_.Wait(seconds)) throw Cancelled();
}

void MinimumPwm::ShowProgress() {
  DetectionProgress shown = progress_;
  const double thisValue = std::min(secondsPerValue, monitor_.Seconds() - valueStart_);
  shown.SecondsLeft = std::max(0.0, shown.SecondsLeft - thisValue);
  monitor_.Show(shown);
}

std::string MinimumPwm::DidNotStopText() const {
  std::string cause = "The fan slows down, but does not stop.";
  // 10 % is more than the speed ripple of a fan at constant duty.
  if (speedAtZero_ > 1.1F * speedBefore_) {
    cause = "It turns faster at 0 %: the polarity of the output (\"Fan Active High\") is probably inverted.";
  } else if (speedAtZero_ > 0.75F * speedBefore_) {
    cause = "Its speed hardly changed: the fan is probably not controlled by this output.";
  }
  return fmt::format("Fan Did Not Stop!\n\nSpeed before: {}\nSpeed at 0 %: {}\n{}", Rpm(speedBefore_),
                     Rpm(speedAtZero_), cause);
}

std::string MonitoringWarning(const Link& link) {
  const auto seen = link.Seen.Byte(chip::Configuration1);
  if (!seen) return "Temperatures may not be measured: monitoring state unknown";
  return (*seen & chip::Start) != 0 ? "" : "Temperatures are not measured: monitoring is off";
}

std::string DetectionRemark(const DetectionResult& result) {
  if (result.Value == 0) return "no tested duty kept the fan running";
  return result.Value == 100 ? "" : fmt::format("{} % found and entered", result.Value);
}

std::string EvidenceText(const DetectionResult& result, int fan) {
  constexpr std::array<const char*, 7> ends{
      "", "none found", "fan not present", "fan did not stop", "too hot", "cancelled", "aborted by a failed transfer"};
  std::string text = fmt::format("Minimum PWM of fan {}: {}\n", fan,
                                 result.End == DetectionEnd::Found ? fmt::format("{} %", result.Value)
                                                                   : ends.at(static_cast<std::size_t>(result.End)));
  for (const DutyEvidence& evidence : result.Evidence) {
    text += fmt::format("\n{} %: {}\nstopped after {:.1f} s, mean count {}, misses {} of {}\ncounts:", evidence.Duty,
                        evidence.Verdict.Passed ? "passed" : "failed", evidence.SecondsToStop,
                        ShortestText(evidence.Verdict.Mean), evidence.Verdict.Misses, evidence.Counts.size() - 1);
    for (const std::uint16_t count : evidence.Counts) text += fmt::format(" {}", count);
    text += "\n";
  }
  return text;
}

}  // namespace krx
