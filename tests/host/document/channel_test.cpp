// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Messages through a socket pair, in pieces, too many, without an end, with descriptors.
#include "host/document/channel.h"

#include <gmock/gmock.h>
#include <malloc.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <memory>
#include <thread>
#include <utility>

#include "host/document/wire.h"

namespace host {
namespace {

size_t openDescriptors() {
  const std::filesystem::directory_iterator all("/proc/self/fd");
  return static_cast<size_t>(std::distance(begin(all), end(all)));
}

struct ChannelTest : testing::Test {
  ChannelTest() {
    int ends[2] = {};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) throw std::bad_alloc();
    right = Descriptor(ends[0]);
    left = std::make_unique<Channel>(Descriptor(ends[1]));
  }
  void write(const std::string &bytes) const {
    ASSERT_EQ(::send(right.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL), static_cast<ssize_t>(bytes.size()));
  }
  // How many bytes have been sent and not received yet.
  size_t waiting() const {
    int bytes = -1;
    EXPECT_EQ(ioctl(left->socket(), FIONREAD, &bytes), 0);
    return static_cast<size_t>(bytes);
  }
  static std::string headerFor(size_t length, uint32_t version = wireVersion) {
    const WireHeader header{version, static_cast<uint32_t>(length)};
    return std::string(reinterpret_cast<const char *>(&header), sizeof header);
  }
  static std::string message(const std::string &content, uint32_t version = wireVersion) {
    return headerFor(content.size(), version) + content;
  }

  Descriptor right;
  std::unique_ptr<Channel> left;
};

TEST_F(ChannelTest, AMessageIsThereWhenAllOfItHasCome) {
  const std::string bytes = message("words");
  for (const char c : bytes) {
    EXPECT_EQ(left->receive().what, Received::nothing);
    write({c});
  }
  const Received received = left->receive();
  EXPECT_EQ(received.what, Received::message);
  EXPECT_EQ(received.content, "words");
  EXPECT_EQ(left->receive().what, Received::nothing);
}

TEST_F(ChannelTest, OneMessageFollowsAnother) {
  for (const char *content : {"one", "", "another one"}) {
    write(message(content));
    EXPECT_EQ(left->receive().content, content);
  }
}

TEST_F(ChannelTest, MoreThanOneAtATimeIsInvalid) {
  write(message("one") + "a");
  EXPECT_EQ(left->receive().what, Received::invalid);
}

TEST_F(ChannelTest, AnotherVersionIsInvalid) {
  write(message("one", wireVersion + 1));
  EXPECT_EQ(left->receive().what, Received::invalid);
}

TEST_F(ChannelTest, TheLongestMessageIsAwaited) {
  write(headerFor(mostContent));
  EXPECT_EQ(left->receive().what, Received::nothing);
}

TEST_F(ChannelTest, TooLongAMessageIsInvalidAtOnce) {
  write(headerFor(mostContent + 1));
  EXPECT_EQ(left->receive().what, Received::invalid);
}

// Each part comes with a descriptor, so that the system hands over no two of them at once.
TEST_F(ChannelTest, AMessageInManySmallPartsDoesNotHoldTheReceiverUp) {
  const std::string content(100, 'w'), bytes = message(content);
  Channel sender{std::move(right)};
  for (const char c : bytes)
    ASSERT_TRUE(sender.send({&c, 1}, sender.socket()));
  size_t calls = 0, unread = bytes.size();
  Received received;
  do {
    received = left->receive();
    const size_t before = std::exchange(unread, waiting());
    EXPECT_LE(before - unread, bytes.size() / 4) << "by one call";
    ++calls;
  } while (received.what == Received::nothing && calls < bytes.size());
  EXPECT_EQ(received.what, Received::message);
  EXPECT_EQ(received.content, content);
}

// The receiver waits until its socket is readable, so a complete message must not stay unread.
TEST_F(ChannelTest, AMessageInAnyNumberOfPartsIsCompleteWithItsLastOne) {
  for (size_t length = 0; length < 40; ++length) {
    const std::string content(length, 'w');
    int ends[2] = {};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    Channel sender{Descriptor(ends[0])}, receiver{Descriptor(ends[1])};
    for (const char byte : message(content)) // each with a descriptor, so that it is received alone
      ASSERT_TRUE(sender.send({&byte, 1}, sender.socket()));
    Received received;
    pollfd ready{receiver.socket(), POLLIN, 0};
    while (received.what == Received::nothing && poll(&ready, 1, 0) > 0)
      received = receiver.receive();
    EXPECT_EQ(received.what, Received::message) << length;
    EXPECT_EQ(received.content, content);
  }
}

TEST_F(ChannelTest, ALongMessageIsSentWhileItIsReceived) {
  const std::string content(3'000'000, 'w');
  std::thread sender([&] {
    Channel channel{std::move(right), Channel::Takes::descriptors};
    EXPECT_TRUE(channel.send(message(content)));
  });
  const Received received = left->await();
  sender.join();
  EXPECT_EQ(received.what, Received::message);
  EXPECT_TRUE(received.content == content);
}

TEST_F(ChannelTest, TheMemoryOfALongMessageIsGivenBack) {
  const auto allocated = [] {
    const struct mallinfo2 all = mallinfo2();
    return all.uordblks + all.hblkhd;
  };
  const size_t before = allocated();
  const auto block = std::make_unique<std::string>(1'000'000, 'w');
  if (allocated() < before + block->size()) GTEST_SKIP() << "the allocator is another one, which is not counted";
  std::thread sender([&] {
    Channel channel{std::move(right), Channel::Takes::descriptors};
    EXPECT_TRUE(channel.send(message(std::string(3'000'000, 'w'))));
  });
  EXPECT_EQ(left->await().what, Received::message);
  sender.join();
  EXPECT_GT(allocated(), before + 3'000'000);
  left->receive();
  EXPECT_LT(allocated(), before + 2'000'000);
}

TEST_F(ChannelTest, WaitingTakesNoProcessorTime) {
  const auto used = [] {
    timespec time{};
    EXPECT_EQ(clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time), 0);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
  };
  std::chrono::nanoseconds usedWaiting{};
  std::thread receiver([&] {
    const auto before = used();
    EXPECT_EQ(left->await().content, "late");
    usedWaiting = used() - before;
  });
  poll(nullptr, 0, 200); // milliseconds, in which it could use as many
  write(message("late"));
  receiver.join();
  EXPECT_LT(usedWaiting, std::chrono::milliseconds(20));
}

TEST_F(ChannelTest, SignalsDoNotInterruptAMessage) {
  static std::atomic<int> s_signals;
  struct sigaction counting {
  }, before{};
  counting.sa_handler = [](int) { ++s_signals; };
  ASSERT_EQ(sigaction(SIGUSR1, &counting, &before), 0);
  const std::string content(3'000'000, 'w');
  std::thread sender([&] {
    Channel channel{std::move(right), Channel::Takes::descriptors};
    EXPECT_TRUE(channel.send(message(content)));
  });
  for (int signals = 0; signals < 20; ++signals) { // while nobody reads
    pthread_kill(sender.native_handle(), SIGUSR1);
    for (int waits = 0; waits < 1000 && (waits == 0 || s_signals <= signals); ++waits)
      poll(nullptr, 0, 1);
  }
  const Received received = left->await();
  sender.join();
  EXPECT_TRUE(received.content == content);
  sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(ChannelTest, TheOwnerDoesNotWaitForAProcessThatDoesNotRead) {
  EXPECT_FALSE(left->send(message(std::string(3'000'000, 'w'))));
}

TEST_F(ChannelTest, TheEndComesAfterTheLastMessage) {
  write(message("last"));
  right = {};
  EXPECT_EQ(left->receive().content, "last");
  EXPECT_EQ(left->receive().what, Received::ended);
  EXPECT_FALSE(left->send(message("none")));
}

TEST_F(ChannelTest, ADescriptorComesWithItsMessage) {
  Channel taking{std::move(right), Channel::Takes::descriptors};
  ASSERT_TRUE(left->send(message("without")));
  EXPECT_FALSE(taking.await().descriptor);
  ASSERT_TRUE(left->send(message("with"), left->socket()));
  const Received received = taking.await();
  EXPECT_EQ(received.content, "with");
  struct stat sent {
  }, got{};
  ASSERT_EQ(fstat(left->socket(), &sent), 0);
  ASSERT_EQ(fstat(received.descriptor.number(), &got), 0);
  EXPECT_EQ(got.st_ino, sent.st_ino);
}

TEST_F(ChannelTest, TheOwnerTakesNoDescriptors) {
  Channel sender{std::move(right)};
  const size_t before = openDescriptors();
  ASSERT_TRUE(sender.send(message("with"), sender.socket()));
  const Received received = left->await();
  EXPECT_EQ(received.content, "with");
  EXPECT_FALSE(received.descriptor);
  EXPECT_EQ(openDescriptors(), before);
}

} // namespace
} // namespace host
