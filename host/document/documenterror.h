// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Why a document, or one of its pages, cannot be read.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "host/kernel/error.h"

namespace host {

struct DocumentError : HostError {
  enum Reason : uint8_t {
    unreadable,    ///< damaged, or no PDF
    wrongPassword, ///< it is encrypted: a password is needed, or another one
    tooMuchMemory, ///< for its process
    tooLong,       ///< for its process
    processFailed  ///< again and again
  };
  DocumentError(Reason why, const std::string &text) : HostError(tavrel::errDocument, text), reason(why) {}
  Reason reason;
};

/// A file's name in a message: what is no printable UTF-8 is replaced, so that the message is one line.
std::string nameInMessage(const std::filesystem::path &file);

} // namespace host
