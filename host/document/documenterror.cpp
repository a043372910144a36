// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/documenterror.h"

#include <algorithm>

namespace host {

std::string nameInMessage(const std::filesystem::path &file) {
  std::string name = file.string();
  std::replace_if(
      name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; }, '?');
  return name;
}

} // namespace host
