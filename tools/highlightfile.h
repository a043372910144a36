// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Highlight files: reads them into memory, and distinguishes them from other files.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace tools {

/// A file's name in a message; "-" is standard input.
std::string nameOfHits(const std::string &hits);

/// All bytes of a highlight file of at most so many megabytes; "-" is standard input. Reads at most one byte more than
/// the limit, also of a pipe or a device. Throws CommandFailure (exitHighlightFile) that names the file, also for
/// another kind of file: a PDF, UTF-16, binary data.
std::string readHits(const std::string &hits, unsigned megabytes);

/// A name under which a highlight file can be opened any number of times: its own, or, for "-", a pipe or a device, one
/// of a copy of its bytes in memory, which lasts as long as the process. The bytes are then read as readHits does, with
/// its errors.
std::string rereadable(const std::string &hits, unsigned megabytes);

/// Whether a file is a highlight file, judged by its first bytes. False if it cannot be read.
bool isHighlightFile(const std::filesystem::path &file);

/// The document that belongs to a highlight file by its name: "paper.pdf" in the directory of "paper.xml",
/// "paper.hits.xml", "paper.pdf.xml" or "paper.tavrelglt". Empty if there is none.
std::filesystem::path documentOfHits(const std::filesystem::path &hits);

} // namespace tools
