#include "store/whole_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "tests/fakes/failing_files.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

namespace fs = std::filesystem;
using testing_world::FailingFiles;
using testing_world::ReadFile;
using testing_world::TemporaryFolder;

std::ptrdiff_t CountIn(const std::string& folder) {
  return std::distance(fs::directory_iterator(folder), fs::directory_iterator());
}

TEST(WholeFile, EachCallThatFailsIsToldAndLeavesOneWholeContent) {
  for (const FileKind kind : {FileKind::Operators, FileKind::Own, FileKind::Any}) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("file");
    ASSERT_FALSE(WriteWholeFile(path, "old", kind));
    int failed = 0;
    for (;; ++failed) {
      FailingFiles files(failed, ENOSPC);
      const auto reason = WriteWholeFile(path, "new", kind);
      if (!files.HasFailed()) break;
      // Nothing hangs on the removal of a leftover nor on the closing of the folder.
      const bool matters =
          files.Failed() != "remove" && !(files.Failed() == "close" && files.Renamed());
      EXPECT_EQ(reason, matters ? std::optional<std::string>("kein Platz mehr") : std::nullopt)
          << files.Failed();
      EXPECT_EQ(ReadFile(path), files.Renamed() ? "new" : "old") << files.Failed();
      EXPECT_EQ(CountIn(folder.Path()), 1) << files.Failed();
      ASSERT_FALSE(WriteWholeFile(path, "old", kind));
    }
    EXPECT_GE(failed, 7);  // open, write, sync, close, rename; open and sync of the folder
    EXPECT_EQ(ReadFile(path), "new");
  }
}

TEST(WholeFile, OnlyTheOperatorsLinksAreFollowed) {
  const TemporaryFolder folder;
  const auto plant = [&](const std::string& name) {
    fs::remove(folder.Path(name));
    std::ofstream(folder.Path("victim")) << "victim";
    fs::create_symlink(folder.Path("victim"), folder.Path(name));
  };
  const std::string path = folder.Path("link");
  plant("link");
  EXPECT_FALSE(WriteWholeFile(path, "new"));
  EXPECT_EQ(ReadFile(folder.Path("victim")), "new");
  EXPECT_TRUE(fs::is_symlink(path));

  plant("link");
  plant("link.neu");
  plant("link." + std::to_string(getpid()));
  std::string bytes;
  EXPECT_EQ(ReadWholeFile(path, 100, bytes, FileKind::Own),
            "die Verknüpfung führt zu keiner Datei");
  for (const FileKind kind : {FileKind::Own, FileKind::Operators}) {
    EXPECT_FALSE(WriteWholeFile(path, "own", kind));
    EXPECT_EQ(ReadFile(path), "own");
    EXPECT_EQ(ReadFile(folder.Path("victim")), "victim");
    EXPECT_FALSE(fs::is_symlink(path));
  }
}

TEST(WholeFile, WhatIsNoFileKeepsNobodyWaiting) {
  const TemporaryFolder folder;
  std::string bytes;
  const std::string pipe = folder.Path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(ReadWholeFile(pipe, 100, bytes), "das ist keine gewöhnliche Datei");
  EXPECT_EQ(WriteWholeFile(pipe, "x"), "das ist keine gewöhnliche Datei");
  EXPECT_EQ(ReadWholeFile(folder.Path(), 100, bytes, FileKind::Any), "das ist ein Ordner");
  EXPECT_EQ(WriteWholeFile(folder.Path(), "x"), "das ist ein Ordner");
  EXPECT_EQ(WriteWholeFile("/dev/full", "x", FileKind::Any), "kein Platz mehr");
  fs::create_symlink("loop", folder.Path("loop"));
  EXPECT_TRUE(WriteWholeFile(folder.Path("loop"), "x"));
  EXPECT_EQ(ReadWholeFile(folder.Path("none"), 100, bytes), "nicht gefunden");
}

TEST(WholeFile, KeepsItsPermissionsAndTakesLongNames) {
  const TemporaryFolder folder;
  const std::string path = folder.Path(std::string(255, 'x'));
  ASSERT_FALSE(WriteWholeFile(path, "old"));
  ASSERT_EQ(chmod(path.c_str(), 0600), 0);
  EXPECT_FALSE(WriteWholeFile(path, "new"));
  struct stat state {};
  ASSERT_EQ(stat(path.c_str(), &state), 0);
  EXPECT_EQ(state.st_mode & 0777U, 0600U);
}

}  // namespace
}  // namespace kelvo
