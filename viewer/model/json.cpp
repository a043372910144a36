// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "viewer/model/json.h"

#include <cstdio>

#include "viewer/model/onelinetext.h"

namespace viewer {

std::string quoted(const std::string &text) {
  std::string json = "\"";
  for (const char c : validUtf8(text)) {
    char code[8];
    std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned char>(c));
    if (c == '"' || c == '\\')
      json += {'\\', c};
    else if (static_cast<unsigned char>(c) < ' ')
      json += code;
    else
      json += c;
  }
  return json + "\"";
}

Json &Json::member(const std::string &name, double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.10g", value);
  return member(name, std::string(text));
}

} // namespace viewer
