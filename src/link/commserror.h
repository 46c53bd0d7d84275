// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace krx {

/// A failed operation of the bus-access library or of the link: a number and a text. Thrown where it happens,
/// shown once at the window's edge.
class CommsError : public std::runtime_error {
 public:
  CommsError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}

  int Number() const { return number_; }

  /// "Error: 6, Overflow": a number is written with one leading blank, a negative one with its sign in that place.
  std::string BoxText() const { return (number_ < 0 ? "Error:" : "Error: ") + std::to_string(number_) + ", " + what(); }

 private:
  int number_;
};

/// No device acknowledged its address. A search takes it for "nothing there", everybody else for a failure.
class NoAcknowledge : public CommsError {
 public:
  using CommsError::CommsError;
};

/// No failure: the program is to end, and a sequence that only reads was given up between two transfers.
class GivenUp : public std::runtime_error {
 public:
  GivenUp() : std::runtime_error("given up") {}
};

/// A value that does not fit the byte it is meant for.
class Overflow : public CommsError {
 public:
  static constexpr int number = 6;
  Overflow() : CommsError(number, "Overflow") {}

 protected:
  explicit Overflow(const std::string& text) : CommsError(number, text) {}
};

/// An overflow that is found before anything is written, with a text that names the value.
class OutOfRange : public Overflow {
 public:
  explicit OutOfRange(const std::string& text) : Overflow(text) {}
};

}  // namespace krx
