#include "store/draft_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "store/file_lock.h"
#include "tests/fakes/failing_files.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

namespace fs = std::filesystem;
using testing_world::FailingFiles;
using testing_world::ReadFile;
using testing_world::TemporaryFolder;

TEST(DraftFileTest, WhateverFailsADraftIsSomewhere) {
  bool failed = true;
  for (int which = 0; failed; ++which) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("kelvo.entwurf");
    std::ofstream(path) << "left";
    DraftFile draft(path, "entwurf.wmf");
    draft.Remove();  // not its own
    std::optional<std::string> reason;
    {
      const FailingFiles files(which, ENOSPC);
      reason = draft.Write("new");
      failed = files.HasFailed();
    }
    const std::string aside = ReadFile(folder.Path("entwurf-1.wmf"));
    const std::string now = ReadFile(path);
    EXPECT_TRUE(aside == "left" || now == "left") << which;
    EXPECT_TRUE(now == "new" || reason) << which;
    if (!aside.empty()) draft.Remove();
    EXPECT_EQ(fs::exists(path), aside.empty()) << which;
  }
}

TEST(FileLockTest, LastsAsLongAsItsProgramWhateverLiesThere) {
  using Result = FileLock::Result;
  const TemporaryFolder folder;
  const std::string path = folder.Path("kelvo.lock");
  const std::string victim = folder.Path("victim");
  std::ofstream(victim) << "victim";
  fs::create_symlink(victim, path);
  {
    FileLock lock;
    EXPECT_EQ(lock.Take(path), Result::Held);
    EXPECT_EQ(FileLock().Take(path), Result::Taken);
  }
  EXPECT_FALSE(fs::exists(path));
  EXPECT_EQ(ReadFile(victim), "victim");
  std::ofstream(path) << "1\nkelvo\nhere\n";  // of a program that was killed; the number is in use
  EXPECT_EQ(FileLock().Take(path), Result::Held);
  EXPECT_EQ(FileLock().Take(folder.Path("missing/kelvo.lock")), Result::Impossible);
  // A full disc takes no new file.
  const FailingFiles files(0, ENOSPC);
  EXPECT_EQ(FileLock().Take(path), Result::Impossible);
}

}  // namespace
}  // namespace kelvo
