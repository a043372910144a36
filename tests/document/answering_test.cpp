// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What becomes of the exceptions of the PDF library, and the backend without threads.
#include "document/answering.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>

#include "document/here.h"

namespace document {
namespace {

using host::Answer;
using host::DocumentError;
using host::Failure;
using host::HostError;
using host::Image;
using host::ImageRequest;
using host::Opened;
using host::OpenRequest;
using host::PageSize;
using host::PageText;
using host::PixelSize;
using host::Request;
using host::Service;
using host::SizesRequest;
using host::Ticket;
using host::Urgency;
using host::WordsRequest;

// A file of three pages whose text is `fails`.
class FailingFile final : public PdfFile {
public:
  explicit FailingFile(void (*fails)()) : fails_(fails) {}

  const std::filesystem::path &file() const override { return name_; }
  int32_t pageCount() const override { return 3; }
  PageSize pageSize(int32_t /*page*/) override { return {100, 200}; }
  PageText text(int32_t /*page*/) override {
    fails_();
    return {};
  }
  std::vector<std::u32string> plainWords(int32_t /*page*/) override { return {}; }
  std::vector<uint32_t> contentOrder(int32_t /*page*/, const PageText & /*text*/) override { return {}; }
  Image render(int32_t /*page*/, double /*dpi*/) override { return {1, 1, {0}}; }
  void render(const ImageRequest & /*request*/, std::span<uint32_t> /*pixels*/) override {}

private:
  std::filesystem::path name_ = "paper.pdf";
  void (*fails_)();
};

struct Case {
  const char *name;
  void (*fails)();
  tavrel::ErrorCode code;
  DocumentError::Reason reason;
  const char *line;
};

void PrintTo(const Case &one, std::ostream *out) { *out << one.name; }

class Failures : public testing::TestWithParam<Case> {};

TEST_P(Failures, HaveACodeAndALine) {
  FailingFile file(GetParam().fails);
  const Answer answer = answerFrom(file, WordsRequest{0}, "paper.pdf");
  const auto *failure = std::get_if<Failure>(&answer.value);
  ASSERT_NE(failure, nullptr);
  EXPECT_EQ(failure->code, GetParam().code);
  EXPECT_EQ(failure->reason, GetParam().reason);
  EXPECT_EQ(failure->line, GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(
    OfAPage, Failures,
    testing::Values(Case{"Damaged",
                         [] { throw DocumentError(DocumentError::unreadable, "paper.pdf: page 1 is damaged"); },
                         tavrel::errDocument, DocumentError::unreadable, "paper.pdf: page 1 is damaged"},
                    Case{"Encrypted",
                         [] { throw DocumentError(DocumentError::wrongPassword, "paper.pdf: is encrypted"); },
                         tavrel::errDocument, DocumentError::wrongPassword, "paper.pdf: is encrypted"},
                    Case{"NotThere", [] { throw HostError(tavrel::errBadPage, "paper.pdf: no page 1"); },
                         tavrel::errBadPage, DocumentError::unreadable, "paper.pdf: no page 1"},
                    Case{"NoUtf8", [] { throw std::invalid_argument("not UTF-8"); }, tavrel::errBadArgument,
                         DocumentError::unreadable, "not UTF-8"},
                    Case{"NoMemory", [] { throw std::bad_alloc(); }, tavrel::errNoMemory, DocumentError::unreadable,
                         "paper.pdf: memory is exhausted"},
                    Case{"Unknown", [] { throw std::runtime_error("broken"); }, tavrel::errDocument,
                         DocumentError::unreadable, "paper.pdf: broken"}),
    [](const auto &one) { return one.param.name; });

TEST(Answering, TheStructureIsNotReadInThisProcess) {
  FailingFile file([] {});
  for (const Request &request : {Request(host::StructureRequest{3}), Request(host::PageStructureRequest{0, 3}),
                                 Request(host::AttachmentRequest{0})}) {
    const Answer answer = answerFrom(file, request, "paper.pdf");
    EXPECT_EQ(std::get<Failure>(answer.value).line, "paper.pdf: its structure is not read here");
  }
}

TEST(AnsweringAtOnce, HasTheAnswerBeforeTheNextCall) {
  const auto service =
      std::make_shared<Service>("paper.pdf", document::answeringAtOnce(std::make_unique<FailingFile>([] {})));
  int answers = 0;
  const Ticket ticket = service->ask(ImageRequest{0, 72}, Urgency::ahead, [&](Answer &) { ++answers; });
  EXPECT_FALSE(ticket.underWay());
  EXPECT_EQ(answers, 0);
  service->collect();
  EXPECT_EQ(answers, 1);
}

TEST(AnsweringAtOnce, ForgetsARequestThatIsCancelled) {
  const auto service =
      std::make_shared<Service>("paper.pdf", document::answeringAtOnce(std::make_unique<FailingFile>([] {})));
  int answers = 0;
  Ticket ticket = service->ask(ImageRequest{0, 72}, Urgency::ahead, [&](Answer &) { ++answers; });
  const Ticket other = service->ask(ImageRequest{1, 72}, Urgency::ahead, [&](Answer &) { answers += 10; });
  ticket.reset();
  service->collect();
  EXPECT_EQ(answers, 10);
}

} // namespace
} // namespace document
