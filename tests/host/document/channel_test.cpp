// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Messages through a socket pair, in pieces, too many, without an end, with descriptors.
#include "host/document/channel.h"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <cstring>
#include <filesystem>
#include <thread>

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
  static std::string message(const std::string &content, uint32_t version = wireVersion) {
    const WireHeader header{version, static_cast<uint32_t>(content.size())};
    return std::string(reinterpret_cast<const char *>(&header), sizeof header) + content;
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

TEST_F(ChannelTest, TooLongAMessageIsInvalidAtOnce) {
  WireHeader header;
  header.size = mostContent + 1;
  write(std::string(reinterpret_cast<const char *>(&header), sizeof header));
  EXPECT_EQ(left->receive().what, Received::invalid);
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
