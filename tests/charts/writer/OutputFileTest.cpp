#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>
#include <string>

#include "charts/writer/OutputFile.h"

namespace {

namespace fs = std::filesystem;
using ostrel::charts::OutputFile;

class OutputFiles : public testing::Test {
 protected:
  OutputFiles() {
    folder_ = fs::temp_directory_path() / ("ostrel-output-" + std::to_string(std::random_device()()));
    fs::create_directories(folder_);
  }
  ~OutputFiles() override { fs::remove_all(folder_); }

  static std::string Read(fs::path const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }
  static void Write(fs::path const& path, std::string const& text) {
    OutputFile file(path);
    file.Write(text);
    file.Commit();
  }
  std::ptrdiff_t CountFiles() const { return std::distance(fs::directory_iterator(folder_), {}); }

  template <class Work>
  static std::string GetError(Work const& work) {
    try {
      work();
    } catch (std::runtime_error const& error) {
      return error.what();
    }
    return "no error";
  }

  fs::path folder_;
};

TEST_F(OutputFiles, HoldAllThatWasWrittenInPiecesOfEverySize) {
  fs::path const path = folder_ / "größe 漢字.svg";
  std::string expected;
  {
    OutputFile file(path);
    for (std::size_t size = 1; size < 1'200'000; size = size * 3 + 1) {
      std::string const piece(size, static_cast<char>('a' + size % 26));
      expected += piece;
      file.Write(piece);
    }
    EXPECT_FALSE(fs::exists(path));
    file.Commit();
  }
  EXPECT_EQ(Read(path), expected);
  EXPECT_EQ(CountFiles(), 1);
}

TEST_F(OutputFiles, LeaveWhatWasThereUntilTheyAreComplete) {
  fs::path const path = folder_ / "a.svg";
  Write(path, "old");
  fs::permissions(path, fs::perms::owner_read | fs::perms::owner_write);
  {
    OutputFile given(path);
    given.Write(std::string(1'000'000, 'x'));
  }
  EXPECT_EQ(Read(path), "old");
  EXPECT_EQ(CountFiles(), 1);
  Write(path, "new");
  EXPECT_EQ(Read(path), "new");
  EXPECT_EQ(fs::status(path).permissions(), fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(OutputFiles, FollowLinks) {
  fs::create_directory(folder_ / "there");
  for (char const* const name : {"first", "first", "second"}) {  // made, replaced, made
    fs::path const link = folder_ / (std::string(name) + ".svg");
    if (!fs::is_symlink(link)) fs::create_symlink(fs::path("there") / name, link);
    Write(link, name);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(Read(folder_ / "there" / name), name);
  }
}

TEST_F(OutputFiles, SayWhyTheyCannotBeWritten) {
  Write(folder_ / "file", "");
  struct Case {
    fs::path path;
    char const* cause;
  };
  Case const cases[] = {
      {folder_ / "none" / "a.svg", "No such file or directory"},
      {folder_ / "file" / "a.svg", "Not a directory"},
      {folder_, "Is a directory"},
      {"", "No such file or directory"},
      {folder_ / std::string(300, 'n'), "File name too long"},
      {"/dev/full", "No space left on device"},
  };
  for (Case const& test : cases)
    EXPECT_EQ(GetError([&] { Write(test.path, "text"); }),
              "cannot write " + test.path.string() + ": " + test.cause);
  EXPECT_EQ(CountFiles(), 1);
}

TEST_F(OutputFiles, TellOfAFullDiskWhileTheyAreWritten) {
  OutputFile file("/dev/full");
  EXPECT_EQ(GetError([&] {
              for (int i = 0; i < 100; ++i) file.Write(std::string(10'000, 'x'));
            }),
            "cannot write /dev/full: No space left on device");
}

TEST_F(OutputFiles, NeedAFolderAndAFileThatMayBeWritten) {
  Write(folder_ / "file", "old");
  fs::permissions(folder_ / "file", fs::perms::owner_read | fs::perms::others_read);
  fs::permissions(folder_, fs::perms::owner_read | fs::perms::owner_exec | fs::perms::others_read |
                               fs::perms::others_exec);
  constexpr uid_t kNobody = 65534;
  bool const isRoot = ::geteuid() == 0;
  if (isRoot && ::seteuid(kNobody) != 0) FAIL() << "cannot stop being root";  // root may write everywhere
  for (char const* const name : {"file", "other"}) {
    fs::path const path = folder_ / name;
    EXPECT_EQ(GetError([&] { Write(path, "new"); }), "cannot write " + path.string() + ": Permission denied");
  }
  if (isRoot && ::seteuid(0) != 0) FAIL() << "cannot be root again";
  fs::permissions(folder_, fs::perms::owner_all);
  EXPECT_EQ(Read(folder_ / "file"), "old");
}

}  // namespace
