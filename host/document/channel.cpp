// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
#include "host/document/channel.h"

#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "host/document/wire.h"

namespace host {
namespace {

// Memory is taken as bytes come, whatever a header claims.
constexpr size_t readAtOnce = 256 << 10;

// The control data of one descriptor.
union Control {
  cmsghdr header;
  char bytes[CMSG_SPACE(sizeof(int))];
};

// How many bytes the message has that begins so; nothing if that is not known yet, 0 for no valid header.
std::optional<size_t> lengthOf(std::string_view bytes) {
  WireHeader header;
  if (bytes.size() < sizeof header) return std::nullopt;
  std::memcpy(&header, bytes.data(), sizeof header);
  return header.version == wireVersion && header.size <= mostContent ? sizeof header + header.size : 0;
}

} // namespace

bool Channel::send(std::string_view message, int descriptor) noexcept {
  while (!message.empty()) {
    iovec part{const_cast<char *>(message.data()), message.size()};
    msghdr header{};
    header.msg_iov = &part;
    header.msg_iovlen = 1;
    Control control{};
    if (descriptor >= 0) {
      header.msg_control = &control;
      header.msg_controllen = sizeof control;
      control.header = {CMSG_LEN(sizeof descriptor), SOL_SOCKET, SCM_RIGHTS};
      std::memcpy(CMSG_DATA(&control.header), &descriptor, sizeof descriptor);
    }
    const ssize_t sent = sendmsg(socket_.number(), &header, MSG_NOSIGNAL | (isOwner() ? MSG_DONTWAIT : 0));
    if (sent < 0 && errno == EINTR) continue;
    if (sent < 0) return false;
    message.remove_prefix(static_cast<size_t>(sent));
    descriptor = -1; // sent with the first byte
  }
  return true;
}

Channel::Read Channel::read() {
  const size_t before = bytes_.size();
  const size_t wanted = std::min(lengthOf(bytes_).value_or(sizeof(WireHeader)) + 1 - before, readAtOnce);
  bytes_.resize(before + wanted);
  iovec part{bytes_.data() + before, wanted};
  msghdr header{};
  header.msg_iov = &part;
  header.msg_iovlen = 1;
  Control control{};
  if (takes_ == Takes::descriptors) {
    header.msg_control = &control;
    header.msg_controllen = sizeof control;
  }
  ssize_t length = 0;
  do
    length = recvmsg(socket_.number(), &header, MSG_CMSG_CLOEXEC | MSG_DONTWAIT);
  while (length < 0 && errno == EINTR);
  const bool none = length < 0 && errno == EAGAIN;
  bytes_.resize(before + static_cast<size_t>(std::max<ssize_t>(length, 0)));
  if (header.msg_controllen >= CMSG_LEN(sizeof(int)) && control.header.cmsg_type == SCM_RIGHTS) {
    int number = -1;
    std::memcpy(&number, CMSG_DATA(&control.header), sizeof number);
    passed_ = Descriptor(number);
  }
  return length > 0 ? Read::some : none ? Read::none : Read::end;
}

Received Channel::receive() {
  constexpr size_t kept = 1 << 20; // bytes; a larger message is rare
  constexpr int mostReads = 16;    // so that one who sends byte by byte does not hold the caller up
  if (std::exchange(taken_, false)) {
    bytes_.clear();
    if (bytes_.capacity() > kept) bytes_.shrink_to_fit();
  }
  for (int reads = 0;; ++reads) {
    const std::optional<size_t> length = lengthOf(bytes_);
    if (length && (*length == 0 || bytes_.size() > *length)) return {Received::invalid};
    const bool isComplete = length && bytes_.size() == *length;
    if (reads >= mostReads && !isComplete) return {Received::nothing}; // after a complete one nothing may follow
    const Read state = read();
    if (state == Read::some) continue;
    if (isComplete) {
      taken_ = true;
      return {Received::message, std::string_view(bytes_).substr(sizeof(WireHeader)), std::move(passed_)};
    }
    return {state == Read::end ? Received::ended : Received::nothing};
  }
}

Received Channel::await() {
  for (;;) {
    Received received = receive();
    if (received.what != Received::nothing) return received;
    pollfd ready{socket(), POLLIN, 0};
    poll(&ready, 1, -1);
  }
}

} // namespace host
