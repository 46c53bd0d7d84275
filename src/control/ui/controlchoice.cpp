// SPDX-License-Identifier: GPL-3.0-or-later
#include "control/ui/controlchoice.h"

#include <QCheckBox>
#include <QRadioButton>
#include <utility>

#include "controls/ui/card.h"
#include "controls/ui/texts.h"

namespace krx {

QCheckBox* MakeCheck(const QString& name, const QString& caption, const ControlAccess& access,
                     std::function<void(bool)> clicked) {
  auto* const check = new QCheckBox(caption);
  check->setObjectName(name);
  QObject::connect(check, &QCheckBox::clicked, check,
                   [act = access.Act, clicked = std::move(clicked)](bool ticked) { act([&] { clicked(ticked); }); });
  return check;
}

QRadioButton* MakeOption(const QString& name, const QString& caption, const ControlAccess& access,
                         std::function<void()> clicked) {
  auto* const option = new QRadioButton(caption);
  option->setObjectName(name);
  if (clicked) {
    QObject::connect(option, &QRadioButton::clicked, option,
                     [act = access.Act, clicked = std::move(clicked)] { act(clicked); });
  }
  return option;
}

void ShowMarked(QAbstractButton& button, bool marked) {
  const bool exclusive = button.autoExclusive();
  button.setAutoExclusive(false);
  button.setChecked(marked);
  button.setAutoExclusive(exclusive);
}

void ShowSectionState(Card& section, const SectionWords& words) {
  const auto mark = [&] {
    switch (words.Now) {
      case SectionWords::State::Off:
        return Mark::Off;
      case SectionWords::State::On:
        return Mark::Good;
      case SectionWords::State::Unclear:
        return Mark::Attention;
      case SectionWords::State::NotRead:
        break;
    }
    return Mark::Unknown;
  };
  section.SetState(mark(), QtText(words.Word));
}

int Lines(const QWidget& widget, double lines) {
  return qRound(widget.fontMetrics().height() * lines);
}

}  // namespace krx
