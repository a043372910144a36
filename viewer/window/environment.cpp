// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/window/environment.h"

#include <langinfo.h>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "viewer/model/smallfile.h"

namespace viewer {
namespace {

// Texts are UTF-8 in any locale: a plain "C" would show a question mark for every umlaut.
void chooseLocale() {
  std::setlocale(LC_CTYPE, "");
  if (std::strcmp(nl_langinfo(CODESET), "UTF-8") != 0) std::setlocale(LC_CTYPE, "C.UTF-8");
}

// Has Xlib cache the table of compose sequences: reading it takes a tenth of the time until the first page is shown.
void keepComposedKeys() {
  std::filesystem::path directory = absoluteVariable("XDG_CACHE_HOME");
  if (const auto home = absoluteVariable("HOME"); directory.empty() && !home.empty()) directory = home / ".cache";
  if (directory.empty()) return;
  std::error_code failed; // then the table is read each time
  directory /= "tavrel/compose";
  std::filesystem::create_directories(directory, failed);
  if (!failed) setenv("XCOMPOSECACHE", directory.c_str(), 0);
}

} // namespace

void prepareEnvironment() {
  chooseLocale();
  keepComposedKeys();
}

} // namespace viewer
