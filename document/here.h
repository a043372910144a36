// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Documents that are read in this process, for programs that trust their files.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "document/pdf.h"
#include "host/document/document.h"
#include "host/document/service.h"

namespace document {

/// A backend that answers on the owner's thread, at once.
std::unique_ptr<host::Backend> answeringAtOnce(std::unique_ptr<PdfFile> file);

/// The document of a file that is answered for so.
std::unique_ptr<host::Document> documentOf(std::unique_ptr<PdfFile> file);
/// Opens a PDF. Throws DocumentError with one clear line that names the file.
std::unique_ptr<host::Document> openedHere(const std::filesystem::path &file, const std::string &password);

} // namespace document
