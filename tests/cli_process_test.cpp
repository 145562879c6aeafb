#include <gtest/gtest.h>
#include <signal.h>

#include <QProcess>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "inventory/journal.h"
#include "tests/fakes/open_port.h"
#include "tests/fakes/temporary_folder.h"

// The real programs over real pseudo-terminals.

namespace kelvo {
namespace {

using testing_world::kPatience;
using testing_world::ReadFile;

class CliProcess : public testing::Test {
 protected:
  CliProcess() {
    folder.AddDatabase();
    std::ofstream(folder.Path("lang.txt")) << std::string(1000, 'x');
    StartWith(simulator, KELVO_SIMULATOR,
              {"--no-window", "--port", folder.Path("simulator.tty"), "--eeprom",
               folder.Path("eeprom"), "--address", "3"});
    while (!simulator.canReadLine() && simulator.waitForReadyRead(kPatience)) {
    }
  }
  ~CliProcess() override {
    simulator.terminate();
    simulator.waitForFinished(kPatience);
  }

  void Start(QProcess& process, std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--data", folder.Path()});
    StartWith(process, KELVO_CLI, arguments);
  }
  static int End(QProcess& process) {
    process.waitForFinished(kPatience);
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
  }
  int Run(const std::vector<std::string>& arguments) {
    QProcess process;
    Start(process, arguments);
    const int status = End(process);
    out = process.readAllStandardOutput().toStdString();
    err = process.readAllStandardError().toStdString();
    return status;
  }
  std::vector<std::string> WriteMany() const {
    std::vector<std::string> arguments{"write", "--prove", "--to", "3"};
    for (int number = 1; number <= 5; ++number) {
      arguments.push_back(std::to_string(number) + "=" + folder.Path("lang.txt"));
    }
    return arguments;
  }
  // Until something is on the line.
  void AwaitBegin(QProcess& writer) const {
    const auto begun = [this] { return ReadFile(folder.Path(kJournalFile)).find("Makro") + 1; };
    while (begun() == 0 && !writer.waitForFinished(5)) {
    }
  }

  testing_world::TemporaryFolder folder;
  QProcess simulator;
  std::string out;
  std::string err;

 private:
  static void StartWith(QProcess& process, const char* program,
                        const std::vector<std::string>& arguments) {
    QStringList list;
    for (const std::string& argument : arguments) list << QString::fromStdString(argument);
    process.start(QString::fromUtf8(program), list);
  }
};

TEST_F(CliProcess, HasThePortForItselfStopsWhenAskedToAndGoesOn) {
  QProcess writer;
  Start(writer, WriteMany());
  AwaitBegin(writer);
  ASSERT_EQ(writer.state(), QProcess::Running);
  EXPECT_EQ(Run({"info", "--to", "3"}), 1);
  EXPECT_NE(err.find("Schnittstelle belegt"), std::string::npos) << err;
  EXPECT_NE(
      err.find("belegt, kelvo-cli (Prozess " + std::to_string(writer.processId()) + ") benutzt es"),
      std::string::npos)
      << err;

  kill(static_cast<pid_t>(writer.processId()), SIGINT);
  EXPECT_EQ(End(writer), 1);
  const std::string said = writer.readAllStandardError().toStdString();
  EXPECT_NE(said.find("write --continue"), std::string::npos) << said;
  EXPECT_EQ(Run({"write", "--continue", "--prove", "--csv"}), 0) << err;
  EXPECT_NE(out.find("3,,ja,5,5,5,"), std::string::npos) << out;
  EXPECT_EQ(err, "");  // what is no terminal sees no progress
  EXPECT_EQ(Run({"compare", "--to", "3", "--read", "--json"}), 1) << err;
}

TEST(CliStart, TheProgramsFolderNeedNotHaveANameOfThisCentury) {
  const testing_world::TemporaryFolder folder;
  const std::string program = folder.Path("Men\xfc");
  std::filesystem::create_directory(program);
  std::filesystem::copy_file(KELVO_CLI, program + "/kelvo-cli");
  std::filesystem::copy_file(KELVO_DELIVERED_DATABASE, program + "/kelvo.mdb");
  const std::string command = "'" + program + "/kelvo-cli' export '" + program + "/all.kelvo' 2>&1";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_FALSE(ReadFile(program + "/all.kelvo").empty());
}

TEST_F(CliProcess, DrawsAPictureThatOthersCanRead) {
  std::ofstream(folder.Path("a.txt")) << "\x1bGP2,1;\x1bGR4,3;";
  const std::string png = folder.Path("a.png");
  ASSERT_EQ(
      Run({"render", folder.Path("a.txt"), "--display", "30x20", "--scale", "2", "--png", png}), 0)
      << err;
  const QImage image(QString::fromStdString(png));
  ASSERT_EQ(image.size(), QSize(60, 40));
  int black = 0;
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 60; ++x) black += image.pixel(x, y) == qRgb(0, 0, 0) ? 1 : 0;
  }
  EXPECT_EQ(black, 8 * 4);  // a frame of three by three pixels
  EXPECT_EQ(image.pixel(4, 2), qRgb(0, 0, 0));
  EXPECT_EQ(image.pixel(6, 4), qRgb(255, 255, 255));
}

TEST_F(CliProcess, IsThereWithoutAnyWindow) {
  QProcess libraries;
  libraries.start(QStringLiteral("ldd"), {QStringLiteral(KELVO_CLI)});
  libraries.waitForFinished(kPatience);
  const QByteArray linked = libraries.readAllStandardOutput();
  EXPECT_TRUE(linked.contains("libQt6Core"));
  for (const char* window : {"Qt6Gui", "Qt6Widgets", "libxcb", "libX11"}) {
    EXPECT_FALSE(linked.contains(window)) << window;
  }
}

}  // namespace
}  // namespace kelvo
