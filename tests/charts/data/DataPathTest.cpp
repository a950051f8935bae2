#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "charts/data/DataPath.h"
#include "charts/data/LoadTable.h"
#include "charts/data/TableText.h"

namespace ostrel::charts {
namespace {

namespace fs = std::filesystem;

/// chart/            the chart's folder
///   in.csv, sub/deep.csv, ok -> sub, leak -> ../secret.csv, out -> .., to-root -> ../root/r.csv, gone ->
///   nowhere, pipe
/// root/r.csv        the data root
/// secret.csv, chart-not/x.csv
class DataPathTest : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "data-path-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    top_ = fs::canonical(name);
    for (char const* folder : {"chart/sub", "root", "chart-not"}) fs::create_directories(top_ / folder);
    for (char const* file :
         {"chart/in.csv", "chart/sub/deep.csv", "root/r.csv", "secret.csv", "chart-not/x.csv"}) {
      std::ofstream(top_ / file) << "a\n1\n";
    }
    fs::create_symlink("sub", top_ / "chart/ok");
    fs::create_symlink("../secret.csv", top_ / "chart/leak");
    fs::create_symlink("..", top_ / "chart/out");
    fs::create_symlink("../root/r.csv", top_ / "chart/to-root");
    fs::create_symlink("nowhere", top_ / "chart/gone");
    fs::create_symlink("loop", top_ / "chart/loop");
    ASSERT_EQ(mkfifo((top_ / "chart/pipe").c_str(), 0600), 0);
    alone_ = {top_ / "chart", {}};
    both_ = {top_ / "chart", top_ / "root"};
  }
  void TearDown() override { fs::remove_all(top_); }

  std::string Refusal(std::string const& path, DataRoots const& roots) const {
    auto const message = MessageOf([&] { ReadDataFile(path, roots); });
    EXPECT_EQ(MessageOf([&] { ResolveDataPath(path, roots); }), message);
    return message;
  }

  fs::path top_;
  DataRoots alone_;
  DataRoots both_;
};

TEST_F(DataPathTest, FilesBelowTheFoldersAreRead) {
  struct Case {
    std::string path;
    DataRoots roots;
    fs::path file;
  };
  Case const cases[] = {{"in.csv", alone_, "chart/in.csv"},
                        {"sub/../in.csv", alone_, "chart/in.csv"},
                        {"./sub//deep.csv", alone_, "chart/sub/deep.csv"},
                        {"ok/deep.csv", alone_, "chart/sub/deep.csv"},
                        {(top_ / "chart/in.csv").string(), alone_, "chart/in.csv"},
                        {"r.csv", both_, "root/r.csv"},
                        {"../root/r.csv", both_, "root/r.csv"},
                        {"to-root", both_, "root/r.csv"},
                        {(top_ / "root/r.csv").string(), both_, "root/r.csv"},
                        {"in.csv", {top_ / "chart/", top_ / "root/"}, "chart/in.csv"}};
  for (auto const& [path, roots, file] : cases) {
    EXPECT_EQ(ResolveDataPath(path, roots), top_ / file) << path;
    EXPECT_EQ(ReadDataFile(path, roots).Get(), "a\n1\n") << path;
  }
}

TEST_F(DataPathTest, WhatLeavesTheFoldersIsRefused) {
  auto const secret = (top_ / "secret.csv").string();
  struct Case {
    std::string path;
    DataRoots roots;
    std::string cause;
  };
  Case const cases[] = {
      {"../secret.csv", alone_, "leaves the chart's folder"},
      {"../no-such-file.csv", alone_, "leaves the chart's folder"},
      {"../chart-not/x.csv", alone_, "leaves the chart's folder"},
      {"../root/r.csv", alone_, "leaves the chart's folder"},
      {secret, alone_, "leaves the chart's folder"},
      {"/etc/passwd", both_, "leaves the chart's folder and the data root"},
      {"../secret.csv", both_, "leaves the chart's folder and the data root"},
      {"leak", alone_, "leaves the chart's folder through a symbolic link"},
      {"leak", both_, "leaves the chart's folder and the data root through a symbolic link"},
      {"out/secret.csv", alone_, "leaves the chart's folder through a symbolic link"},
      {"to-root", alone_, "leaves the chart's folder through a symbolic link"},
      {"ok/../../secret.csv", alone_, "leaves the chart's folder"},
      {"http://example.com/a.csv", alone_, "is a URL; data are read from files only"},
      {"file:///etc/passwd", alone_, "is a URL; data are read from files only"},
      {"data:text/csv,a", alone_, "is a URL; data are read from files only"},
      {"//example.com/a.csv", alone_, "is a URL; data are read from files only"},
      {"none.csv", alone_, "cannot be read: No such file or directory"},
      {"none.csv", both_, "cannot be read: No such file or directory"},
      {"gone", alone_, "cannot be read: No such file or directory"},
      {"loop", alone_, "cannot be read: Too many levels of symbolic links"},
      {"in.csv/x", alone_, "cannot be read: Not a directory"},
      {"sub", alone_, "is a folder, not a file"},
      {".", alone_, "is a folder, not a file"},
      {"pipe", alone_, "is not a regular file"},
  };
  for (auto const& [path, roots, cause] : cases) EXPECT_EQ(Refusal(path, roots), path + ": " + cause);
  EXPECT_EQ(Refusal("", alone_), "data file: the path is empty");
  EXPECT_EQ(Refusal(std::string("in.csv\0x", 8), alone_), "data file: the path holds a NUL character");
  EXPECT_EQ(Refusal("in.csv", {top_ / "chart", top_ / "none"}),
            (top_ / "none").string() + ": the data folder cannot be read: No such file or directory");
}

TEST_F(DataPathTest, HugeFilesAreRefusedUnread) {
  fs::resize_file(top_ / "chart/in.csv", std::uintmax_t{1} << 40);
  EXPECT_EQ(MessageOf([&] { ReadDataFile("in.csv", alone_); }),
            "in.csv: 1099511627776 bytes; at most 2147483647 are read");
}

TEST_F(DataPathTest, TablesAreNamedAsTheChartNamesThem) {
  std::ofstream(top_ / "chart/sub/bad.csv") << "a,b\n1\n";
  EXPECT_EQ(LoadFile("ok/deep.csv", alone_).sourceName, "ok/deep.csv");
  EXPECT_EQ(MessageOf([&] { LoadFile("sub/bad.csv", alone_); }), "sub/bad.csv:2: 1 field, the header has 2");
  EXPECT_EQ(
      MessageOf([&] { LoadFile("sub/notes.txt", alone_); }),
      "sub/notes.txt: the ending tells no format; name one of csv, tsv, json, text in the data's format");
}

}  // namespace
}  // namespace ostrel::charts
