// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Documents opened with a page and a highlight file, which the highlight plug-in reads.
#include "Plugins.h"

namespace {

using namespace tavrel;

constexpr char twoPages[] = "<XML>\n<Body Units=\"words\" mode=\"active\">\n<highlights>\n<loc pg=1 pos=0 len=1>\n"
                            "<loc pg=3 pos=1 len=1>\n</highlights>\n</Body>\n</XML>\n";
constexpr char noPages[] = "<XML>\n<Body>\n</Body>\n</XML>\n";

class OpenedWithHits : public test::Plugins {
protected:
  int32_t pageShown() const { return document->view->page(); }
  uint32_t hits() const { return TavrelGLT::HLL_GetWordCount(TavrelGLT::GLT_GetHLL(doc)); }
};

TEST_F(OpenedWithHits, TheHitsAreMarked) {
  scratch.write("hits.xml", twoPages);
  testing::internal::CaptureStderr();
  open("xml=hits.xml");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(hits(), 2U);
  EXPECT_EQ(pageShown(), 1) << "the first page with hits";
  EXPECT_EQ(app.draw(*document)->marks, 1U);
  EXPECT_EQ(app.statusText(), "hit 1 of 2, page 1 of 2");
  EXPECT_EQ(reports, std::vector<std::string>{});
}

TEST_F(OpenedWithHits, AFileWithAnXmlDeclarationIsReadLikewise) {
  scratch.write("hits.xml", std::string("<?xml version=\"1.0\"?>\n") + twoPages);
  open("xml=hits.xml");
  EXPECT_EQ(hits(), 2U);
}

TEST_F(OpenedWithHits, APageThatTheAddressNamesIsShownInsteadOfTheFirstHit) {
  scratch.write("hits.xml", twoPages);
  for (const char *parameters : {"page=3&xml=hits.xml", "xml=hits.xml&page=3"}) {
    open(parameters);
    EXPECT_EQ(pageShown(), 2) << parameters;
    EXPECT_EQ(hits(), 2U) << parameters;
  }
  open("page=4&xml=hits.xml");
  EXPECT_EQ(app.draw(*document)->marks, 1U);
  EXPECT_EQ(app.statusText(), "hit 2 of 2, page 2 of 2");
}

TEST_F(OpenedWithHits, WithoutAValidPageTheFirstHitIsShown) {
  scratch.write("hits.xml", twoPages);
  testing::internal::CaptureStderr();
  open("page=x&xml=hits.xml");
  testing::internal::GetCapturedStderr();
  EXPECT_EQ(pageShown(), 1);
}

TEST_F(OpenedWithHits, AFileThatMarksNothingIsReported) {
  const std::string file = scratch.write("hits.xml", noPages);
  testing::internal::CaptureStderr();
  open("xml=hits.xml");
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "tavrel: " + file + ": it marks nothing in " + std::string(scratch.path() / "test.pdf") + "\n");
  EXPECT_EQ(app.statusText(), "hits.xml: it marks nothing in test.pdf");
  EXPECT_EQ(TavrelGLT::GLT_GetHLL(doc), nullptr);
}

TEST_F(OpenedWithHits, ATruncatedFileThatMarksNothingIsReportedAsTruncated) {
  const std::string complete = twoPages;
  scratch.write("hits.xml", complete.substr(0, complete.find("</highlights>")));
  testing::internal::CaptureStderr();
  open("xml=hits.xml");
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(app.statusText(), "hits.xml: the file is truncated and marks nothing in test.pdf");
}

TEST_F(OpenedWithHits, AnEmptyFileMarksNothing) {
  scratch.write("hits.xml", "");
  testing::internal::CaptureStderr();
  open("xml=hits.xml");
  EXPECT_NE(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(app.statusText(), "hits.xml: it marks nothing in test.pdf");
}

TEST_F(OpenedWithHits, OtherDocumentsKeepTheirs) {
  scratch.write("hits.xml", twoPages);
  open("xml=hits.xml");
  const Doc marked = doc;
  open();
  EXPECT_EQ(TavrelGLT::GLT_GetHLL(doc), nullptr);
  EXPECT_NE(TavrelGLT::GLT_GetHLL(marked), nullptr);
}

} // namespace
