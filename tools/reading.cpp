// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "tools/reading.h"

#include "tools/asked.h"

namespace tools {

OpenedDocument openDocument(const std::filesystem::path &file, const std::string &password,
                            const host::ProcessOptions &options) {
  host::Processes processes(options);
  auto service = std::make_shared<host::Service>(file, processes.backend(file));
  host::Opened opened = Asked<host::Opened>(*service, host::OpenRequest{file, password}, host::Urgency::awaited).get();
  return {std::move(service), std::move(opened)};
}

} // namespace tools
