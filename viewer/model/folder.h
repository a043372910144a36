// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The names in a folder, for a list from which a user chooses.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace viewer {

struct FolderEntry {
  std::string name;     ///< any bytes
  std::string shown;    ///< the name as UTF-8 of one line
  std::u32string order; ///< the name as it is compared: without case and accents
  bool folder = false;
};

struct FolderListing {
  std::vector<FolderEntry> entries; ///< folders first; each part in alphabetical order, numbers by their value
  bool complete = true;             ///< false if the folder has more names than were read
  std::string error;                ///< one line that names the folder; empty: none
};

enum class Files { pdf, all };

inline constexpr size_t mostNamesRead = 100'000;

/// Reads at most so many names of a folder, and keeps folders and files; of the latter only PDFs, by their name in any
/// case, or all. Links are followed. Names that begin with a dot are included.
FolderListing listFolder(const std::filesystem::path &folder, Files files, size_t mostNames = mostNamesRead);

/// A typed text or a name (UTF-8, or other bytes) as FolderEntry::order.
std::u32string orderOf(std::string_view name);

/// The longest text that all these names begin with, without regard to the case of ASCII letters; spelled as in the
/// first one.
std::string commonStart(const std::vector<const FolderEntry *> &entries);

} // namespace viewer
