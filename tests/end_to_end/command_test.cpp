// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// The command as its user sees it: its output, the inputs that it refuses, and its exit status.
//
// It has over 500 lines because all of its tests share the fixture, which starts the command and checks what it prints.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "host/document/process.h"
#include "support/pdf.h"
#include "tests/end_to_end/oracle.h"
#include "tools/exit.h"

namespace {

namespace fs = std::filesystem;

const std::string tavrel = TAVREL;
const std::string documents = TEST_DOCUMENTS;

class Command : public testing::Test {
protected:
  void SetUp() override {
    folder = fs::path(testing::TempDir()) /
             ("tavrel-command-" + std::string(testing::UnitTest::GetInstance()->current_test_info()->name()));
    fs::remove_all(folder);
    fs::create_directories(folder);
  }
  void TearDown() override { fs::remove_all(folder); }

  std::string file(const std::string &name, const std::string &content) {
    std::ofstream(folder / name) << content;
    return folder / name;
  }
  CommandResult render(const std::string &document, const std::string &hits, const std::string &options = "") {
    return run(tavrel + " render " + document + " " + hits + " --out " + std::string(folder / "out") + " " + options);
  }
  static std::string locations(const std::string &attributes, const std::string &tags) {
    return "<XML>\n<Body " + attributes + ">\n<highlights>\n" + tags + "\n</highlights>\n</Body>\n</XML>\n";
  }
  // With the one that reads documents, which is found from there.
  static void copyProgramsTo(const fs::path &bin) {
    const fs::path program = host::documentProgram();
    const fs::path copy = (bin / program.lexically_relative(fs::path(tavrel).parent_path())).lexically_normal();
    fs::create_directories(bin);
    fs::create_directories(copy.parent_path());
    fs::copy_file(tavrel, bin / "tavrel");
    fs::copy_file(program, copy);
  }
  size_t written() {
    return fs::exists(folder / "out")
               ? static_cast<size_t>(std::distance(fs::directory_iterator(folder / "out"), fs::directory_iterator()))
               : 0;
  }

  // The files that a command writes to the directory `out`, by name, and its output. `prefix` is put before the
  // command.
  struct Outcome {
    std::map<std::string, std::string> files;
    std::string output;
    int status;
    bool operator==(const Outcome &) const = default;
  };
  Outcome outcome(const std::string &prefix, const std::string &arguments) {
    fs::remove_all(folder / "out");
    const CommandResult result = run(prefix + " " + tavrel + " " + arguments + " --out " + std::string(folder / "out"));
    Outcome all{{}, result.output, result.status};
    if (fs::exists(folder / "out"))
      for (const auto &entry : fs::directory_iterator(folder / "out"))
        all.files[entry.path().filename()] = test::bytesOf(entry.path());
    return all;
  }
  // The same with one processor, without threads, and with all processors.
  Outcome outcomeEitherWay(const std::string &arguments) {
    const Outcome all = outcome("", arguments);
    EXPECT_TRUE(all == outcome("taskset --cpu-list $(taskset -cp $$ | sed 's/.*: //; s/[,-].*//')", arguments))
        << arguments << "\n"
        << all.output;
    return all;
  }

  fs::path folder;
};

// So many pages, each with its number as text.
std::vector<test::PdfPage> pages(int count) {
  std::vector<test::PdfPage> result;
  for (int page = 1; page <= count; ++page)
    result.push_back({.texts = {{.x = 50, .y = 300, .text = "page " + std::to_string(page)}}});
  return result;
}

TEST_F(Command, RenderPrintsALineForEveryPageWithHits) {
  const std::string hits =
      file("hits.xml", locations("Units=\"words\"", "<loc pg=\"0\" pos=\"0\" len=\"1\"/>\n<loc pg=\"2\" pos=\"1\" "
                                                    "len=\"2\"/>\n<loc pg=\"2\" pos=\"5\" len=\"1\"/>"));
  const CommandResult result = render(documents + "/three-hundred.pdf", hits);
  EXPECT_EQ(result.status, tools::exitDone);
  EXPECT_NE(result.output.find("page 1 of 300: 1 hit -> " + std::string(folder / "out/page-0001.png") +
                               " (hit 1 of 3, page 1 of 2)\n"),
            std::string::npos)
      << result.output;
  EXPECT_NE(result.output.find("page 3 of 300: 2 hits -> " + std::string(folder / "out/page-0003.png") +
                               " (hit 2 of 3, page 2 of 2)\n"),
            std::string::npos);
  EXPECT_EQ(written(), 2U);
}

TEST_F(Command, RenderReadsTheHitsFromStandardInput) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=1 pos=0 len=1>"));
  EXPECT_EQ(render(documents + "/three-hundred.pdf", "-", "< " + hits).status, tools::exitDone);
  EXPECT_EQ(written(), 1U);
}

TEST_F(Command, RenderOfAllPagesWritesThoseWithoutHitsToo) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=1 pos=0 len=1>"));
  EXPECT_EQ(render(documents + "/two-columns.pdf", hits, "--pages all --dpi 20").status, tools::exitDone);
  EXPECT_EQ(written(), 4U);
}

TEST_F(Command, RenderOfAllPagesIsTheSameForAnyNumberOfProcessors) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=1 pos=0 len=4>\n<loc pg=17 pos=0 len=4>"));
  const std::string document = file("thirty.pdf", test::pdfOf(pages(30)));
  const Outcome all = outcomeEitherWay("render " + document + " " + hits + " --pages all --dpi 50");
  EXPECT_EQ(all.status, tools::exitDone);
  EXPECT_EQ(all.files.size(), 30U);
  size_t at = 0;
  for (int page = 1; page <= 30; ++page) {
    const size_t line = all.output.find("page " + std::to_string(page) + " of 30: ");
    ASSERT_NE(line, std::string::npos) << page << "\n" << all.output;
    EXPECT_GE(line, at) << all.output;
    at = line;
  }
}

TEST_F(Command, RenderOfAllPagesEndsAtTheFirstThatCannotBeDrawn) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=0 pos=0 len=4>"));
  std::vector<test::PdfPage> some = pages(20);
  some[8].width = some[12].width = 100'000;
  const std::string document = file("wide.pdf", test::pdfOf(some));
  const Outcome all = outcomeEitherWay("render " + document + " " + hits + " --pages all");
  EXPECT_EQ(all.status, tools::exitUsage);
  EXPECT_EQ(all.files.size(), 8U);
  EXPECT_TRUE(all.files.contains("page-0008.png"));
  const std::string last = "\ntavrel: " + document + ": page 9 at ";
  EXPECT_NE(all.output.find(last), std::string::npos) << all.output;
}

// Twenty pages; the ninth and the eleventh have empty page boxes.
std::string damagedPages() {
  std::vector<test::PdfPage> some = pages(20);
  some[8].cropBox = some[10].cropBox = "10 10 10 10";
  return test::pdfOf(some);
}

TEST_F(Command, RenderOfAllPagesLeavesOutDamagedOnesAndReportsThem) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=0 pos=0 len=4>"));
  const std::string document = file("damaged.pdf", damagedPages());
  const Outcome all = outcomeEitherWay("render " + document + " " + hits + " --pages all --dpi 50");
  EXPECT_EQ(all.status, tools::exitPagesLeftOut);
  EXPECT_EQ(all.files.size(), 18U);
  EXPECT_FALSE(all.files.contains("page-0009.png"));
  EXPECT_FALSE(all.files.contains("page-0011.png"));
  EXPECT_NE(all.output.find("tavrel: " + document + ": 2 of 20 pages are damaged and are left out: 9, 11\n"),
            std::string::npos)
      << all.output;
}

TEST_F(Command, RenderOfThePagesWithHitsLeavesOutDamagedOnesAndReportsThem) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=0 pos=0 len=4>\n<loc pg=8 pos=0 len=4>\n<loc pg=10 "
                                                          "pos=0 len=4>\n<loc pg=12 pos=0 len=4>"));
  const std::string document = file("damaged.pdf", damagedPages());
  const Outcome all = outcome("", "render " + document + " " + hits + " --dpi 50");
  EXPECT_EQ(all.status, tools::exitPagesLeftOut);
  EXPECT_EQ(all.files.size(), 2U);
  EXPECT_NE(all.output.find("tavrel: " + document + ": 2 pages are damaged and are left out: 9, 11\n"),
            std::string::npos)
      << all.output;
}

TEST_F(Command, RenderOfADocumentWithoutAPageThatIsNotDamagedFailsAsHitsDoes) {
  std::vector<test::PdfPage> two = pages(2);
  two[0].cropBox = two[1].cropBox = "10 10 10 10";
  const std::string document = file("damaged.pdf", test::pdfOf(two));
  const std::string hits = file("hits.xml", locations("", "<loc pg=0 pos=0 len=4>\n<loc pg=1 pos=0 len=4>"));
  for (const std::string &arguments : {"render " + document + " " + hits, "hits " + document + " word"}) {
    const CommandResult result = run(tavrel + " " + arguments);
    EXPECT_EQ(result.status, tools::exitDocument) << arguments;
    EXPECT_EQ(result.output, "tavrel: " + document + ": all 2 pages are damaged\n");
  }
}

TEST_F(Command, HitsOnPagesThatTheDocumentLacksAreSkipped) {
  const std::string hits =
      file("hits.xml", locations("", "<loc pg=1 pos=0 len=1>\n<loc pg=999 pos=0 len=1>\n<loc pg=2 pos=0 len=1>\n<loc "
                                     "pg=1000 pos=0 len=1>"));
  EXPECT_EQ(render(documents + "/three-hundred.pdf", hits, "--dpi 20").status, tools::exitDone);
  EXPECT_EQ(written(), 2U);
}

TEST_F(Command, RenderReachesAHitAfterManyOnPagesThatTheDocumentLacks) {
  std::string tags; // as short as they can be: the length of the file limits the steps
  for (int page = 4; page < 5000; ++page)
    tags += "<loc pg=" + std::to_string(page) + " pos=1>";
  const std::string hits = file("hits.xml", locations("", tags + "<loc pg=1 pos=0 len=1>"));
  EXPECT_EQ(render(documents + "/two-columns.pdf", hits, "--dpi 20").status, tools::exitDone);
  EXPECT_EQ(written(), 1U);
}

TEST_F(Command, ATruncatedFileThatMarksNothingIsReportedAsTruncated) {
  const std::string hits = file("hits.xml", "<XML>\n<Body>\n<highlights>\n<loc pg=1 pos=1 len=1>\n");
  const std::string document = documents + "/two-columns.pdf";
  const CommandResult result = render(document, hits);
  EXPECT_EQ(result.status, tools::exitNothingMarked);
  EXPECT_EQ(result.output, "tavrel: " + hits + ": the file is truncated and marks nothing in " + document + "\n");
}

TEST_F(Command, HitsBeyondTheTextOfTheirPageAreReportedAndNotCounted) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=0 pos=0 len=1>\n<loc pg=0 pos=60000 len=1>\n"
                                                          "<loc pg=1 pos=60000 len=1>\n<loc pg=2 pos=0 len=1>"));
  const CommandResult result = render(documents + "/three-hundred.pdf", hits, "--dpi 20");
  EXPECT_EQ(result.status, tools::exitDone);
  EXPECT_EQ(written(), 2U);
  EXPECT_NE(result.output.find("page 1 of 300: 1 hit, 1 outside of the page not marked"), std::string::npos)
      << result.output;
  EXPECT_NE(result.output.find("page 2 of 300: 1 hit outside of the page, not marked"), std::string::npos)
      << result.output;
  EXPECT_NE(result.output.find("2 pages marked, 2 hits, 2 outside of the page not marked"), std::string::npos)
      << result.output;
}

TEST_F(Command, FilesWithoutHitsMarkNothingAndAreReported) {
  for (const char *content : {"", "<html>nothing here</html>", "<XML>\n<Body>\n</Body>\n</XML>",
                              "<XML>\n<Body>\n<highlights>\n<loc pg=999 pos=1 len=1>\n</highlights>\n</Body>"}) {
    const CommandResult result = render(documents + "/two-columns.pdf", file("hits.xml", content));
    EXPECT_EQ(result.status, tools::exitNothingMarked) << content << "\n" << result.output;
    EXPECT_NE(result.output.find("hits.xml"), std::string::npos) << result.output;
    EXPECT_EQ(written(), 0U);
  }
}

TEST_F(Command, UnknownVersionOfWordExtractionIsAskedAbout) {
  const std::string hits = file("hits.xml", locations("Units=\"words\" version=\"9\"", "<loc pg=0 pos=0 len=1>"));
  const CommandResult no = render(documents + "/two-columns.pdf", hits, "--dpi 20");
  EXPECT_EQ(no.status, tools::exitNothingMarked);
  EXPECT_NE(no.output.find("Display highlights anyway?"), std::string::npos) << no.output;
  const CommandResult yes = render(documents + "/two-columns.pdf", hits, "--dpi 20 --answer yes");
  EXPECT_EQ(yes.status, tools::exitDone);
  EXPECT_EQ(written(), 1U);
}

struct BadInput {
  const char *arguments; ///< %D is the directory of documents, %F that of the test
  int status;
  const char *expected;
};

TEST_F(Command, InvalidInputIsReportedWithItsStatus) {
  file("hits.xml", locations("", "<loc pg=1 pos=0 len=1>"));
  file("notes.pdf", "these are only notes\n");
  const BadInput table[] = {
      {"render %F/missing.pdf %F/hits.xml", tools::exitDocument, "missing.pdf"},
      {"render %F/notes.pdf %F/hits.xml", tools::exitDocument, "notes.pdf"},
      {"render %D/encrypted.pdf %F/hits.xml --password wrong", tools::exitPassword, "encrypted.pdf"},
      {"render %D/encrypted.pdf %F/hits.xml", tools::exitPassword, "encrypted.pdf"},
      {"render %D/two-columns.pdf %F/missing.xml", tools::exitHighlightFile, "missing.xml"},
      {"render %D/two-columns.pdf %F/hits.xml --out /dev/null/out", tools::exitOutput, "/dev/null/out"},
      {"render %D/two-columns.pdf", tools::exitUsage, ""},
      {"render %D/two-columns.pdf %F/hits.xml --dpi 0", tools::exitUsage, "dpi"},
      {"frobnicate", tools::exitUsage, "frobnicate"},
      {"hits %F/missing.pdf word", tools::exitDocument, "missing.pdf"},
      {"hits %D/encrypted.pdf word --password wrong", tools::exitPassword, "encrypted.pdf"},
      {"hits %D/two-columns.pdf rhinoceros -o %F/none.xml", tools::exitNothingMarked, "rhinoceros"},
      {"hits %D/two-columns.pdf words --color 123456", tools::exitUsage, "113355"},
      {"hits %D/two-columns.pdf words -o /dev/null/hits.xml", tools::exitOutput, "/dev/null"},
  };
  const auto filled = [&](std::string text) {
    for (const auto &[mark, value] : {std::pair{std::string("%D"), documents}, {"%F", folder.string()}})
      for (size_t at = text.find(mark); at != std::string::npos; at = text.find(mark))
        text.replace(at, mark.size(), value);
    return text;
  };
  for (const BadInput &bad : table) {
    const CommandResult result = run(tavrel + " " + filled(bad.arguments) + " </dev/null");
    EXPECT_EQ(result.status, bad.status) << bad.arguments << "\n" << result.output;
    EXPECT_NE(result.output.find(filled(bad.expected)), std::string::npos) << bad.arguments << "\n" << result.output;
  }
  EXPECT_FALSE(fs::exists(folder / "none.xml"));
  EXPECT_EQ(written(), 0U);
}

// ---- a document without a command ----

TEST_F(Command, ADocumentAloneIsViewed) {
  const std::string noDisplay = "DISPLAY= " + tavrel + " ";
  for (const std::string &argument :
       {documents + "/two-columns.pdf", std::string("missing.pdf"), std::string("./x"), std::string("file:///missing"),
        std::string("paper#page=3"), file("without-an-ending", "")}) {
    const CommandResult result = run(noDisplay + argument), viewed = run(noDisplay + "view " + argument);
    EXPECT_EQ(result.output, viewed.output) << argument;
    EXPECT_EQ(result.status, viewed.status) << argument;
    EXPECT_NE(result.status, tools::exitUsage) << argument << "\n" << result.output;
  }
}

TEST_F(Command, OptionsOfViewFollowADocumentAlone) {
  EXPECT_NE(run(tavrel + " paper.pdf --print-resources").output.find("*background"), std::string::npos);
}

TEST_F(Command, AFileNamedLikeACommandIsThatCommand) {
  file("render", "");
  const CommandResult result = run("cd " + folder.string() + " && " + tavrel + " render");
  EXPECT_EQ(result.status, tools::exitUsage) << result.output;
}

TEST_F(Command, AMistypedCommandIsNoDocument) {
  const CommandResult result = run(tavrel + " rneder a.pdf b.xml");
  EXPECT_EQ(result.status, tools::exitUsage);
  EXPECT_NE(result.output.find("rneder"), std::string::npos) << result.output;
}

// ---- numbers ----

// Every option that takes a number, and numbers just outside of its range.
struct NumericOption {
  const char *command, *option;
  std::vector<std::string> outside;
};

std::vector<NumericOption> numericOptions() {
  return {{"render d.pdf h.xml", "--dpi", {"7.999", "1200.001", "0", "1e4"}},
          {"render d.pdf h.xml", "--hits-limit", {"0", "4096", "1.5", "1e2"}},
          {"view d.pdf", "--hits-limit", {"0", "4096", "1.5", "1e2"}},
          {"view d.pdf", "--document-memory", {"63", "1048577", "64.5", "1e3"}},
          {"render d.pdf h.xml", "--document-memory", {"63", "1048577", "64.5", "1e3"}},
          {"hits d.pdf word", "--document-memory", {"63", "1048577", "64.5", "1e3"}},
          {"view d.pdf", "--page-time", {"0", "3601", "1.5", "1e1"}},
          {"render d.pdf h.xml", "--page-time", {"0", "3601", "1.5", "1e1"}},
          {"hits d.pdf word", "--page-time", {"0", "3601", "1.5", "1e1"}},
          {"view d.pdf", "--into", {"0", "4294967296", "0x100000000", "0x", "1.5", "window"}},
          {"view d.pdf", "--geometry", {"0x0", "40000x100", "100x40000", "100x100+99999+0", "100", "x", "+5"}}};
}

// Texts that are not numbers or not finite.
const char *const notNumbers[] = {"",       "nan",  "NaN",      "-nan", "inf", "-inf", "infinity", "1e999",
                                  "-1e999", "-100", "many",     "12ab", "1,5", "1 00", " 100",     "100 ",
                                  "0x64g",  "--",   "100\t100", "+",    ".",   "e5",   "\xC3\xBC", "1e"};

TEST_F(Command, ANumericOptionRefusesAnythingButANumberOfItsRange) {
  for (const NumericOption &numeric : numericOptions()) {
    std::vector<std::string> values(std::begin(notNumbers), std::end(notNumbers));
    values.insert(values.end(), numeric.outside.begin(), numeric.outside.end());
    for (const std::string &value : values) {
      const std::string arguments = std::string(numeric.command) + " " + numeric.option + "='" + value + "'";
      const CommandResult result = run(tavrel + " " + arguments + " </dev/null");
      EXPECT_EQ(result.status, tools::exitUsage) << arguments << "\n" << result.output;
      EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 1) << arguments << "\n" << result.output;
      EXPECT_NE(result.output.find(numeric.option), std::string::npos) << arguments << "\n" << result.output;
    }
  }
}

TEST_F(Command, EveryNumericOptionOfTheHelpIsTested) {
  const std::vector<NumericOption> tested = numericOptions();
  int found = 0;
  for (const std::string command : {"view", "render", "hits"}) {
    std::istringstream help(run(tavrel + " " + command + " --help").output);
    for (std::string line; std::getline(help, line);) {
      EXPECT_EQ(line.find(" FLOAT"), std::string::npos) << "has no check: " << line;
      EXPECT_EQ(line.find(" INT"), std::string::npos) << "has no check: " << line;
      EXPECT_EQ(line.find(" UINT"), std::string::npos) << "has no check: " << line;
      if (line.find(" NUMBER") == std::string::npos) continue;
      ++found;
      EXPECT_TRUE(std::any_of(tested.begin(), tested.end(),
                              [&](const NumericOption &one) {
                                return std::string(one.command).starts_with(command) &&
                                       line.find(one.option) != std::string::npos;
                              }))
          << command << ": " << line;
    }
  }
  EXPECT_GE(found, 3);
}

TEST_F(Command, ANumericOptionTakesTheEndsOfItsRange) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=0 pos=0 len=1>"));
  const std::string document =
      file("small.pdf", test::pdfOf({{.texts = {{.x = 5, .y = 5, .text = "x"}}, .width = 40, .height = 40}}));
  for (const char *options : {"--dpi 8", "--dpi 1200", "--dpi 72.5", "--hits-limit 1", "--hits-limit 4095",
                              "--document-memory 64", "--document-memory 1048576", "--page-time 1", "--page-time 3600"})
    EXPECT_EQ(render(document, hits, options).status, tools::exitDone) << options;
}

// ---- files that are not highlight files ----

TEST_F(Command, AnEndlessHighlightFileIsRefusedAtTheLimit) {
  const std::string document = documents + "/two-columns.pdf";
  const CommandResult device = render(document, "/dev/zero");
  EXPECT_EQ(device.status, tools::exitHighlightFile);
  EXPECT_EQ(device.output, "tavrel: /dev/zero: it is larger than 64 MB (--hits-limit raises the limit)\n");
  const CommandResult pipe =
      run("yes | TAVREL_HITS_LIMIT=2 " + tavrel + " render " + document + " - --out " + std::string(folder / "out"));
  EXPECT_EQ(pipe.status, tools::exitHighlightFile);
  EXPECT_EQ(pipe.output, "tavrel: standard input: it is larger than 2 MB (--hits-limit raises the limit)\n");
  EXPECT_EQ(render(document, "/dev/zero", "--hits-limit 3").output,
            "tavrel: /dev/zero: it is larger than 3 MB (--hits-limit raises the limit)\n");
}

TEST_F(Command, AWrongLimitInTheEnvironmentIsIgnored) {
  const CommandResult help = run("TAVREL_HITS_LIMIT=junk " + tavrel + " hits --help");
  EXPECT_EQ(help.status, 0) << help.output;
  const std::string document = documents + "/two-columns.pdf";
  EXPECT_EQ(run("TAVREL_HITS_LIMIT=junk " + tavrel + " render " + document + " /dev/zero").output,
            "tavrel: /dev/zero: it is larger than 64 MB (--hits-limit raises the limit)\n");
}

TEST_F(Command, ADocumentGivenAsHighlightFileIsRefusedAsPdf) {
  const std::string document = documents + "/two-columns.pdf";
  const CommandResult result = render(document, document);
  EXPECT_EQ(result.status, tools::exitHighlightFile);
  EXPECT_EQ(result.output, "tavrel: " + document + ": this is a PDF, not a highlight file\n");
}

// ---- passwords ----

TEST_F(Command, APasswordIsReadFromAFile) {
  const std::string document = documents + "/encrypted.pdf";
  const std::string right = file("right", "secret\nnot this line\n");
  const std::string hits = folder / "hits.xml";
  ASSERT_EQ(run(tavrel + " hits " + document + " the -o " + hits + " --password-file " + right).status,
            tools::exitDone);
  EXPECT_EQ(render(document, hits, "--dpi 20 --password-file " + right).status, tools::exitDone);
  EXPECT_EQ(render(document, hits, "--password-file " + file("wrong", "wrong\r\n")).status, tools::exitPassword);
}

TEST_F(Command, APasswordIsReadFromStandardInputBeforeTheHits) {
  const std::string document = documents + "/encrypted.pdf";
  const std::string secret = file("secret", "secret\n");
  const std::string hits = folder / "hits.xml";
  ASSERT_EQ(run(tavrel + " hits " + document + " the -o " + hits + " --password-file - < " + secret).status,
            tools::exitDone);
  EXPECT_EQ(
      render(document, "-", "--dpi 20 --password-file - < " + file("both", test::bytesOf(secret) + test::bytesOf(hits)))
          .status,
      tools::exitDone);
}

TEST_F(Command, APasswordFileWithoutAPasswordIsReported) {
  const std::string document = documents + "/encrypted.pdf";
  const std::pair<std::string, const char *> table[] = {
      {folder / "missing", "missing: No such file or directory"},
      {folder, "Is a directory"},
      {file("empty", ""), "empty: there is no password in its first line"},
      {file("newline", "\nsecret\n"), "newline: there is no password in its first line"},
      {"/dev/zero", "/dev/zero: its first line is too long for a password"},
      {file("secret", "user\n") + " --password user", "--password"},
  };
  for (const auto &[argument, expected] : table)
    for (const std::string &command : {"hits " + document + " word", "view " + document}) {
      const CommandResult result = run(tavrel + " " + command + " --password-file " + argument);
      EXPECT_EQ(result.status, tools::exitUsage) << argument << "\n" << result.output;
      EXPECT_NE(result.output.find(expected), std::string::npos) << result.output;
      EXPECT_EQ(std::count(result.output.begin(), result.output.end(), '\n'), 1) << result.output;
    }
}

TEST_F(Command, WithoutPlugInsTheSearchedDirectoriesAreNamed) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=1 pos=0 len=1>"));
  copyProgramsTo(folder / "bin"); // there are no plug-ins in the directory of this installation
  const CommandResult result =
      run("HOME= TAVREL_PLUGIN_PATH= " + std::string(folder / "bin/tavrel") + " render " + documents +
          "/two-columns.pdf " + hits + " --plugins-dir " + std::string(folder / "mine"));
  EXPECT_EQ(result.status, tools::exitHostFailure);
  EXPECT_NE(result.output.find(folder / "mine"), std::string::npos) << result.output;
}

TEST_F(Command, PlugInsBesideTheProgramOrInTheCurrentDirectoryAreNotLoaded) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=1 pos=0 len=1>"));
  const fs::path bin = folder / "bin";
  copyProgramsTo(bin);
  fs::create_directory_symlink(TAVREL_PLUGINS, bin / "plugins");
  const CommandResult result = run("cd " + bin.string() + " && HOME=. TAVREL_PLUGIN_PATH= ./tavrel render " +
                                   documents + "/two-columns.pdf " + hits);
  EXPECT_EQ(result.status, tools::exitHostFailure) << result.output;
  EXPECT_NE(result.output.find("there is no plug-in that takes highlight files"), std::string::npos) << result.output;
}

TEST_F(Command, AnInstallationThatWasMovedFindsItsPlugIns) {
  if (fs::path(TAVREL_BINDIR).is_absolute() || fs::path(TAVREL_LIBDIR).is_absolute())
    GTEST_SKIP() << "absolute paths of the configuration do not move with the program";
  const std::string hits = file("hits.xml", locations("", "<loc pg=1 pos=0 len=1>"));
  const fs::path plugins = folder / TAVREL_LIBDIR / "tavrel/plugins";
  copyProgramsTo(folder / TAVREL_BINDIR);
  fs::create_directories(plugins.parent_path());
  fs::create_directory_symlink(TAVREL_PLUGINS, plugins);
  const CommandResult result =
      run("HOME= TAVREL_PLUGIN_PATH= " + std::string(folder / TAVREL_BINDIR / "tavrel") + " render " + documents +
          "/two-columns.pdf " + hits + " --dpi 20 --out " + std::string(folder / "out"));
  EXPECT_EQ(result.status, tools::exitDone) << result.output;
}

TEST_F(Command, AMissingProgramIsNamedWithThePlacesWhereItMayBe) {
  if (fs::path(TAVREL_BINDIR).is_absolute()) GTEST_SKIP() << "absolute paths of the configuration do not move";
  fs::create_directories(folder / "bin");
  fs::copy_file(tavrel, folder / "bin/tavrel");
  const std::string moved = folder / "bin/tavrel";
  const CommandResult hits = run(moved + " hits " + documents + "/two-columns.pdf words -o -");
  EXPECT_EQ(hits.status, tools::exitHostFailure);
  EXPECT_NE(
      hits.output.find("tavrel-document cannot be started: No such file or directory; nor is it in " + folder.string()),
      std::string::npos)
      << hits.output;
  const CommandResult version = run(moved + " --version --verbose");
  EXPECT_EQ(version.status, tools::exitHostFailure);
  EXPECT_NE(version.output.find("tavrel-document: No such file or directory"), std::string::npos) << version.output;
}

TEST_F(Command, BothProgramsThatReadDocumentsReportTheirConfinement) {
  const CommandResult result = run(tavrel + " --version --verbose");
  EXPECT_EQ(result.status, tools::exitDone);
  const size_t second = result.output.find(host::structureProgram().string() + ":\n");
  EXPECT_LT(result.output.find(host::documentProgram().string() + ":\n"), second);
  ASSERT_NE(second, std::string::npos) << result.output;
  for (const size_t from : {size_t{0}, second})
    EXPECT_NE(result.output.find("no privileges\n", from), std::string::npos) << result.output;
}

/// The number of processes with that text in their environment.
int processesWith(const std::string &text) {
  int found = 0;
  for (const auto &entry : fs::directory_iterator("/proc")) {
    std::ifstream environment(entry.path() / "environ", std::ios::binary);
    const std::string all((std::istreambuf_iterator<char>(environment)), std::istreambuf_iterator<char>());
    found += all.find(text) != std::string::npos;
  }
  return found;
}

TEST_F(Command, WithoutADisplayAPrivateOneIsStartedAndEnded) {
  const std::string hits = file("hits.xml", locations("", "<loc pg=1 pos=0 len=1>"));
  const std::string mark = "TAVREL_TEST_MARK=" + folder.string();
  const CommandResult result = run("env -u DISPLAY '" + mark + "' " + tavrel + " render " + documents +
                                   "/two-columns.pdf " + hits + " --dpi 20 --out " + std::string(folder / "out"));
  EXPECT_EQ(result.status, tools::exitDone) << result.output;
  EXPECT_EQ(written(), 1U);
  EXPECT_EQ(processesWith(mark), 0) << "a display server still runs";
}

} // namespace
