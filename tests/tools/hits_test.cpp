// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The command `tavrel hits`: the file that it writes, its messages, and its exit status.
#include "tools/hits.h"

#include <gmock/gmock.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <numeric>
#include <sstream>

#include "host/document/process.h"
#include "support/pdf.h"
#include "tools/exit.h"
#include "viewer_model/TestDocuments.h"

namespace tools {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class HitsTest : public testing::Test {
protected:
  HitsTest() {
    options.document =
        folder.pdf({{.texts = {{.x = 50, .y = 500, .text = "The quick fox."}}},
                    {.texts = {{.x = 50, .y = 500, .text = "no such animal"}}},
                    {.texts = {{.x = 50, .y = 500, .text = "fox, quick"}, {.x = 50, .y = 488, .text = "Fox!"}}}});
    options.words = {"fox"};
    options.processes.program = host::documentProgram();
  }

  int run() { return writeHits(options, out, err); }

  size_t filesInFolder() const {
    return static_cast<size_t>(std::distance(std::filesystem::directory_iterator(folder.path()), {}));
  }

  test::ScratchFolder folder;
  HitsOptions options;
  std::ostringstream out, err;
};

TEST_F(HitsTest, WritesAHighlightFileOfCharacters) {
  EXPECT_EQ(run(), exitDone);
  EXPECT_EQ(out.str(), "<?xml version=\"1.0\"?>\n"
                       "<XML>\n"
                       "<Body Units=\"characters\" version=\"2\">\n"
                       "<highlights>\n"
                       "<loc pg=\"0\" pos=\"10\" len=\"3\"/>\n"
                       "<loc pg=\"2\" pos=\"0\" len=\"3\"/>\n"
                       "<loc pg=\"2\" pos=\"11\" len=\"3\"/>\n"
                       "</highlights>\n"
                       "</Body>\n"
                       "</XML>\n");
  EXPECT_EQ(err.str(), "");
}

TEST_F(HitsTest, WritesAHighlightFileOfWords) {
  options.units = "words";
  options.words = {"quick fox"};
  EXPECT_EQ(run(), exitDone);
  EXPECT_THAT(out.str(), HasSubstr("<Body Units=\"words\" version=\"2\">\n<highlights>\n"
                                   "<loc pg=\"0\" pos=\"1\" len=\"2\"/>\n"
                                   "<loc pg=\"2\" pos=\"1\" len=\"2\"/>\n</highlights>\n"));
}

TEST_F(HitsTest, ColorAndModeAreWrittenWhenAskedFor) {
  options.color = "00ff88";
  options.mode = "active";
  EXPECT_EQ(run(), exitDone);
  EXPECT_THAT(out.str(), HasSubstr("<Body Units=\"characters\" color=\"#00FF88\" mode=\"active\" version=\"2\">\n"));
}

TEST_F(HitsTest, ProgressShowsThePagesAndIsErased) {
  options.progress = true;
  EXPECT_EQ(run(), exitDone);
  EXPECT_EQ(err.str(), "\rsearching page 1 of 3\rsearching page 2 of 3\rsearching page 3 of 3\r\033[K");
}

// ---- output files ----

TEST_F(HitsTest, OutputFileIsWrittenAndReported) {
  options.output = folder.path() / "hits.xml";
  EXPECT_EQ(run(), exitDone);
  EXPECT_EQ(out.str(), "3 hits on 2 of 3 pages -> " + options.output + "\n");
  EXPECT_THAT(test::bytesOf(options.output), StartsWith("<?xml"));
  EXPECT_EQ(filesInFolder(), 2U) << "the document and the output, no temporary file";
}

TEST_F(HitsTest, OneHitIsReportedInTheSingular) {
  options.output = folder.path() / "hits.xml";
  options.words = {"animal"};
  EXPECT_EQ(run(), exitDone);
  EXPECT_EQ(out.str(), "1 hit on 1 of 3 pages -> " + options.output + "\n");
}

TEST_F(HitsTest, OutputReplacesAFileAndKeepsItsPermissions) {
  options.output = folder.write("hits.xml", "old, and longer than what is written now: " + std::string(5000, 'x'));
  std::filesystem::permissions(options.output, std::filesystem::perms(0640));
  EXPECT_EQ(run(), exitDone);
  EXPECT_THAT(test::bytesOf(options.output), testing::EndsWith("</XML>\n"));
  EXPECT_EQ(std::filesystem::status(options.output).permissions(), std::filesystem::perms(0640));
}

TEST_F(HitsTest, OutputThroughALinkLeavesTheLink) {
  const auto target = folder.write("target.xml", "old");
  options.output = folder.path() / "link.xml";
  std::filesystem::create_symlink(target, options.output);
  EXPECT_EQ(run(), exitDone);
  EXPECT_TRUE(std::filesystem::is_symlink(options.output));
  EXPECT_THAT(test::bytesOf(target), StartsWith("<?xml"));
}

TEST_F(HitsTest, TheDocumentIsNotOverwritten) {
  options.output = (folder.path() / "." / options.document.filename()).string();
  const auto size = std::filesystem::file_size(options.document);
  EXPECT_EQ(run(), exitUsage);
  EXPECT_EQ(err.str(), "tavrel: " + options.output + ": this is the document itself\n");
  EXPECT_EQ(std::filesystem::file_size(options.document), size);
}

TEST_F(HitsTest, OutputToADeviceLeavesTheDevice) {
  options.output = "/dev/null";
  EXPECT_EQ(run(), exitDone);
  EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
}

TEST_F(HitsTest, OutputIntoAMissingDirectoryNamesTheDirectory) {
  options.output = folder.path() / "new" / "hits.xml";
  EXPECT_EQ(run(), exitOutput);
  EXPECT_EQ(err.str(), "tavrel: " + (folder.path() / "new").string() + ": No such file or directory\n");
  EXPECT_FALSE(std::filesystem::exists(folder.path() / "new"));
}

TEST_F(HitsTest, OutputThatCannotBeCreatedFails) {
  options.output = options.document / "hits.xml"; // below a file
  EXPECT_EQ(run(), exitOutput);
  EXPECT_EQ(err.str(), "tavrel: " + options.document.string() + ": Not a directory\n");
  EXPECT_EQ(out.str(), "");
}

TEST_F(HitsTest, OutputToADirectoryFails) {
  options.output = folder.path();
  EXPECT_EQ(run(), exitOutput);
  EXPECT_THAT(err.str(), HasSubstr("is a directory"));
}

TEST_F(HitsTest, FullDeviceFails) {
  options.output = "/dev/full";
  EXPECT_EQ(run(), exitOutput);
  EXPECT_EQ(err.str(), "tavrel: /dev/full: No space left on device\n");
}

TEST_F(HitsTest, StandardOutputThatCannotBeWrittenFails) {
  out.setstate(std::ios::badbit);
  EXPECT_EQ(run(), exitOutput);
  EXPECT_THAT(err.str(), StartsWith("tavrel: standard output: "));
}

// ---- nothing to write ----

TEST_F(HitsTest, NothingFoundWritesNothing) {
  options.words = {"white", "whale"};
  options.output = folder.path() / "hits.xml";
  EXPECT_EQ(run(), exitNothingMarked);
  EXPECT_EQ(err.str(), "tavrel: " + options.document.string() + ": no hits of \"white whale\"\n");
  EXPECT_EQ(out.str(), "");
  EXPECT_FALSE(std::filesystem::exists(options.output));
}

TEST_F(HitsTest, PunctuationOnlyIsAUsageError) {
  options.words = {"?!"};
  EXPECT_EQ(run(), exitUsage);
  EXPECT_THAT(err.str(), StartsWith("tavrel: "));
}

TEST_F(HitsTest, MissingDocumentFails) {
  options.document = "/nowhere/missing.pdf";
  EXPECT_EQ(run(), exitDocument);
  EXPECT_EQ(err.str(), "tavrel: /nowhere/missing.pdf: No such file or directory\n");
}

TEST_F(HitsTest, PasswordIsRequiredAndAccepted) {
  const std::filesystem::path locked = folder.path() / "locked.pdf";
  const std::string command = std::string(QPDF) + " --encrypt user owner 128 --use-aes=y -- " +
                              options.document.string() + " " + locked.string();
  ASSERT_EQ(std::system(command.c_str()), 0); // NOLINT(cert-env33-c): a test's own command
  options.document = locked;
  EXPECT_EQ(run(), exitPassword);
  EXPECT_EQ(err.str(), "tavrel: " + locked.string() + ": the file is encrypted: a password is needed\n");
  options.password = "user";
  EXPECT_EQ(run(), exitDone);
}

// ---- the processes that read the document ----

TEST_F(HitsTest, AProgramThatCannotBeStartedIsNamed) {
  options.processes.program = "/nowhere/tavrel-document";
  EXPECT_EQ(run(), exitHostFailure);
  EXPECT_EQ(err.str(), "tavrel: " + options.document.string() +
                           ": /nowhere/tavrel-document cannot be started: No such file or directory\n");
}

TEST_F(HitsTest, NoProcessIsLeft) {
  EXPECT_EQ(run(), exitDone);
  EXPECT_EQ(test::bytesOf("/proc/thread-self/children"), "");
}

// ---- limits of highlight files ----

struct Refused {
  const char *asked, *nearest;
};

void PrintTo(const Refused &color, std::ostream *stream) { *stream << color.asked; }

class RefusedColor : public HitsTest, public testing::WithParamInterface<Refused> {};

TEST_P(RefusedColor, IsAUsageErrorThatNamesTheNearest) {
  options.color = GetParam().asked;
  EXPECT_EQ(run(), exitUsage);
  EXPECT_THAT(err.str(), HasSubstr(std::string("the nearest is ") + GetParam().nearest + "\n"));
  EXPECT_EQ(out.str(), "");
}

INSTANTIATE_TEST_SUITE_P(Pairs, RefusedColor,
                         testing::Values(Refused{"FF8000", "FF8800"}, Refused{"#010203", "000000"},
                                         Refused{"FFFFFE", "FFFFFF"}, Refused{"09F808", "11FF00"},
                                         Refused{"7f9a10", "779911"}));

TEST_F(HitsTest, InvalidColorIsAUsageError) {
  for (const char *color : {"red", "#FF00", "FF00000", "GG0000", "##FF000", "+F0000"}) {
    options.color = color;
    EXPECT_EQ(run(), exitUsage) << color;
    EXPECT_THAT(err.str(), HasSubstr(std::string("--color ") + color)) << color;
  }
}

TEST(UnplaceableHits, CharactersAfterTheLastPositionAreRemoved) {
  std::vector<Hit> hits = {{65533, 1, 1, 1}, {65534, 1, 2, 1}, {65535, 1, 3, 1}, {70000, 1, 4, 1}};
  EXPECT_EQ(dropUnplaceable(hits, false), 2U);
  ASSERT_EQ(hits.size(), 2U);
  EXPECT_EQ(hits.back().offset, 65534U);
}

TEST(UnplaceableHits, WordsAreComparedByTheirIndex) {
  std::vector<Hit> hits = {{300'000, 1, 65534, 1}, {300'010, 1, 65535, 1}};
  EXPECT_EQ(dropUnplaceable(hits, true), 1U);
  ASSERT_EQ(hits.size(), 1U);
  EXPECT_EQ(hits.back().word, 65534U);
}

// ---- the command line ----

class HitsCommandLine : public HitsTest {
protected:
  // Parses and runs a command line after "tavrel"; its exit status, or what the parser threw.
  int call(std::vector<std::string> arguments) {
    CLI::App app;
    int status = -1;
    addHitsCommand(app, status);
    std::reverse(arguments.begin(), arguments.end()); // the parser expects a vector in reversed order
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    try {
      app.parse(arguments);
    } catch (const CLI::ParseError &error) {
      parseError = error.what();
    }
    out << testing::internal::GetCapturedStdout();
    err << testing::internal::GetCapturedStderr();
    return status;
  }

  std::string parseError;
};

TEST_F(HitsCommandLine, TakesEveryOption) {
  const std::string output = folder.path() / "hits.xml";
  EXPECT_EQ(call({"hits", options.document.string(), "quick", "fox", "--units", "words", "--color", "FF0000", "--mode",
                  "active", "-o", output}),
            exitDone)
      << parseError;
  EXPECT_EQ(out.str(), "2 hits on 2 of 3 pages -> " + output + "\n");
  EXPECT_THAT(test::bytesOf(output),
              HasSubstr("<Body Units=\"words\" color=\"#FF0000\" mode=\"active\" version=\"2\">\n"));
}

TEST_F(HitsCommandLine, DashIsStandardOutput) {
  EXPECT_EQ(call({"hits", "-o", "-", options.document.string(), "fox"}), exitDone) << parseError;
  EXPECT_THAT(out.str(), StartsWith("<?xml version=\"1.0\"?>\n"));
  EXPECT_THAT(out.str(), Not(HasSubstr("->")));
  EXPECT_THAT(err.str(), IsEmpty());
}

TEST_F(HitsCommandLine, UnknownUnitsAreRefused) {
  EXPECT_EQ(call({"hits", options.document.string(), "fox", "--units", "lines"}), -1);
  EXPECT_THAT(parseError, HasSubstr("lines"));
}

TEST_F(HitsCommandLine, WordsAreRequired) {
  EXPECT_EQ(call({"hits", options.document.string()}), -1);
  EXPECT_THAT(parseError, HasSubstr("WORDS"));
}

// ---- damaged pages ----

class HitsOfADamagedDocument : public HitsTest {
protected:
  // Twenty pages with one hit each, some with an empty page box.
  void damage(const std::vector<size_t> &pages) {
    std::vector<test::PdfPage> all(20, {.texts = {{.x = 50, .y = 500, .text = "fox"}}});
    for (const size_t page : pages)
      all[page - 1].cropBox = "10 10 10 10";
    write(test::pdfOf(all));
  }
  void write(const std::string &bytes) {
    options.document = folder.write("damaged.pdf", bytes);
    options.output = folder.path() / "hits.xml";
  }
  std::string line(const std::string &text) const {
    return "tavrel: " + options.document.string() + ": " + text + "\n";
  }
};

TEST_F(HitsOfADamagedDocument, AreThoseOfTheOtherPagesAndTheStatusIsReported) {
  damage({9, 13});
  EXPECT_EQ(run(), exitPagesLeftOut);
  EXPECT_EQ(err.str(), line("2 of 20 pages are damaged and are left out: 9, 13"));
  EXPECT_EQ(out.str(), "18 hits on 18 of 20 pages -> " + options.output + "\n");
  EXPECT_THAT(test::bytesOf(options.output), HasSubstr("<loc pg=\"7\" pos=\"0\" len=\"3\"/>\n<loc pg=\"9\" "));
}

TEST_F(HitsOfADamagedDocument, GoToStandardOutputLikewise) {
  damage({1});
  options.output = "-";
  EXPECT_EQ(run(), exitPagesLeftOut);
  EXPECT_EQ(err.str(), line("1 of 20 pages is damaged and is left out: 1"));
  EXPECT_THAT(out.str(), StartsWith("<?xml"));
}

TEST_F(HitsOfADamagedDocument, AreReportedAsNoneIfNoneIsFound) {
  damage({2, 3, 4});
  options.words = {"whale"};
  EXPECT_EQ(run(), exitNothingMarked);
  EXPECT_EQ(err.str(),
            line("3 of 20 pages are damaged and are left out: 2-4") + line("no hits of \"whale\" on the other pages"));
  EXPECT_FALSE(std::filesystem::exists(options.output));
}

TEST_F(HitsOfADamagedDocument, AreThoseOfPagesThatDoNotTakeTooLong) {
  std::vector<test::PdfPage> all(5, {.texts = {{.x = 50, .y = 500, .text = "fox"}}});
  all[2] = test::slowlyReadPage();
  write(test::pdfOf(all));
  options.processes.pageTime = std::chrono::milliseconds(400);
  EXPECT_EQ(run(), exitPagesLeftOut);
  EXPECT_EQ(err.str(), line("1 of 5 pages takes longer than 1 second (--page-time) and is left out: 3"));
  EXPECT_EQ(out.str(), "4 hits on 4 of 5 pages -> " + options.output + "\n");
}

// After a page with a malformed dictionary the library cannot read any page.
TEST_F(HitsOfADamagedDocument, AreThoseBeforeAMalformedPage) {
  std::string bytes = test::pdfOf(std::vector<test::PdfPage>(20, {.texts = {{.x = 50, .y = 500, .text = "fox"}}}));
  const std::string ninth = "/Contents 22 0 R";
  ASSERT_NE(bytes.find(ninth), std::string::npos);
  write(bytes.replace(bytes.find(ninth), ninth.size(), "/Contents /Nothing"));
  EXPECT_EQ(run(), exitPagesLeftOut);
  EXPECT_EQ(err.str(), line("12 of 20 pages are damaged and are left out: 9-20"));
  EXPECT_EQ(out.str(), "8 hits on 8 of 20 pages -> " + options.output + "\n");
}

TEST_F(HitsOfADamagedDocument, CannotBeFoundWhereAllPagesAreDamaged) {
  std::vector<size_t> all(20);
  std::iota(all.begin(), all.end(), 1);
  damage(all);
  EXPECT_EQ(run(), exitDocument);
  EXPECT_EQ(err.str(), line("all 20 pages are damaged"));
  EXPECT_FALSE(std::filesystem::exists(options.output));
}

} // namespace
} // namespace tools
