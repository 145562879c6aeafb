#include "adapters/device_lock.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

TEST(DeviceLockTest, LockOfAnyProgramThatRunsIsHonoured) {
  const QTemporaryDir folder;
  const std::string path = folder.path().toStdString();
  DeviceLock lock(path);
  EXPECT_TRUE(lock.Take("/dev/ttyX1"));
  EXPECT_FALSE(DeviceLock(path).Take("/dev/ttyX1"));
  lock.Release();
  EXPECT_TRUE(DeviceLock(path).Take("/dev/ttyX1"));
  EXPECT_TRUE(DeviceLock(path + "/missing").Take("/dev/ttyX1"));
}

TEST(DeviceLockTest, CountsAsLongAsTheProcessItNamesRuns) {
  const QTemporaryDir folder;
  const std::string path = folder.path().toStdString();
  const std::string file = path + "/LCK..ttyX2";
  const auto write = [&file](const std::string& text) {
    std::filesystem::remove(file);
    std::ofstream(file, std::ios::binary) << text;
  };
  const pid_t parent = getppid();
  const std::string number = std::to_string(parent);
  const std::string binary(reinterpret_cast<const char*>(&parent), sizeof(parent));
  DeviceLock lock(path);
  for (const std::string& alive :
       {number, "     " + number + "\n", number + " minicom root\n",
        number + "\nanother\nelsewhere\n", number + " minicom kelvo\n", binary}) {
    write(alive);
    EXPECT_FALSE(lock.Take("/dev/ttyX2")) << alive;
    EXPECT_EQ(lock.HolderOf("/dev/ttyX2"), parent) << alive;
    EXPECT_EQ(testing_world::ReadFile(file), alive);
  }
  const std::string none = "999999999";  // beyond every process
  for (const std::string& dead :
       {std::string(), std::string("\n"), std::string("no number\n"), "12x" + number, none,
        none + " minicom root\n", std::string("-1\n"), std::string("0"), std::string(5000, '\xff'),
        number + " kelvo\n",  // was killed, and its number given away
        std::to_string(getpid()) + "\n"}) {
    write(dead);
    EXPECT_EQ(lock.HolderOf("/dev/ttyX2"), 0) << dead;
    EXPECT_TRUE(lock.Take("/dev/ttyX2")) << dead;
    EXPECT_EQ(DeviceLock(path).HolderOf("/dev/ttyX2"), getpid());
    lock.Release();
    EXPECT_FALSE(std::filesystem::exists(file));
  }
  EXPECT_EQ(ProcessText(999999999), "Prozess 999999999");
}

TEST(DeviceLockTest, APlantedLinkIsNeitherFollowedNorALock) {
  const testing_world::TemporaryFolder folder;
  const std::string victim = folder.Path("victim");
  std::ofstream(victim) << getppid();
  for (const std::string& name : {std::string("LCK..ttyX3"), "LTMP." + std::to_string(getpid())}) {
    std::filesystem::create_symlink(victim, folder.Path(name));
    DeviceLock lock(folder.Path());
    EXPECT_TRUE(lock.Take("/dev/ttyX3"));
    EXPECT_FALSE(std::filesystem::is_symlink(folder.Path("LCK..ttyX3")));
    EXPECT_EQ(testing_world::ReadFile(victim), std::to_string(getppid()));
  }
}

}  // namespace
}  // namespace kelvo
