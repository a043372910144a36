// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Texts of JSON.
#pragma once

#include <string>

#include "viewer/model/place.h"

namespace viewer {

/// A string as JSON has it, in quotation marks. Bytes that are no UTF-8 are U+FFFD.
std::string quoted(const std::string &text);

/// Builds an object or a list.
class Json {
public:
  explicit Json(char open) : text_(1, open), close_(open == '{' ? '}' : ']') {}
  Json &member(const std::string &name, const std::string &json) { return item(quoted(name) + ":" + json); }
  Json &member(const std::string &name, double value);
  Json &text(const std::string &name, const std::string &value) { return member(name, quoted(value)); }
  Json &flag(const std::string &name, bool value) { return member(name, std::string(value ? "true" : "false")); }
  Json &place(const Place &place) {
    return member("x", place.x).member("y", place.y).member("width", place.width).member("height", place.height);
  }
  Json &item(const std::string &json) {
    if (text_.size() > 1) text_ += ',';
    text_ += json;
    return *this;
  }
  std::string done() const { return text_ + close_; }

private:
  std::string text_;
  char close_;
};

} // namespace viewer
