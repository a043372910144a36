// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// One end of the socket between a document's process and its owner: messages, some with a file descriptor.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "host/document/descriptor.h"

namespace host {

/// What has been received.
struct Received {
  enum What {
    nothing, ///< no complete message yet
    message,
    ended,  ///< the other end is closed
    invalid ///< no message of this version, too long a one, or more than one
  };
  What what = nothing;
  std::string_view content = {}; ///< until the next call
  Descriptor descriptor = {};    ///< that came with the message, if one did
};

class Channel {
public:
  /// Whether descriptors that come with messages are taken. The owner takes none from a document's process: they would
  /// stay open.
  enum class Takes { messages, descriptors };
  explicit Channel(Descriptor socket, Takes takes = Takes::messages) : socket_(std::move(socket)), takes_(takes) {}

  int socket() const { return socket_.number(); }

  /// Sends a complete message, and a descriptor unless it is negative. A document's process waits where the other end
  /// has to read first; its owner does not. False if the other end is closed, or does not read.
  bool send(std::string_view message, int descriptor = -1) noexcept;
  /// What has come, without waiting; of a long message the next part, as long as there is more. One message is followed
  /// by the next only after an answer: more is invalid.
  Received receive();
  /// Whether a part of a message has come, after receive().
  bool isReceiving() const { return !taken_ && !bytes_.empty(); }
  /// Waits for a message or the end.
  Received await();

private:
  bool isOwner() const { return takes_ == Takes::messages; }
  enum class Read { some, none, end };
  Read read();

  Descriptor socket_;
  Takes takes_;
  Descriptor passed_;  ///< received with the message that is being read
  std::string bytes_;  ///< of the message that is being read, with its header
  bool taken_ = false; ///< `bytes_` has been handed out
};

} // namespace host
