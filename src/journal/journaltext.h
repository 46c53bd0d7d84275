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

/// One transfer as shown in the journal. Bytes in hexadecimal; an unknown register has no name.
std::array<std::string, journalColumnCount> JournalColumns(const JournalEntry& entry);

/// The columns separated by tabs, for the clipboard and for files.
std::string JournalLine(const JournalEntry& entry);

struct JournalFilter {
  std::string Text;  ///< searched in all columns, ignoring case; empty: everything
  bool WritesOnly = false;
  bool UserOnly = false;  ///< only the writes of user actions, which are stored separately
};
bool JournalMatches(const JournalEntry& entry, const JournalFilter& filter);

}  // namespace krx
