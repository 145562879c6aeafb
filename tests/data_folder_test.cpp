#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "store/data_folder.h"
#include "store/own_files.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

namespace fs = std::filesystem;
using testing_world::ReadFile;
using testing_world::TemporaryFolder;

TEST(DataFolder, IsTheProgramsOwnWhereThatIsTheOperatorsToWrite) {
  const std::string user = "/home/eva/.local/share/kelvo";
  const struct {
    const char* program;
    bool writable;
    bool together;
  } cases[] = {
      {"/home/eva/kelvo", true, true},
      {"/home/eva/kelvo", false, false},
      {"/media/stick/kelvo", false, false},
      {"/opt/kelvo", true, true},
      {"/usr/lib/kelvo", false, false},
      {"/usr/lib/kelvo", true, false},  // the administrator could write there
      {"/usr/local/lib/kelvo", true, false},
      {"/usr/src/kelvo/build/release/program", true, true},
  };
  for (const auto& [program, writable, together] : cases) {
    EXPECT_EQ(DataFolder({program, writable, user}), together ? program : user) << program;
  }
  setenv("HOME", "relative", 1);
  EXPECT_EQ(DataFolder("/usr/lib/kelvo").front(), '/');
  setenv("HOME", "/home/eva", 1);
  for (const std::string data : {"", "relative", "/data"}) {
    setenv("XDG_DATA_HOME", data.c_str(), 1);
    EXPECT_EQ(DataFolder("/usr/lib/kelvo"), data == "/data" ? "/data/kelvo" : user) << data;
  }
}

TEST(DataFolder, CopyOfTheDatabaseIsMadeOnceAndCanBeWritten) {
  const TemporaryFolder folder;
  const std::string program = folder.Path("program");
  const std::string data = folder.Path("home/.local/share/kelvo");
  const std::string copy = data + "/kelvo.mdb";
  fs::create_directory(program);
  std::ofstream(program + "/kelvo.mdb") << "delivered";
  fs::permissions(program + "/kelvo.mdb", fs::perms::owner_read);

  TakeDeliveredDatabase(program, data);
  EXPECT_EQ(ReadFile(copy), "delivered");
  struct stat state {};
  ASSERT_EQ(stat(copy.c_str(), &state), 0);
  EXPECT_EQ(state.st_mode & (S_IRUSR | S_IWUSR), mode_t{S_IRUSR | S_IWUSR});
  EXPECT_EQ(std::distance(fs::directory_iterator(data), fs::directory_iterator()), 1);

  std::ofstream(copy) << "work";
  TakeDeliveredDatabase(program, data);
  EXPECT_EQ(ReadFile(copy), "work");
}

TEST(DataFolder, FailedCopyNamesTheFileAndTheReasonAndLeavesNothing) {
  const TemporaryFolder folder;
  const std::string program = folder.Path("program");
  const auto problem = [&](const std::string& data) -> std::string {
    try {
      TakeDeliveredDatabase(program, data);
    } catch (const std::runtime_error& error) {
      return error.what();
    }
    return {};
  };
  fs::create_directory(program);
  EXPECT_EQ(problem(folder.Path("data")), "Die Datenbank \"" + folder.Path("data/kelvo.mdb") +
                                              "\" kann nicht aus \"" + program +
                                              "/kelvo.mdb\" angelegt werden: nicht gefunden.");
  EXPECT_TRUE(fs::is_empty(folder.Path("data")));

  std::ofstream(folder.Path("file")) << "in the way";
  EXPECT_EQ(problem(folder.Path("file/kelvo")),
            "Der Ordner \"" + folder.Path("file/kelvo") +
                "\" kann nicht angelegt werden: es gibt dort eine Datei dieses Namens.");
}

TEST(OwnFiles, AreKnownByWhateverPathAndOthersStayFree) {
  const TemporaryFolder folder;
  const std::string data = folder.Path("data");
  fs::create_directory(data);
  std::ofstream(data + "/bestand.txt") << "log";
  fs::create_symlink(data, folder.Path("way"));
  fs::create_hard_link(data + "/bestand.txt", folder.Path("second.txt"));
  // The log may itself lie elsewhere.
  std::ofstream(folder.Path("elsewhere.txt")) << "readings";
  fs::create_symlink(folder.Path("elsewhere.txt"), data + "/gelesen.txt");
  for (const char* path :
       {"data/bestand.txt", "way/bestand.txt", "data/../way/bestand.txt", "second.txt",
        "elsewhere.txt", "data/kelvo.mdb", "data/kelvo.mdb-journal", "data/kelvo-2.entwurf",
        "way/kelvo-cli-ttyS0.ausstattung", "data/simulator.eeprom"}) {
    EXPECT_TRUE(IsOwnFile(data, folder.Path(path))) << path;
  }
  for (const char* path : {"bestand.txt", "data/q.txt", "data/bestand2.txt", "data/kelvo.kelvo",
                           "none/bestand.txt", "data/kelvo.txt"}) {
    EXPECT_FALSE(IsOwnFile(data, folder.Path(path))) << path;
  }
}

}  // namespace
}  // namespace kelvo
