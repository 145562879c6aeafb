#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QProcess>
#include <filesystem>
#include <iostream>
#include <random>
#include <set>

#include "tests/fakes/open_port.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/fire/fire_count.h"
#include "tests/fire/scenes.h"

// The real window is ended in the middle of whatever it is at.

namespace kelvo {
namespace {

using testing_world::kPatience;

class EndTest : public testing::Test {
 protected:
  EndTest() {
    folder.AddDatabase();
    PrepareScenes(folder.Path());
    std::filesystem::create_directory(folder.Path("tmp"));
  }
  std::set<std::string> Files() const {
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path())) {
      files.insert(entry.path().filename().string());
    }
    return files;
  }
  /// Ends the program so long after the scene has begun.
  void End(std::size_t scene, const char* way, int microseconds) {
    SCOPED_TRACE(std::string(kScenes[scene].what) + ", " + way + ", " +
                 std::to_string(microseconds) + " us");
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), QString::fromStdString(folder.Path("tmp")));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), QString::fromStdString(folder.Path()));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(KELVO_ENDER),
                  {QStringLiteral(KELVO_PROGRAM_DIR), QString::fromStdString(folder.Path()),
                   QString::number(scene), QString::number(microseconds), QString::fromUtf8(way)});
    while (!process.canReadLine()) {
      ASSERT_TRUE(process.waitForReadyRead(kPatience));
    }
    QElapsedTimer elapsed;
    elapsed.start();
    if (std::string(way) == "signal") process.terminate();
    ASSERT_TRUE(process.waitForFinished(kPatience));
    slowest = std::max(slowest, elapsed.elapsed());
    EXPECT_EQ(process.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(process.exitCode(), 0);
    ExpectNothingLeft(kScenes[scene].leaves);
    ++ends;
  }

  // The record of what was sent stays; no lock, no draft, nothing half-written.
  void ExpectNothingLeft(const std::string& begun) {
    std::set<std::string> files = {"bestand.txt", "halle.kelvo", "kelvo.mdb", "tmp"};
    if (!begun.empty()) files.insert(begun);
    EXPECT_EQ(Files(), files);
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path("tmp")));
    if (!begun.empty()) std::filesystem::remove(folder.Path(begun));
  }

  testing_world::TemporaryFolder folder;
  qint64 slowest = 0;  // ms
  int ends = 0;
};

TEST_F(EndTest, ItIsGoneAtOnceWhateverItIsAtAndLeavesNothingBehind) {
  std::mt19937 random(testing_world::FireSeed());
  const int count = testing_world::FireCount(static_cast<int>(std::size(kScenes)));
  const int longest = testing_world::LongFire() ? 300'000 : 50'000;  // microseconds
  constexpr const char* kWays[] = {"signal", "cross", "quit"};
  for (int i = 0; i < count && !HasFailure(); ++i) {
    const std::size_t scene = static_cast<std::size_t>(i) % std::size(kScenes);
    // A box takes the window's cross and its menus away.
    const std::size_t way = kScenes[scene].asks ? 0 : random() % std::size(kWays);
    End(scene, kWays[way], std::uniform_int_distribution(0, longest)(random));
  }
  std::cout << ends << " times ended, gone within " << slowest << " ms at most\n";
  if (testing_world::LongFire()) {
    EXPECT_LE(slowest, 500);
  }
}

}  // namespace
}  // namespace kelvo
