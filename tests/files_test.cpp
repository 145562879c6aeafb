#include "widgets/files.h"

#include <gtest/gtest.h>

#include "tests/fakes/full_disc.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

using testing_world::FullDisc;

TEST(FilesTest, AFullDiscIsToldAndLeavesTheOldFile) {
  const testing_world::TemporaryFolder folder;
  const std::string path = folder.Path("file");
  ASSERT_FALSE(WriteFile(path, "old"));
  // Short enough to wait in a buffer, and too long for one.
  for (const std::size_t size : {100u, 100'000u}) {
    std::optional<std::string> reason;
    {
      const FullDisc disc(50);
      reason = WriteFile(path, std::string(size, 'x'));
    }
    ASSERT_TRUE(reason);
    EXPECT_FALSE(reason->empty());
    EXPECT_EQ(testing_world::ReadFile(path), "old");
  }
  EXPECT_FALSE(WriteFile(path, "new"));
  EXPECT_EQ(ReadFile(path, 3), "new");
  EXPECT_FALSE(ReadFile(path, 2));
}

}  // namespace
}  // namespace kelvo
