#include "adapters/port_device.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <cstdlib>

#include "adapters/machine_ports.h"

namespace kelvo {
namespace {

TEST(PortDeviceTest, WhatIsNoLineIsNeitherReadyNorInUse) {
  EXPECT_EQ(StateOfDevice("/dev/null"), DeviceState::NotSerial);
  EXPECT_EQ(StateOfDevice("/etc/passwd"), DeviceState::NotSerial);
  EXPECT_EQ(StateOfDevice("/dev/no such line"), DeviceState::Missing);
  EXPECT_EQ(DescribeDevice("COM9"), "nicht vorhanden");
}

TEST(PortDeviceTest, ALinkThatWasMadeForAnotherLineLeadsNowhere) {
  const QTemporaryDir folder;
  const std::string link = folder.filePath(QStringLiteral("line")).toStdString();
  const auto open = [] {
    const int master = posix_openpt(O_RDWR | O_NOCTTY);
    unlockpt(master);
    return master;
  };
  const int first = open();
  ASSERT_EQ(symlink(ptsname(first), link.c_str()), 0);
  EXPECT_EQ(StateOfDevice(link), DeviceState::Ready);
  close(first);
  // The number is given away again; the system's clock goes in steps.
  struct stat made {};
  struct stat given {};
  lstat(link.c_str(), &made);
  int second = -1;
  do {
    if (second >= 0) close(second);
    second = open();
    stat(ptsname(second), &given);
  } while (given.st_ctim.tv_sec == made.st_ctim.tv_sec &&
           given.st_ctim.tv_nsec == made.st_ctim.tv_nsec);
  EXPECT_EQ(StateOfDevice(link), DeviceState::Missing);
  close(second);
}

}  // namespace
}  // namespace kelvo
