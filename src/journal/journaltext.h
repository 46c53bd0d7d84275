// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "journal/busjournal.h"

namespace krx {

inline constexpr std::size_t journalColumnCount = 9;
inline constexpr std::array<std::string_view, journalColumnCount> journalTitles{
    "Time (s)", "Device", "Transfer", "Register", "Old", "New", "Change", "Origin", "Result"};

/// One transfer as the journal shows it. Bytes in hexadecimal; a register that the chip does not list has no name.
std::array<std::string, journalColumnCount> JournalColumns(const JournalEntry& entry);

/// The columns with tabs between them, for the clipboard and for files.
std::string JournalLine(const JournalEntry& entry);

struct JournalFilter {
  std::string Text;  ///< found in any column, whatever the case; empty: everything
  bool WritesOnly = false;
  bool UserOnly = false;  ///< only the writes of the user's actions, which are kept apart
};
bool JournalMatches(const JournalEntry& entry, const JournalFilter& filter);

}  // namespace krx
