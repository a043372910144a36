// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/documenterror.h"

#include "host/document/utf8.h"

namespace host {

std::string nameInMessage(const std::filesystem::path &file) { return printable(file.native()); }

} // namespace host
