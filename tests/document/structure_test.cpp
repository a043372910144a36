// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// What a document says about itself: its title, labels, outline and attached files.
#include "document/structure.h"

#include "StructureTest.h"
#include "host/document/documenterror.h"

namespace document {
namespace {

using host::PageTarget;
using host::Target;
using test::pdfBytes;
using test::pdfString;
using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

std::vector<test::PdfPage> somePages(size_t count) { return std::vector<test::PdfPage>(count); }

// ---- metadata ----

TEST_F(StructureTest, TheMetadataAreLinesAndTimes) {
  test::PdfParts parts;
  parts.information = "/Title " + pdfString(U"Gr\u00F6\u00DFe\n\U0001F600") +
                      " /Author (A) /Subject (S) /Keywords (K) /Creator (C) /Producer (P)"
                      " /CreationDate (D:20240229120000+02'00') /ModDate (D:19700101000001Z)";
  write(somePages(1), parts);
  const host::Metadata data = structure().metadata;
  EXPECT_EQ(data.title, "Gr\u00F6\u00DFe \U0001F600");
  EXPECT_EQ(data.author + data.subject + data.keywords + data.creator + data.producer, "ASKCP");
  EXPECT_EQ(data.created, 1709200800);
  EXPECT_EQ(data.modified, 1);
  EXPECT_EQ(data.format, "PDF-1.5");
}

TEST_F(StructureTest, WithoutMetadataThereAreNone) {
  write(somePages(1));
  const host::Metadata data = structure().metadata;
  EXPECT_EQ(data.title + data.author + data.producer, "");
  EXPECT_FALSE(data.created || data.modified);
}

TEST_F(StructureTest, ADateThatIsNoneIsNotGiven) {
  for (const char *date : {"yesterday", "D:99999999999999", "D:", "D:20241345"}) {
    test::PdfParts parts;
    parts.information = std::string("/CreationDate (") + date + ")";
    write(somePages(1), parts);
    EXPECT_FALSE(structure().metadata.created) << date;
  }
}

class Titles : public StructureTest, public testing::WithParamInterface<std::pair<std::string, std::string>> {};

TEST_P(Titles, AreValidLines) {
  test::PdfParts parts;
  parts.information = "/Title " + GetParam().first;
  write(somePages(1), parts);
  EXPECT_EQ(structure().metadata.title, GetParam().second);
}

INSTANTIATE_TEST_SUITE_P(Hostile, Titles,
                         testing::Values(std::pair("<FEFFD83D>", ""),         // half a surrogate pair
                                         std::pair("<FEFF0041DE000042>", ""), // the other half
                                         std::pair("<FEFF00>", ""),           // half a unit
                                         std::pair("<410A0D42>", "A  B"),
                                         std::pair(pdfBytes(std::string(10'000, 'a')), std::string(4096, 'a')),
                                         std::pair("42", "")));

// ---- labels ----

TEST_F(StructureTest, LabelsAreThoseOfAllPages) {
  test::PdfParts parts;
  parts.catalog = "/PageLabels << /Nums [0 << /S /r >> 2 << /S /D /P (A-) /St 7 >>] >>";
  write(somePages(4), parts);
  EXPECT_THAT(structure().labels, ElementsAre("i", "ii", "A-7", "A-8"));
}

TEST_F(StructureTest, LabelsThatAreTheNumbersAreNone) {
  test::PdfParts parts;
  parts.catalog = "/PageLabels << /Nums [0 << /S /D >>] >>";
  write(somePages(3), parts);
  EXPECT_THAT(structure().labels, IsEmpty());
  write(somePages(3));
  EXPECT_THAT(structure().labels, IsEmpty());
}

TEST_F(StructureTest, ALabelIsALineThatEnds) {
  test::PdfParts parts;
  parts.catalog = "/PageLabels << /Nums [0 << /P " + pdfBytes("a\n" + std::string(10'000, 'b')) + " >>] >>";
  write(somePages(1), parts);
  EXPECT_THAT(structure().labels, ElementsAre("a " + std::string(4094, 'b')));
}

// ---- the outline ----

const PageTarget *onPage(const Target &target) { return std::get_if<PageTarget>(&target); }

TEST_F(StructureTest, TheOutlineIsItsEntriesWithTheirDepths) {
  test::PdfParts parts;
  addOutline(parts, {{0, "(one)", "/Dest [{page 0} /Fit] /Count 2"},
                     {1, pdfString(U"\u4E00"), "/Dest [{page 1} /Fit]"},
                     {2, "(three)"},
                     {0, "(four)"}});
  write(somePages(2), parts);
  const auto outline = structure().outline;
  ASSERT_THAT(outline, SizeIs(4));
  const auto summary = [&](size_t i) { return std::to_string(outline[i].depth) + " " + outline[i].title; };
  EXPECT_EQ(summary(0), "0 one");
  EXPECT_EQ(summary(1), "1 \u4E00");
  EXPECT_EQ(summary(2), "2 three");
  EXPECT_EQ(summary(3), "0 four");
  EXPECT_TRUE(outline[0].isOpen);
  EXPECT_FALSE(outline[1].isOpen);
  ASSERT_NE(onPage(outline[1].target), nullptr);
  EXPECT_EQ(onPage(outline[1].target)->page, 1);
  EXPECT_TRUE(std::holds_alternative<std::monostate>(outline[2].target));
}

TEST_F(StructureTest, ADocumentWithoutAnOutlineHasNoEntries) {
  write(somePages(1));
  EXPECT_THAT(structure().outline, IsEmpty());
}

struct OutlineTest : StructureTest {
  // An outline of one entry, which leads there; further entries of the catalog.
  Target target(const std::string &entries, const std::string &catalog = {}) {
    test::PdfParts parts;
    parts.catalog = catalog;
    addOutline(parts, {{0, "(entry)", entries}});
    write(somePages(3), parts);
    const auto outline = structure().outline;
    EXPECT_THAT(outline, SizeIs(1));
    return outline.empty() ? Target() : outline[0].target;
  }
  PageTarget pageTarget(const std::string &destination, const std::string &catalog = {}) {
    const Target found = target("/Dest " + destination, catalog);
    EXPECT_NE(onPage(found), nullptr) << destination;
    return onPage(found) != nullptr ? *onPage(found) : PageTarget{-1};
  }
};

TEST_F(OutlineTest, ADestinationHasWhatItsKindSays) {
  const PageTarget all = pageTarget("[{page 2} /XYZ 10 20 1.5]");
  EXPECT_EQ(all.page, 2);
  EXPECT_EQ(all.left, 10);
  EXPECT_EQ(all.top, 20);
  EXPECT_EQ(all.zoom, 1.5);
  const PageTarget none = pageTarget("[{page 1} /XYZ null null 0]");
  EXPECT_FALSE(none.left || none.top || none.zoom);
  const PageTarget page = pageTarget("[{page 1} /Fit]");
  EXPECT_FALSE(page.left || page.top || page.zoom);
  const PageTarget across = pageTarget("[{page 1} /FitH 30]");
  EXPECT_EQ(across.top, 30);
  EXPECT_FALSE(across.left || across.zoom);
  const PageTarget down = pageTarget("[{page 1} /FitBV 40]");
  EXPECT_EQ(down.left, 40);
  EXPECT_FALSE(down.top || down.zoom);
  const PageTarget area = pageTarget("[{page 1} /FitR 1 2 3 4]");
  EXPECT_EQ(area.left, 1);
  EXPECT_EQ(area.top, 4);
}

TEST_F(OutlineTest, ADestinationMayHaveAName) {
  EXPECT_EQ(pageTarget("(there)", "/Names << /Dests << /Names [(there) [{page 2} /XYZ 5 6 0]] >> >>").left, 5);
  EXPECT_EQ(pageTarget("/There", "/Dests << /There [{page 1} /Fit] >>").page, 1);
}

TEST_F(OutlineTest, ADestinationMayHaveThePagesNumber) { EXPECT_EQ(pageTarget("[1 /Fit]").page, 1); }

TEST_F(OutlineTest, WhatIsNotThereIsNoTarget) {
  for (const char *entries :
       {"/Dest [999 /Fit]", "/Dest [3 /Fit]", "/Dest [-1 /Fit]", "/Dest [999 0 R /Fit]", "/Dest (nowhere)",
        "/Dest [2147483647 /Fit]", "/Dest 42", "/Dest []", "/A << /S /GoTo >>", "/A << /S /GoToR /D [0 /Fit] >>",
        "/A << /S /URI /URI () >>", "/A << /S /Unknown >>", "/A << /S /JavaScript /JS (app.alert\\(1\\)) >>"})
    EXPECT_TRUE(std::holds_alternative<std::monostate>(target(entries))) << entries;
}

TEST_F(OutlineTest, PositionsBeyondAllPagesAreNotGiven) {
  const PageTarget far = pageTarget("[{page 1} /XYZ 99999999999999999999 -99999999999999999999 99999999999999999999]");
  EXPECT_FALSE(far.left || far.top || far.zoom);
  EXPECT_EQ(pageTarget("[{page 1} /XYZ -7 100000 -2]").left, -7);
}

TEST_F(OutlineTest, AUriIsOfPrintableAscii) {
  const auto uri = [this](const std::string &bytes) {
    const Target found = target("/A << /S /URI /URI " + pdfBytes(bytes) + " >>");
    const auto *is = std::get_if<host::UriTarget>(&found);
    return is == nullptr ? "" : is->uri;
  };
  EXPECT_EQ(uri("http://a.example/?b=c#d"), "http://a.example/?b=c#d");
  EXPECT_EQ(uri("http://a.example/b c\n\xFC\x7F"), "http://a.example/b%20c%0A%FC%7F");
  EXPECT_EQ(uri("a:" + std::string(4094, 'b')), "a:" + std::string(4094, 'b'));
  EXPECT_EQ(uri("a:" + std::string(4095, 'b')), "");
}

TEST_F(OutlineTest, AnotherFileIsNamedWithItsDestination) {
  const auto fileTarget = [this](const std::string &action) {
    const Target found = target("/A << " + action + " >>");
    const auto *is = std::get_if<host::FileTarget>(&found);
    return is == nullptr ? host::FileTarget() : *is;
  };
  const auto numbered = fileTarget("/S /GoToR /F (dir/b.pdf) /D [4 /Fit]");
  EXPECT_EQ(numbered.file, "dir/b.pdf");
  EXPECT_EQ(numbered.page, 4);
  EXPECT_EQ(numbered.destination, "");
  const auto named = fileTarget("/S /GoToR /F " + pdfString(U"\u00E4\n.pdf") + " /D (there)");
  EXPECT_EQ(named.file, "\u00E4 .pdf");
  EXPECT_EQ(named.destination, "there");
  EXPECT_FALSE(named.page);
  EXPECT_EQ(fileTarget("/S /Launch /F (c.pdf)").file, "c.pdf");
}

TEST_F(OutlineTest, AnActionOfTheReaderIsNamed) {
  EXPECT_EQ(std::get<host::ActionTarget>(target("/A << /S /Named /N /NextPage >>")).name, "NextPage");
}

TEST_F(StructureTest, AnOutlineThatNeverEndsIsReadOnce) {
  test::PdfParts parts;
  parts.catalog = "/Outlines {object 0}";
  parts.objects = {"<< /First {object 1} >>", "<< /Title (a) /First {object 2} /Next {object 1} >>",
                   "<< /Title (b) /First {object 1} /Next {object 2} >>"};
  write(somePages(1), parts);
  const auto outline = structure().outline;
  ASSERT_THAT(outline, testing::Not(IsEmpty()));
  EXPECT_EQ(outline[0].title, "a");
}

// Two entries on each level, which share what is below them: 2 to the power of 40 entries.
TEST_F(StructureTest, AnOutlineThatRepeatsItselfHasABound) {
  test::PdfParts parts;
  parts.catalog = "/Outlines {object 0}";
  const auto object = [](size_t index) { return "{object " + std::to_string(index) + "}"; };
  parts.objects = {"<< /First {object 1} >>"};
  for (size_t level = 0; level < 40; ++level) {
    const size_t first = parts.objects.size();
    const std::string below = level < 39 ? " /First " + object(first + 2) : "";
    parts.objects.push_back("<< /Title (a) /Next " + object(first + 1) + below + " >>");
    parts.objects.push_back("<< /Title (b) " + below + " >>");
  }
  write(somePages(1), parts);
  EXPECT_THAT(structure().outline, SizeIs(host::most::outline));
}

TEST_F(StructureTest, ADeepOutlineHasAsManyLevelsAsAreTaken) {
  std::vector<test::PdfOutlineEntry> deep;
  for (int depth = 0; depth < 10'000; ++depth)
    deep.push_back({depth, "(a)"});
  test::PdfParts parts;
  addOutline(parts, deep);
  write(somePages(1), parts);
  const auto outline = structure().outline;
  ASSERT_THAT(outline, SizeIs(host::most::depth));
  EXPECT_EQ(outline.back().depth, host::most::depth - 1);
}

// ---- attached files ----

TEST_F(StructureTest, AttachedFilesAreListedAndRead) {
  test::PdfParts parts;
  addAttachments(parts, {{"a.txt", "hello", "/Desc (greeting)", "/Subtype /text#2Fplain /Params << /Size 5 >>"},
                         {"b", std::string("\0\xFF\n", 3)}});
  write(somePages(1), parts);
  const auto files = structure().attachments;
  ASSERT_THAT(files, SizeIs(2));
  EXPECT_EQ(files[0].name, "a.txt");
  EXPECT_EQ(files[0].description, "greeting");
  EXPECT_EQ(files[0].type, "text/plain");
  EXPECT_EQ(files[0].size, 5U);
  EXPECT_EQ(files[1].type, "");
  EXPECT_FALSE(files[1].size);
  EXPECT_EQ(get<host::AttachedFile>(host::AttachmentRequest{0}).bytes, "hello");
  EXPECT_EQ(get<host::AttachedFile>(host::AttachmentRequest{1}).bytes, std::string("\0\xFF\n", 3));
}

TEST_F(StructureTest, AFileThatIsNotAttachedIsAnError) {
  write(somePages(1));
  EXPECT_THAT(structure().attachments, IsEmpty());
  for (const uint32_t index : {0U, 9'999U, UINT32_MAX})
    EXPECT_EQ(error(host::AttachmentRequest{index}),
              "paper.pdf: no attached file " + std::to_string(uint64_t{index} + 1));
}

// 128 bytes "a" for every two.
std::string unpacksTo(size_t bytes) {
  std::string packed;
  for (size_t i = 0; i < bytes / 128; ++i)
    packed += "\x81"
              "a";
  return packed;
}

TEST_F(StructureTest, AnAttachedFileIsReadUpToItsLimit) {
  const std::string entries = "/Filter /RunLengthDecode /Params << /Size 1 >>";
  test::PdfParts parts;
  addAttachments(parts, {{"a", unpacksTo(host::most::attachedFile), "", entries},
                         {"b", unpacksTo(host::most::attachedFile + 128), "", entries}});
  write(somePages(1), parts);
  EXPECT_THAT(get<host::AttachedFile>(host::AttachmentRequest{0}).bytes, SizeIs(host::most::attachedFile));
  EXPECT_EQ(error(host::AttachmentRequest{1}), "paper.pdf: the attached file 2 is larger than 48 MB");
}

// ---- requests ----

TEST_F(StructureTest, OnlyRequestsAboutStructureAreAnswered) {
  write(somePages(1));
  const host::Answer answer = reader->answer(host::WordsRequest{0});
  EXPECT_EQ(std::get<host::Failure>(answer.value).line, "paper.pdf: this is not about its structure");
}

TEST_F(StructureTest, AnotherNumberOfPagesIsAnError) {
  write(somePages(2));
  EXPECT_EQ(error(host::StructureRequest{3}), "paper.pdf: it does not have 3 pages");
  EXPECT_EQ(error(host::PageStructureRequest{0, 1}), "paper.pdf: it does not have 1 pages");
  EXPECT_EQ(error(host::PageStructureRequest{2, 2}), "paper.pdf: no page 3");
  EXPECT_EQ(error(host::PageStructureRequest{-1, 2}), "paper.pdf: no page 0");
}

TEST_F(StructureTest, AFileThatCannotBeReadIsNamed) {
  open(folder.write("text.pdf", "words"), 1);
  EXPECT_EQ(error(host::StructureRequest{1}), "paper.pdf: its structure cannot be read");
  try {
    const MappedFile none(-1, "paper.pdf");
    FAIL() << "it was mapped";
  } catch (const host::DocumentError &error) {
    EXPECT_STREQ(error.what(), "paper.pdf: Bad file descriptor");
  }
}

// The same bytes open it for drawing, whatever they are.
TEST_F(StructureTest, AnEncryptedDocumentIsReadByItsPassword) {
  const auto plain = folder.pdf(somePages(1));
  for (const std::string password : {"user", "gr\u00FC\u00DFe", "\u5BC6\u7801"}) {
    const auto locked = folder.path() / "locked.pdf";
    const std::string command = std::string(QPDF) + " --password-mode=bytes --encrypt '" + password +
                                "' owner 256 -- " + plain.string() + " " + locked.string();
    ASSERT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c): a test's own command
    open(locked, 1, password);
    EXPECT_EQ(structure().metadata.format, "PDF-1.7") << password;
  }
}

TEST_F(StructureTest, TheTextsOfAnAnswerHaveABound) {
  std::vector<test::PdfOutlineEntry> entries(5000, {0, "(" + std::string(4096, 'a') + ")"});
  test::PdfParts parts;
  addOutline(parts, entries);
  write(somePages(1), parts);
  const auto outline = structure().outline;
  EXPECT_THAT(outline, SizeIs(5000));
  size_t bytes = 0;
  for (const auto &entry : outline)
    bytes += entry.title.size();
  EXPECT_LE(bytes, host::most::text);
  EXPECT_GT(bytes, host::most::text - 100);
}

} // namespace
} // namespace document
