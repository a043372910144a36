// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Converts the arguments of a host call into the text of a trace: numbers in decimal, texts in quotes, handles and
// functions by their names in the recording host.
#pragma once

#include <cstdint>
#include <string>
#include <type_traits>

#include "tavrel/TavrelSupport.h"
#include "tavrel/TavrelView.h"

/// Names of addresses, for traces.
std::string nameOfAddress(const void *address);

inline std::string describe(const char *text) {
  return text != nullptr ? std::string("\"").append(text).append("\"") : "null";
}

inline std::string describe(const tavrel::ColorValue *color) {
  if (color == nullptr) return "null";
  std::string text = "color " + std::to_string(color->space);
  for (const tavrel::Fixed component : color->component)
    text += ' ' + std::to_string(component / double{tavrel::fixedOne}).substr(0, 5);
  return text;
}

template <typename T> std::string describe(T value) {
  if constexpr (std::is_integral_v<T>)
    return std::to_string(value);
  else if constexpr (std::is_function_v<std::remove_pointer_t<T>>)
    return nameOfAddress(reinterpret_cast<const void *>(value));
  else
    return value != nullptr ? nameOfAddress(value) : "null";
}
