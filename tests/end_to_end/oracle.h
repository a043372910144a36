// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Independent sources of the end-to-end tests: the words of a page as another program reports them, and the pixels of
// an image file. Nothing here uses this project's text extraction or painting.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// A word as `pdftotext -bbox` reports it: points from the upper left of the page as shown, y downwards.
struct OracleWord {
  std::string text;
  double left, top, right, bottom;
};

/// What a command printed on standard output and standard error together, and its exit status.
struct CommandResult {
  std::string output;
  int status;
};

/// Runs a shell command.
CommandResult run(const std::string &command);

/// The words of each page.
std::vector<std::vector<OracleWord>> oracleWords(const std::string &document, const std::string &password);

/// A word without the punctuation at its ends, in lower case (ASCII).
std::string bareWord(const std::string &text);

/// Rows of pixels 0x00RRGGBB.
struct Pixels {
  int width = 0, height = 0;
  std::vector<uint32_t> rgb;
  uint32_t at(int x, int y) const {
    return rgb[static_cast<size_t>(y) * static_cast<size_t>(width) + static_cast<size_t>(x)];
  }
};

/// A PNG file; empty when it cannot be read.
Pixels readPng(const std::string &file);
