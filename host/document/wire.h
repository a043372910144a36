// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Requests and answers as bytes, for the socket between a document's process and its owner. Both are of one build and
// on one machine, so numbers have its byte order. What is read may be anything: a hostile file may have taken over the
// process that wrote it.
//
// A message is a header and its content. wire.cpp says once, for both directions, what the content is made of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "host/document/messages.h"

namespace host {

/// Changes with every change of the layout.
inline constexpr uint32_t wireVersion = 4;

/// Of a message's content. The words of a page with a million characters take 40 MB.
inline constexpr size_t mostContent = size_t{64} << 20;

/// Of the values that are read from one, whatever they are. Those words take about as much as their bytes.
inline constexpr size_t mostMemory = 3 * mostContent;

struct WireHeader {
  uint32_t version = wireVersion;
  uint32_t size = 0; ///< of the content, in bytes
};

/// A complete message. Throws std::length_error for more than `mostContent`.
std::string messageOf(const Request &request);
/// The pixels of an image are not in it: they are in shared memory. Nor is what the owner finds out for itself.
std::string messageOf(const Answer &answer);

/// What a message's content says; nothing if it is not exactly that. An answer needs `fits` besides. It takes at
/// most `mostMemory`. Throws std::bad_alloc.
std::optional<Request> requestIn(std::string_view content);
std::optional<Answer> answerIn(std::string_view content);

} // namespace host
