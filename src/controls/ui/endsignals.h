// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QTimer>
#include <csignal>
#include <functional>
#include <map>

namespace krx {

/// Turns SIGTERM, SIGINT, SIGHUP and SIGQUIT into an ordinary request to end, so that a program ended from outside
/// closes its windows and leaves the board as a closed window does. A standard output that went away (SIGPIPE) is no
/// reason to end. One at a time; the former handlers are back at its end.
class EndSignals : public QObject {
  Q_OBJECT

 public:
  /// busy: true while ending would cut a transfer in two; the request then waits.
  explicit EndSignals(std::function<bool()> busy, QObject* parent = nullptr);
  ~EndSignals() override;

  /// True from the signal on, while the request may still wait.
  bool Asked() const;

 signals:
  void EndRequested();

 private:
  void Ask();

  std::function<bool()> busy_;
  QTimer retry_;
  int readEnd_ = -1;
  int writeEnd_ = -1;
  std::map<int, struct sigaction> former_;
};

}  // namespace krx
