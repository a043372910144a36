// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Documents opened with a page and a highlight file. The test registers the handler that receives the file.
#include <sys/stat.h>

#include "tests/host/kernel/TestPlugin.h"
#include "tests/plugins/Plugins.h"

namespace {

namespace fs = std::filesystem;
using namespace tavrel;

/// What the handler received, and the page that was shown then.
struct Received {
  std::string type, bytes;
  int32_t page;
};
std::vector<Received> received;

Bool16 receive(Atom type, const void *data, uint32_t length, Doc document) {
  const bool xml = type == Kernel::AtomFromString("xml");
  received.push_back({xml ? "xml" : "tavrelglt", std::string(static_cast<const char *>(data), length),
                      TavrelView::PageViewGetPageNum(TavrelView::DocGetPageView(document))});
  return 1;
}

Bool16 fail(Atom, const void *, uint32_t, Doc) {
  Kernel::RaiseError(errGeneric);
  return 1;
}

std::string printed(const std::string &subject, const std::string &reason) {
  return "tavrel: " + subject + ": " + reason + "\n";
}

/// Changes the current directory until it is destroyed.
class CurrentFolder {
public:
  explicit CurrentFolder(const fs::path &folder) : before_(fs::current_path()) { fs::current_path(folder); }
  ~CurrentFolder() { fs::current_path(before_); }
  CurrentFolder(const CurrentFolder &) = delete;
  CurrentFolder &operator=(const CurrentFolder &) = delete;

private:
  fs::path before_;
};

/// The plug-in alone in a host, and a handler for both types.
class OpenedWith : public testing::Test {
protected:
  OpenedWith() {
    received.clear();
    handleWith(receive);
  }

  void handleWith(AuxDataProc procedure) {
    leaveUnhandled();
    handler = {8, testPlugin.callback(procedure)};
    for (const char *type : {"tavrelglt", "xml"})
      TavrelView::RegisterAuxDataHandler(testPlugin.id, Kernel::AtomFromString(type), &handler);
  }
  void leaveUnhandled() {
    for (const char *type : {"tavrelglt", "xml"})
      TavrelView::UnregisterAuxDataHandler(testPlugin.id, Kernel::AtomFromString(type), &handler);
  }
  /// Opens the document as the front document and returns what is printed on standard error.
  std::string open(const std::string &parameters) {
    testing::internal::CaptureStderr();
    document = &app.open(test::fourPages(scratch), file, 72, parameters);
    return testing::internal::GetCapturedStderr();
  }
  int32_t pageShown() const { return document->view->page(); }
  /// The bytes of the only file that was received.
  static std::string content() { return received.size() == 1 ? received[0].bytes : "(none, or several)"; }

  /// Creates a directory with this plug-in alone.
  static fs::path folderWithOne(const fs::path &folder) {
    fs::create_directory(folder);
    fs::create_symlink(fs::path(TAVREL_PLUGINS) / "BRZ.so", folder / "BRZ.so");
    return folder;
  }

  const test::ScratchFolder scratch;
  test::PluginHost host{folderWithOne(scratch.path() / "plugins")};
  host::Application &app = host.app;
  test::TestPlugin testPlugin{host.runtime};
  AuxDataHandler handler = {};
  const fs::path file = scratch.path() / "test.pdf";
  host::ViewerDocument *document = nullptr;
};

TEST_F(OpenedWith, ThePageNumberCountsFromOne) {
  EXPECT_EQ(open("page=3"), "");
  EXPECT_EQ(pageShown(), 2);
}

TEST_F(OpenedWith, APageBeyondTheLastIsTheLast) {
  EXPECT_EQ(open("page=4"), "");
  EXPECT_EQ(pageShown(), 3);
  for (const std::string page : {"5", "99999999999999999999"}) {
    EXPECT_EQ(open("page=" + page), printed(file, "there is no page " + page + ", the document has 4"));
    EXPECT_EQ(pageShown(), 3) << page;
    EXPECT_EQ(app.statusText(), "test.pdf: there is no page " + page + ", the document has 4");
  }
}

TEST_F(OpenedWith, AnInvalidPageIsReported) {
  EXPECT_EQ(open("page=two"), printed(file, "page=two is no page"));
  EXPECT_EQ(pageShown(), 0);
  EXPECT_EQ(open("page=0&zoom=3"), printed(file, "page=0 is no page"));
  EXPECT_EQ(app.statusText(), "");
}

TEST_F(OpenedWith, OfSeveralPagesTheLastIsShown) {
  EXPECT_EQ(open("page=x&Page=2&PAGE=3&other=1"), "");
  EXPECT_EQ(pageShown(), 2);
}

TEST_F(OpenedWith, WithoutAViewNoPageIsShown) {
  testing::internal::CaptureStderr();
  app.open(test::fourPages(scratch), file, 0, "page=2");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(testPlugin.reports, std::vector<std::string>{});
}

TEST_F(OpenedWith, AFileInTheDocumentsDirectoryIsAttached) {
  const std::string bytes("<XML>\0</XML>", 12);
  scratch.write("hits.xml", bytes);
  EXPECT_EQ(open("xml=hits.xml"), "");
  ASSERT_EQ(received.size(), 1U);
  EXPECT_EQ(received[0].type, "tavrelglt");
  EXPECT_EQ(received[0].bytes, bytes);
  EXPECT_EQ(app.statusText(), "");
}

TEST_F(OpenedWith, AFileWithAnXmlDeclarationIsAttachedAsXml) {
  scratch.write("hits.xml", "\xEF\xBB\xBF\n<?xml version=\"1.0\"?>");
  EXPECT_EQ(open("xml=hits.xml"), "");
  ASSERT_EQ(received.size(), 1U);
  EXPECT_EQ(received[0].type, "xml");
  EXPECT_EQ(received[0].bytes, "\xEF\xBB\xBF\n<?xml version=\"1.0\"?>");
}

TEST_F(OpenedWith, AnAbsoluteNameIsUsedUnchanged) {
  const std::string hits = scratch.write("hits.xml", "absolute");
  for (const std::string &parameters : {"xml=" + hits, "xml=file://" + hits, "xml=file://localhost" + hits}) {
    received.clear();
    EXPECT_EQ(open(parameters), "") << parameters;
    EXPECT_EQ(content(), "absolute") << parameters;
  }
}

TEST_F(OpenedWith, AnEncodedNameIsDecoded) {
  fs::create_directory(scratch.path() / "my hits");
  scratch.write("my hits/a&b%.xml", "encoded");
  EXPECT_EQ(open("xml=my%20hits%2Fa%26b%25.xml"), "");
  EXPECT_EQ(content(), "encoded");
}

TEST_F(OpenedWith, AFileIsSearchedInTheDocumentsDirectoryAndThenInTheCurrentOne) {
  const test::ScratchFolder elsewhere;
  const CurrentFolder there(elsewhere.path());
  elsewhere.write("hits.xml", "current folder");
  EXPECT_EQ(open("xml=hits.xml"), "");
  EXPECT_EQ(content(), "current folder");
  received.clear();
  scratch.write("hits.xml", "beside");
  EXPECT_EQ(open("xml=hits.xml"), "");
  EXPECT_EQ(content(), "beside");
}

TEST_F(OpenedWith, TheFileIsAttachedAfterThePageIsShown) {
  scratch.write("hits.xml", "hits");
  for (const char *parameters : {"page=3&xml=hits.xml", "xml=hits.xml&page=3"}) {
    received.clear();
    EXPECT_EQ(open(parameters), "");
    ASSERT_EQ(received.size(), 1U);
    EXPECT_EQ(received[0].page, 2) << parameters;
  }
}

TEST_F(OpenedWith, TheFileIsAttachedAlsoAfterAnInvalidPage) {
  scratch.write("hits.xml", "hits");
  EXPECT_EQ(open("xml=hits.xml&page="), printed(file, "page= is no page"));
  EXPECT_EQ(content(), "hits");
}

TEST_F(OpenedWith, AMissingFileIsReported) {
  EXPECT_EQ(open("xml=no%20hits.xml"), printed("no hits.xml", "No such file or directory"));
  EXPECT_EQ(app.statusText(), "no hits.xml: No such file or directory");
  EXPECT_EQ(open("xml=/no/hits.xml"), printed("/no/hits.xml", "No such file or directory"));
  EXPECT_EQ(app.statusText(), "hits.xml: No such file or directory");
  EXPECT_EQ(open("xml=test.pdf/hits.xml"), printed("test.pdf/hits.xml", "No such file or directory"));
  EXPECT_TRUE(received.empty());
}

TEST_F(OpenedWith, ADirectoryIsRefused) {
  fs::create_directory(scratch.path() / "folder");
  EXPECT_EQ(open("xml=folder"), printed(scratch.path() / "folder", "Is a directory"));
  EXPECT_EQ(app.statusText(), "folder: Is a directory");
  EXPECT_EQ(open("xml=/"), printed("/", "Is a directory"));
  EXPECT_EQ(app.statusText(), "/: Is a directory");
}

TEST_F(OpenedWith, APipeDoesNotBlock) {
  ASSERT_EQ(mkfifo((scratch.path() / "pipe").c_str(), 0600), 0);
  EXPECT_EQ(open("xml=pipe"), printed(scratch.path() / "pipe", "Operation not supported"));
}

TEST_F(OpenedWith, AFileThatCannotBeOpenedIsReported) {
  fs::create_symlink("circle", scratch.path() / "circle");
  EXPECT_EQ(open("xml=circle"), printed(scratch.path() / "circle", "Too many levels of symbolic links"));
}

TEST_F(OpenedWith, AFileAboveTheLimitIsRefused) {
  const std::string hits = scratch.write("hits.xml", "");
  fs::resize_file(hits, (64U << 20) + 1);
  EXPECT_EQ(open("xml=hits.xml"), printed(hits, "it is larger than 64 MB (--hits-limit raises the limit)"));
  EXPECT_EQ(app.statusText(), "hits.xml: it is larger than 64 MB (--hits-limit raises the limit)");
  EXPECT_TRUE(received.empty());
}

TEST_F(OpenedWith, TheEnvironmentSetsAnotherLimit) {
  const std::string hits = scratch.write("hits.xml", "<XML>");
  fs::resize_file(hits, (1U << 20) + 1);
  setenv("TAVREL_HITS_LIMIT", "1", 1);
  EXPECT_EQ(open("xml=hits.xml"), printed(hits, "it is larger than 1 MB (--hits-limit raises the limit)"));
  setenv("TAVREL_HITS_LIMIT", "2", 1);
  EXPECT_EQ(open("xml=hits.xml"), "");
  unsetenv("TAVREL_HITS_LIMIT");
  EXPECT_EQ(received.size(), 1U);
}

TEST_F(OpenedWith, AFileOfAnotherKindIsRefusedWithItsKind) {
  const std::string pdf = scratch.write("hits.pdf", "%PDF-1.7\n");
  EXPECT_EQ(open("xml=hits.pdf"), printed(pdf, "this is a PDF, not a highlight file"));
  EXPECT_EQ(app.statusText(), "hits.pdf: this is a PDF, not a highlight file");
  EXPECT_TRUE(received.empty());
}

TEST_F(OpenedWith, ANameThatIsTooLongIsRefused) {
  EXPECT_EQ(open("xml=" + std::string(5000, 'x')), printed("xml", "File name too long"));
  EXPECT_EQ(app.statusText(), "xml: File name too long");
}

TEST_F(OpenedWith, AnEmptyFileNameIsRefused) {
  EXPECT_EQ(open("xml="), printed(file, "xml= is no file"));
  EXPECT_TRUE(received.empty());
}

TEST_F(OpenedWith, ARemoteFileIsNotFetched) {
  EXPECT_EQ(open("xml=http://example.org/my%20hits.xml&page=2"),
            printed("http://example.org/my%20hits.xml", "it cannot be fetched yet"));
  EXPECT_EQ(app.statusText(), "http://example.org/my%20hits.xml: it cannot be fetched yet");
  EXPECT_EQ(pageShown(), 1);
  EXPECT_EQ(open("xml=HTTPS:x"), printed("HTTPS:x", "it cannot be fetched yet"));
}

TEST_F(OpenedWith, ALongValueIsTruncatedAndTheReasonIsKept) {
  const std::string truncated(255, '7'), value = truncated + "777x";
  EXPECT_EQ(open("page=" + value), printed(file, "page=" + truncated + " is no page"));
  open("xml=http:" + value);
  EXPECT_EQ(app.statusText(), "http:" + truncated.substr(5) + ": it cannot be fetched yet");
}

TEST_F(OpenedWith, UnprintableBytesOfALinkAreReplaced) {
  EXPECT_EQ(open("xml=%1B[2J%0A%FF.xml"), printed("?[2J??.xml", "No such file or directory"));
  EXPECT_EQ(app.statusText(), "?[2J??.xml: No such file or directory");
}

TEST_F(OpenedWith, AFileWithoutAHandlerIsReported) {
  leaveUnhandled();
  const std::string hits = scratch.write("hits.xml", "hits");
  EXPECT_EQ(open("xml=hits.xml"), printed(hits, "no plug-in takes highlight files"));
  EXPECT_EQ(app.statusText(), "hits.xml: no plug-in takes highlight files");
}

TEST_F(OpenedWith, AHandlerThatFailsIsReported) {
  handleWith(fail);
  const std::string hits = scratch.write("hits.xml", "hits");
  EXPECT_EQ(open("xml=hits.xml"), printed(hits, "no plug-in takes highlight files"));
}

TEST_F(OpenedWith, WithoutTheTableOfHighlightsNothingIsReported) {
  scratch.write("hits.xml", "");
  EXPECT_EQ(open("xml=hits.xml"), "");
  EXPECT_EQ(content(), "");
}

TEST_F(OpenedWith, TheStatusTextIsRemovedWithItsDocument) {
  open("xml=missing.xml");
  EXPECT_NE(app.statusText(), "");
  app.close(*document);
  EXPECT_EQ(app.statusText(), "");
}

TEST_F(OpenedWith, TheStatusTextIsRemovedByTheNextDocument) {
  open("xml=missing.xml");
  EXPECT_EQ(open(""), "");
  EXPECT_EQ(app.statusText(), "");
}

TEST_F(OpenedWith, TheStatusTextStaysWhenAnotherDocumentCloses) {
  open("");
  host::ViewerDocument &other = *document;
  open("xml=missing.xml");
  app.close(other);
  EXPECT_EQ(app.statusText(), "missing.xml: No such file or directory");
}

} // namespace
