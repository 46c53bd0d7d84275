// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>

#include "panel/registerpanel.h"

namespace krx {

/// "Press to update": its face is red while the entry beside it has not been written, bright green afterwards.
class UpdateButton : public QPushButton {
  Q_OBJECT
 public:
  UpdateButton();

  void SetState(EntryState state);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  EntryState state_ = EntryState::Untouched;
};

}  // namespace krx
