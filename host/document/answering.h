// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Answers requests with the PDF library, on any thread.
#pragma once

#include <filesystem>
#include <memory>

#include "host/document/descriptor.h"
#include "host/document/messages.h"
#include "host/document/pdf.h"
#include "host/document/service.h"

namespace host {

/// How many sizes are asked for together: of a page and of those that a reader turns to next. All of them at once take
/// 80 ms and 13 MB for 10,000 pages, which a viewer would spend before it shows the first page.
inline constexpr int32_t sizesTogether = 32;

/// Opens a file: the answer, and the document unless that is a failure.
Answer answerOpen(const OpenRequest &request, std::unique_ptr<PdfFile> &opened) noexcept;

/// The same for a file that is open already, which its name only names.
Answer answerOpen(const OpenRequest &request, Descriptor file, std::unique_ptr<PdfFile> &opened) noexcept;

/// The failure that the exception being handled makes of a request about that file; a std::exception.
Failure caughtFailure(const std::filesystem::path &file) noexcept;

/// Answers any request about a file that is open, but for those about its structure. `name` is the file's for messages.
Answer answerFrom(PdfFile &file, const Request &request, const std::filesystem::path &name) noexcept;

/// A backend that answers on the owner's thread, at once: for programs that have nothing else to do.
std::unique_ptr<Backend> answeringAtOnce(std::unique_ptr<PdfFile> file);

} // namespace host
