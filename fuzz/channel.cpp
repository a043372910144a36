// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What the owner of a document's process receives, in parts as the process sends them. The owner waits until its
// socket is readable, so a complete message must be received then; and only a complete message is one.
//
// Input: a byte for the length of each part, and the parts, one after the other.
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "fuzz/require.h"
#include "host/document/channel.h"
#include "host/document/wire.h"

namespace {

using namespace host;

// The first message in the bytes, with its header; empty if they begin with none that is complete.
std::string_view firstOf(std::string_view bytes) {
  WireHeader header;
  if (bytes.size() < sizeof header) return {};
  std::memcpy(&header, bytes.data(), sizeof header);
  const bool isValid = header.version == wireVersion && header.size <= mostContent;
  return isValid && bytes.size() - sizeof header >= header.size ? bytes.substr(0, sizeof header + header.size)
                                                                : std::string_view();
}

// Receives as long as there is something to read.
Received next(Channel &channel) {
  Received received;
  pollfd ready{channel.socket(), POLLIN, 0};
  while (received.what == Received::nothing && poll(&ready, 1, 0) > 0)
    received = channel.receive();
  return received;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
  constexpr size_t longest = 64 << 10; // what fits into a socket
  int ends[2] = {};
  if (socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0) return 0;
  Channel owner{Descriptor(ends[0])};
  const Descriptor process(ends[1]);
  std::string_view input(reinterpret_cast<const char *>(data), std::min(size, longest));
  std::string sent; // since the last message
  bool isOver = false;
  while (!isOver && input.size() > 1) {
    const std::string_view part = input.substr(1, static_cast<uint8_t>(input[0]) + 1);
    input.remove_prefix(1 + part.size());
    if (write(process.number(), part.data(), part.size()) != static_cast<ssize_t>(part.size())) break;
    sent += part;
    const Received received = next(owner);
    const std::string_view message = firstOf(sent);
    if (received.what == Received::message) {
      require(!message.empty() && message.size() == sent.size(), "what is received is one message");
      require(received.content == message.substr(sizeof(WireHeader)), "its content is what was sent");
      sent.clear();
    } else {
      require(message.empty() || received.what == Received::invalid, "a complete message is received or refused");
      isOver = received.what != Received::nothing;
    }
  }
  return 0;
}
