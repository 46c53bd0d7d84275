// SPDX-License-Identifier: GPL-3.0-or-later
#include "board/fantests.h"

#include <algorithm>

#include "link/registeraccess.h"
#include "registers/chip.h"
#include "registers/chipreadings.h"
#include "registers/codes.h"

namespace krx {
namespace {

constexpr const chip::Output& pwm1 = chip::Outputs[0];
constexpr const chip::Output& pwm2 = chip::Outputs[1];
constexpr const chip::Output& pwm3 = chip::Outputs[2];
constexpr std::uint8_t testBits = chip::Dc1 | chip::Dc2;

constexpr int dutyStep = 25;
constexpr int fullDuty = 255;

/// The state of an output as last seen on the bus: "in manual control at 29 %".
std::string Stands(const Link& link, std::size_t output) {
  const auto byte = link.Seen.Byte(chip::Outputs.at(output).Configuration);
  if (!byte) return "in an unknown state";
  if ((*byte & manualControl) != manualControl) return "not in manual control";
  return "in manual control at " + SeenDuty(link, output);
}

void SetBits(Link& link, std::uint8_t reg, std::uint8_t bits) {
  UpdateBits(link, reg, bits, bits);
}

}  // namespace

void FanTestSetup(Link& link) {
  SetBits(link, pwm1.Configuration, manualControl);
  SetBits(link, pwm2.Configuration, manualControl);
  SetBits(link, chip::Configuration3, testBits);
}

void GlitchTest::Start() {
  SetBits(link_, pwm3.Configuration, manualControl);
  SetBits(link_, pwm2.Configuration, manualControl);
  WriteByte(link_, pwm3.Duty, 0);
  WriteByte(link_, pwm2.Duty, 0);
  step_ = 0;
  duty_ = 0;
  if (!running_) lastTick_ = link_.ElapsedSeconds();
  running_ = true;
}

std::uint8_t GlitchTest::Raise(std::uint8_t dutyRegister, bool& capped) {
  const int raised = ReadByte(link_, dutyRegister) + dutyStep;
  capped = raised > fullDuty;
  const auto duty = static_cast<std::uint8_t>(std::min(raised, fullDuty));
  WriteByte(link_, dutyRegister, duty);
  return duty;
}

GlitchTest::TickResult GlitchTest::Tick() {
  if (!running_) return TickResult::Idle;
  lastTick_ = link_.ElapsedSeconds();
  if (finished_) {
    Stop();
    if (!log_.LogFileName.empty() && StopLog) StopLog();
    return TickResult::Ended;
  }
  bool pwm3Capped = false, pwm2Capped = false;
  const std::uint8_t duty = Raise(pwm3.Duty, pwm3Capped);
  Raise(pwm2.Duty, pwm2Capped);
  // After the transfers: if one fails, the next tick must try again instead of ending the test.
  duty_ = duty;
  finished_ = pwm3Capped;
  ++step_;
  return TickResult::Stepped;
}

void GlitchTest::Stop() {
  running_ = false;
  finished_ = false;
}

bool GlitchTest::Drives(std::uint8_t reg) {
  return reg == pwm3.Configuration || reg == pwm2.Configuration || reg == pwm3.Duty || reg == pwm2.Duty;
}

std::string GlitchTest::Leaves() const {
  const std::string second = Stands(link_, 1), third = Stands(link_, 2);
  return second == third ? "PWM2 and PWM3 " + second : "PWM2 " + second + ", PWM3 " + third;
}

double GlitchTest::RemainingSeconds() {
  if (!running_) return 0;
  // The step beyond 255 reaches full duty, and one more tick ends the test.
  const int ticks = finished_ ? 1 : (fullDuty - duty_) / dutyStep + 2;
  return std::max(0.0, ticks * intervalSeconds - (link_.ElapsedSeconds() - lastTick_));
}

}  // namespace krx
