// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Answers requests with the PDF library.
#pragma once

#include <filesystem>
#include <memory>
#include <span>

#include "document/pdf.h"
#include "host/document/messages.h"

namespace document {

/// Opens the document of a file, which its name only names: the answer, and the document unless that is a failure. The
/// descriptor may be closed afterwards.
host::Answer answerOpen(const host::OpenRequest &request, int descriptor, std::unique_ptr<PdfFile> &opened) noexcept;

/// The failure that the exception being handled makes of a request about that file; a std::exception.
host::Failure caughtFailure(const std::filesystem::path &file) noexcept;

/// Answers any request about a file that is open, but for those about its structure. `name` is the file's for messages.
/// If there is memory for the pixels of an ImageRequest, they are written into it, and are not in the answer.
host::Answer answerFrom(PdfFile &file, const host::Request &request, const std::filesystem::path &name,
                        std::span<uint32_t> pixels = {}) noexcept;

} // namespace document
