#include <gtest/gtest.h>

#include <cerrno>
#include <iostream>

#include "store/recordset.h"
#include "tests/cli_program.h"
#include "tests/fire/failing_system.h"

// What the program without windows writes, with each call of the system failing once: status 0 and
// all is there, or another one, a German line, and what was there before is whole.

namespace kelvo {
namespace {

using testing_world::CliProgram;
using testing_world::FailingSystem;
using testing_world::ReadFile;

constexpr char kBefore[] = "what lies there already";

class FailingCliTest : public testing::Test {
 protected:
  void EachFails(const std::vector<std::string>& arguments, const std::function<void()>& prepare,
                 const std::function<void(bool done)>& check) {
    for (int call = 1; call < 200; ++call) {
      prepare();
      cli::Status status = cli::AllWell;
      {
        const FailingSystem failing(program.folder.Path(), call, ENOSPC);
        status = program.Run(arguments);
      }
      if (FailingSystem::Failed().empty()) break;
      SCOPED_TRACE(arguments.front() + ": " + FailingSystem::Failed() + "\n" + program.err);
      ++faults;
      if (status != cli::AllWell) {
        ++told;
        EXPECT_TRUE(program.err.find("nicht") != std::string::npos);
        for (const char* word : {"rror", "annot", "ailed", "o space", "std::"}) {
          EXPECT_EQ(program.err.find(word), std::string::npos);
        }
      }
      check(status == cli::AllWell);
    }
    prepare();
    EXPECT_EQ(program.Run(arguments), cli::AllWell) << program.err;
  }
  std::string Stored() {
    Database database(program.folder.Path("kelvo.mdb"));
    Recordset records(database, "Makro");
    return records.Text("wert").value_or("");
  }

  CliProgram program;
  int faults = 0;
  int told = 0;
};

TEST_F(FailingCliTest, AFileIsThereAsAWholeOrTheStatusSaysSo) {
  program.world.Add({.address = 3});
  const std::string file = program.folder.Path("out");
  const std::vector<std::string> commands[] = {{"export", file},
                                               {"render", "--record", "Rahmen", "--png", file}};
  for (const auto& command : commands) {
    ASSERT_EQ(program.Run(command), cli::AllWell) << program.err;
    const std::string whole = ReadFile(file);
    EachFails(
        command, [&] { program.Write("out", kBefore); },
        [&](bool done) { EXPECT_EQ(ReadFile(file), done ? whole : kBefore); });
  }
  program.Run({"export", file});
  std::string text = ReadFile(file);
  const std::string before = Stored();
  const auto change = [&](const std::string& content) {
    Database database(program.folder.Path("kelvo.mdb"));
    Recordset records(database, "Makro");
    records.Edit();
    records.Set("wert", content);
    records.Update();
  };
  EachFails(
      {"import", file, "--different", "take"}, [&] { change("other"); },
      [&](bool done) { EXPECT_EQ(Stored(), done ? before : "other"); });
  EachFails(
      {"write", "--prove", "--to", "3", "--record", "Rahmen"},
      [&] { program.world.At(0).Memory().Erase(); },
      [&](bool done) {
        const auto held = program.world.At(0).Memory().Read(sim::Eeprom::Kind::Macro, 2);
        EXPECT_TRUE(held.has_value() || !done);
      });
  std::cout << faults << " calls failed in commands, " << told << " said\n";
}

}  // namespace
}  // namespace kelvo
