// SPDX-FileCopyrightText: 2026 The Tavrel developers
// SPDX-License-Identifier: GPL-2.0-or-later
// Output files that appear only when complete; images as PNG; the lines and the progress bar.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <png.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>

#include "support/pdf.h"
#include "tools/failure.h"
#include "tools/output.h"
#include "tools/png.h"
#include "tools/progress.h"

namespace {

namespace fs = std::filesystem;

// The steps on the disk, and one that fails: the functions below replace those of the C library.
struct Disk {
  std::vector<std::string> steps; ///< "sync file", "sync directory", "rename"
  std::string failing;
  bool step(const std::string &name) {
    steps.push_back(name);
    if (name != failing) return true;
    errno = EIO;
    return false;
  }
} disk;

} // namespace

extern "C" int fsync(int descriptor) {
  struct stat status {};
  fstat(descriptor, &status);
  return disk.step(S_ISDIR(status.st_mode) ? "sync directory" : "sync file") ? 0 : -1;
}

extern "C" int rename(const char *from, const char *to) noexcept {
  // Closed, at its final size.
  for (const auto &open : fs::directory_iterator("/proc/self/fd"))
    EXPECT_NE(fs::exists(open) ? fs::read_symlink(open).string() : "", from);
  return disk.step("rename " + std::to_string(fs::file_size(from))) ? renameat(AT_FDCWD, from, AT_FDCWD, to) : -1;
}

namespace {

struct Output : testing::Test {
  // The number of files in the directory, finished or not.
  size_t files() const {
    return static_cast<size_t>(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()));
  }
  std::string failure(const fs::path &path) const {
    try {
      tools::OutputFile file(path);
      file.commit();
    } catch (const tools::CommandFailure &error) {
      EXPECT_EQ(error.status, tools::exitOutput);
      return error.what();
    }
    return "";
  }
  ~Output() override { disk = {}; }
  test::ScratchFolder folder;
};

TEST_F(Output, AppearsWhenItIsCommitted) {
  const fs::path path = folder.path() / "a";
  tools::OutputFile file(path);
  std::fputs("all of it", file.stream());
  EXPECT_FALSE(fs::exists(path));
  file.commit();
  EXPECT_EQ(test::bytesOf(path), "all of it");
  EXPECT_EQ(files(), 1U);
}

TEST_F(Output, LeavesNothingIfItIsNotCommitted) {
  { const tools::OutputFile file(folder.path() / "a"); }
  EXPECT_EQ(files(), 0U);
}

TEST_F(Output, LeavesTheOldFileUntilTheNewOneIsComplete) {
  const fs::path path = folder.write("a", "old");
  { const tools::OutputFile file(path); }
  EXPECT_EQ(test::bytesOf(path), "old");
}

TEST_F(Output, NamesTheDirectoryThatIsMissing) {
  const fs::path directory = folder.path() / "b/c";
  EXPECT_EQ(failure(directory / "a"), directory.string() + ": No such file or directory");
  EXPECT_FALSE(fs::exists(folder.path() / "b"));
}

TEST_F(Output, DirectoriesAreCreatedOnRequest) {
  const fs::path directory = folder.path() / "b/c";
  tools::makeDirectories(directory);
  tools::makeDirectories(directory);
  EXPECT_EQ(failure(directory / "a"), "");
}

TEST_F(Output, NamesThePathThatCannotBeWritten) {
  const fs::path file = folder.write("file", "");
  EXPECT_EQ(failure(file / "a"), file.string() + ": Not a directory");
  fs::create_directory(folder.path() / "directory");
  EXPECT_EQ(failure(folder.path() / "directory"), (folder.path() / "directory").string() + ": Is a directory");
  EXPECT_EQ(files(), 2U);
}

TEST_F(Output, AFullDiskIsAnErrorAndLeavesNothing) {
  const fs::path path = folder.path() / "a";
  tools::OutputFile file(path);
  ASSERT_NE(std::freopen("/dev/full", "wb", file.stream()), nullptr);
  std::fputs("more than fits", file.stream());
  EXPECT_THROW(file.commit(), tools::CommandFailure);
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(Output, AFullDiskIsReportedAsTheReason) {
  const fs::path path = folder.path() / "a";
  tools::OutputFile file(path);
  ASSERT_NE(std::freopen("/dev/full", "wb", file.stream()), nullptr);
  try {
    file.write(std::string(100'000, 'x'));
    ADD_FAILURE() << "more than fits";
  } catch (const tools::CommandFailure &error) {
    EXPECT_EQ(error.status, tools::exitOutput);
    EXPECT_EQ(error.what(), path.string() + ": No space left on device");
  }
}

TEST_F(Output, IsSynchronizedBeforeTheRenameAndTheDirectoryAfterIt) {
  tools::OutputFile file(folder.path() / "a");
  file.write("all of it");
  EXPECT_EQ(disk.steps, std::vector<std::string>{});
  file.commit();
  EXPECT_EQ(disk.steps, (std::vector<std::string>{"sync file", "rename 9", "sync directory"}));
}

TEST_F(Output, LeavesTheOldFileIfTheDiskFails) {
  const fs::path target = folder.write("a", "old");
  for (const char *step : {"sync file", "rename 3"}) {
    disk.failing = step;
    {
      tools::OutputFile file(target);
      file.write("new");
      EXPECT_THROW(file.commit(), tools::CommandFailure) << step;
    }
    EXPECT_EQ(test::bytesOf(target), "old") << step;
    EXPECT_EQ(files(), 1U) << step;
  }
}

TEST_F(Output, ReportsThatADirectoryCannotBeSynchronized) {
  disk.failing = "sync directory";
  EXPECT_EQ(failure(folder.path() / "a"), folder.path().string() + ": cannot be synchronized: Input/output error");
  EXPECT_TRUE(fs::exists(folder.path() / "a"));
}

TEST_F(Output, HasAnUnpredictableNameUntilThen) {
  const tools::OutputFile one(folder.path() / "a"), other(folder.path() / "a");
  std::vector<std::string> names;
  for (const auto &entry : fs::directory_iterator(folder.path()))
    names.push_back(entry.path().filename());
  ASSERT_EQ(names.size(), 2U);
  EXPECT_THAT(names, testing::Each(testing::MatchesRegex("\\.tavrel-[0-9a-f]{16}\\.part")));
}

TEST_F(Output, AFileOfTheLongestNameCanBeWritten) {
  const fs::path target = folder.path() / std::string(NAME_MAX, 'n');
  EXPECT_EQ(failure(target), "");
  EXPECT_TRUE(fs::exists(target));
}

TEST_F(Output, ReplacesALinkAndNotItsTarget) {
  const fs::path target = folder.write("target", "old"), link = folder.path() / "a";
  fs::create_symlink(target, link);
  EXPECT_EQ(failure(link), "");
  EXPECT_TRUE(fs::is_regular_file(fs::symlink_status(link)));
  EXPECT_EQ(test::bytesOf(target), "old");
}

TEST_F(Output, ANewFileHasThePermissionsOfTheUmask) {
  const mode_t before = umask(027);
  EXPECT_EQ(failure(folder.path() / "a"), "");
  umask(before);
  EXPECT_EQ(fs::status(folder.path() / "a").permissions(), fs::perms(0640));
}

TEST_F(Output, APrivateFileIsPrivateFromTheStart) {
  const fs::path target = folder.write("a", "old");
  fs::permissions(target, fs::perms(0600));
  tools::OutputFile file(target);
  struct stat status {};
  ASSERT_EQ(fstat(fileno(file.stream()), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600U);
  file.commit();
  EXPECT_EQ(fs::status(target).permissions(), fs::perms(0600));
}

TEST_F(Output, AChildProcessDoesNotInheritTheFile) {
  const tools::OutputFile file(folder.path() / "a");
  EXPECT_NE(fcntl(fileno(file.stream()), F_GETFD) & FD_CLOEXEC, 0);
}

host::Image threeColours() { return {3, 1, {0xFFFF0000, 0xFF00FF00, 0xFF0000FF}}; }

TEST_F(Output, APngHasThePixelsOfTheImage) {
  const fs::path path = folder.path() / "a.png";
  tools::OutputFile file(path);
  ASSERT_TRUE(tools::writePng(file.stream(), threeColours(), 100));
  file.commit();
  png_image png{};
  png.version = PNG_IMAGE_VERSION;
  ASSERT_NE(png_image_begin_read_from_file(&png, path.c_str()), 0);
  png.format = PNG_FORMAT_RGB;
  std::vector<uint8_t> bytes(PNG_IMAGE_SIZE(png));
  ASSERT_NE(png_image_finish_read(&png, nullptr, bytes.data(), 0, nullptr), 0);
  EXPECT_EQ(png.width, 3U);
  EXPECT_EQ(png.height, 1U);
  EXPECT_THAT(bytes, testing::ElementsAre(255, 0, 0, 0, 255, 0, 0, 0, 255));
}

TEST_F(Output, APngHasItsDotsPerInch) {
  const fs::path path = folder.path() / "a.png";
  tools::OutputFile file(path);
  ASSERT_TRUE(tools::writePng(file.stream(), threeColours(), 100));
  file.commit();
  // 3937 pixels a metre, twice, and the unit metre.
  EXPECT_THAT(test::bytesOf(path), testing::HasSubstr(std::string("pHYs\0\0\x0F\x61\0\0\x0F\x61\x01", 13)));
}

TEST_F(Output, APngInMemoryIsTheSameFile) {
  const fs::path path = folder.path() / "a.png";
  tools::OutputFile file(path);
  ASSERT_TRUE(tools::writePng(file.stream(), threeColours(), 100));
  file.commit();
  EXPECT_EQ(tools::pngOf(threeColours(), 100), test::bytesOf(path));
}

TEST_F(Output, AnImageThatNoPngCanHoldIsRefused) {
  const tools::OutputFile file(folder.path() / "a.png");
  testing::internal::CaptureStderr(); // the library prints a message, too
  EXPECT_FALSE(tools::writePng(file.stream(), host::Image{}, 100));
  testing::internal::GetCapturedStderr();
}

TEST_F(Output, AFileGetsTheLinesWithoutTheBar) {
  const fs::path path = folder.path() / "lines";
  FILE *stream = std::fopen(path.c_str(), "w");
  {
    tools::Progress progress(stream);
    progress.print("one");
    progress.show(1, 2);
    progress.print("two");
  }
  std::fclose(stream);
  EXPECT_EQ(test::bytesOf(path), "one\ntwo\n");
}

TEST_F(Output, ATerminalGetsTheBarBelowTheLines) {
  const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_GE(terminal, 0);
  ASSERT_EQ(grantpt(terminal), 0);
  ASSERT_EQ(unlockpt(terminal), 0);
  FILE *stream = std::fopen(ptsname(terminal), "w");
  ASSERT_NE(stream, nullptr);
  {
    tools::Progress progress(stream);
    progress.print("one");
    progress.show(1, 2);
    progress.print("two");
  }
  std::fclose(stream);
  std::string text; // a terminal returns it in pieces, and an error at the end
  for (char byte = 0; read(terminal, &byte, 1) == 1;)
    text += byte;
  close(terminal);
  EXPECT_EQ(text, "one\r\n\r[" + std::string(20, '#') + std::string(20, '-') + "] 1/2\r\033[Ktwo\r\n");
}

} // namespace
