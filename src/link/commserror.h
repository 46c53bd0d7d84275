// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <stdexcept>
#include <string>

namespace krx {

/// A failure whose text is written for the user.
class Failure : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A failed operation of the bus-access library or of the link: a number and a text. Thrown where it happens, shown
/// once at the boundary of the window.
class CommsError : public Failure {
 public:
  CommsError(int number, const std::string& text) : Failure(text), number_(number) {}

  int Number() const { return number_; }

  /// "Error: 6, Overflow": a number is written with one leading blank, a negative one with its sign in that place.
  std::string BoxText() const { return (number_ < 0 ? "Error:" : "Error: ") + std::to_string(number_) + ", " + what(); }

 private:
  int number_;
};

/// No device acknowledged its address. For a search this means an empty address, for all other callers a failure.
class NoAcknowledge : public CommsError {
 public:
  using CommsError::CommsError;
};

/// Not a failure: the program was asked to end, and a read-only sequence was abandoned between two transfers.
class GivenUp : public std::runtime_error {
 public:
  GivenUp() : std::runtime_error("given up") {}
};

/// A value that does not fit into its byte.
class Overflow : public CommsError {
 public:
  static constexpr int number = 6;
  Overflow() : CommsError(number, "Overflow") {}

 protected:
  explicit Overflow(const std::string& text) : CommsError(number, text) {}
};

/// An overflow that was detected before any write, with a text that states the valid range.
class OutOfRange : public Overflow {
 public:
  explicit OutOfRange(const std::string& text) : Overflow(text) {}
};

}  // namespace krx
