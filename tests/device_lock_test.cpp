#include "adapters/device_lock.h"

#include <gtest/gtest.h>

#include <unistd.h>
#include <QTemporaryDir>

#include <fstream>

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
  for (const char* family : {"\n", " minicom root\n"}) {
    std::ofstream(path + "/LCK..ttyX2") << "     " << getppid() << family;
    EXPECT_FALSE(lock.Take("/dev/ttyX2"));
    std::ofstream(path + "/LCK..ttyX2") << " 999999999" << family;  // beyond every process
    EXPECT_TRUE(lock.Take("/dev/ttyX2"));
    lock.Release();
  }
  EXPECT_TRUE(DeviceLock(path + "/missing").Take("/dev/ttyX1"));
}

}  // namespace
}  // namespace kelvo
