// SPDX-License-Identifier: GPL-3.0-or-later
#include "controls/ui/texts.h"

namespace krx {

QString QtText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace krx
