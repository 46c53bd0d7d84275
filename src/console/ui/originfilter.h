// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include "link/busjournal.h"

namespace krx {

/// Names in the journal the control that the user pressed last: what it sends to the bus is its doing.
class OriginFilter : public QObject {
 public:
  /// Installs itself on the application for as long as it lives.
  explicit OriginFilter(BusJournal& journal);

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  BusJournal& journal_;
};

}  // namespace krx
