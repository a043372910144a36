// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// A process that its owner asks: confined before the first request, and ended with the socket.
#pragma once

#include <functional>

#include "document/confinement.h"
#include "host/document/descriptor.h"
#include "host/document/messages.h"

namespace document {

/// Answers a request; what came with it is the file of an OpenRequest, or the memory of an ImageRequest.
using Answerer = std::function<host::Answer(const host::Request &request, host::Descriptor passed)>;

/// Confines the process, answers until the owner has ended, and ends the process. The first argument is how much memory
/// it may take, in bytes; that an answer takes more is an error of the document, not of the owner.
[[noreturn]] void serve(int argc, char **argv, const Answerer &answerer);

} // namespace document
