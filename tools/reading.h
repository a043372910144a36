// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Opens the document of a command, which other processes read.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "host/document/processes.h"

namespace tools {

/// A document that has been opened.
struct OpenedDocument {
  std::shared_ptr<host::Service> service; ///< its end ends the processes
  host::Opened opened;
};

/// Opens a document. Throws DocumentError if it cannot be read, HostError if its process cannot be started, with one
/// clear line that names the file.
OpenedDocument openDocument(const std::filesystem::path &file, const std::string &password,
                            const host::ProcessOptions &options);

} // namespace tools
