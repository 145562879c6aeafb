#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>

#include "store/recordset.h"
#include "tests/fakes/foreign_lock.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

using testing_world::ForeignLock;

// Waits so many times; then the other program lets go, or it is given up.
class Counting : public Patience {
 public:
  explicit Counting(int waits, std::function<void()> then = {})
      : waits_(waits), then_(std::move(then)) {}
  void Begin(Access access, const std::string& holder) override {
    asked.push_back(access);
    who = holder;
    left_ = waits_;
  }
  bool Wait() override {
    if (left_-- > 0) return true;
    if (then_) then_();
    return std::exchange(then_, {}) != nullptr;
  }
  void End() override { ++ended; }

  std::vector<Access> asked;
  std::string who;
  int ended = 0;

 private:
  int waits_;
  int left_ = 0;
  std::function<void()> then_;
};

class StoreLockTest : public testing::Test {
 protected:
  StoreLockTest() { folder.AddDatabase(); }
  std::string Path() const { return folder.Path("kelvo.mdb"); }
  static void Rename(Recordset& macros, const std::string& name) {
    macros.Edit();
    macros.Set("Bezeichnung", name);
    macros.Update();
  }
  static void Add(Recordset& macros) {
    macros.AddNew();
    macros.Set("typ", std::string("Makro"));
    macros.Update();
  }

  testing_world::TemporaryFolder folder;
};

TEST_F(StoreLockTest, EachChangeWaitsForWhoeverIsInTheWayAndIsGivenUpWithoutATrace) {
  for (const char* lock : {"shared", "immediate", "exclusive"}) {
    SCOPED_TRACE(lock);
    Database database(Path());
    Recordset macros(database, "Makro");
    const std::function<void()> changes[] = {[&] { Rename(macros, "Neu"); }, [&] { Add(macros); },
                                             [&] { macros.Delete(); }};
    for (const auto& change : changes) {
      macros.MoveFirst();
      const auto before = macros.Column("Bezeichnung");
      ForeignLock other(Path(), lock);
      Counting impatient(3);
      database.SetPatience(impatient);
      EXPECT_THROW(change(), StoreLocked);
      EXPECT_EQ(macros.Column("Bezeichnung"), before);
      EXPECT_EQ(impatient.ended, 1);
      Counting patient(3, [&] { other.Release(); });
      database.SetPatience(patient);
      macros.MoveFirst();
      change();
      EXPECT_EQ(patient.asked, std::vector{Access::Change});
      EXPECT_EQ(Recordset(database, "Makro").Column("Bezeichnung"), macros.Column("Bezeichnung"));
    }
  }
}

// Who waits holds nothing: readers come and go.
TEST_F(StoreLockTest, AReaderIsKeptOutByNobodyButAnExclusiveLockAndThenKeepsWhatItHas) {
  Database database(Path());
  Recordset macros(database, "Makro");
  const auto before = macros.Column("Bezeichnung");
  ForeignLock slow(Path(), "shared");
  Counting watching(1, [&] {
    Database third(Path());
    EXPECT_EQ(Recordset(third, "Makro").RecordCount(), before.size());
    slow.Release();
  });
  database.SetPatience(watching);
  Add(macros);
  EXPECT_EQ(watching.asked.size(), 1u);
  ForeignLock other(Path(), "exclusive");
  Counting impatient(2);
  database.SetPatience(impatient);
  EXPECT_THROW(macros.Refresh(), StoreLocked);
  EXPECT_THROW(macros.SetSource("DOVU"), StoreLocked);
  EXPECT_EQ(impatient.asked, (std::vector{Access::Read, Access::Read}));
  macros.TryRefresh();
  EXPECT_EQ(impatient.asked.size(), 2u) << "it waits for nobody";
  EXPECT_EQ(macros.RecordCount(), before.size() + 1);
  other.Release();
  macros.Refresh();
  EXPECT_EQ(macros.Text("typ"), "Makro") << "still the records of its source";
}

// A child process that holds the database until it is told to end.
class OtherProcess {
 public:
  explicit OtherProcess(const std::string& path) {
    int ready[2];
    if (pipe(ready) != 0 || pipe(end_) != 0) throw std::runtime_error("no pipe");
    process_ = fork();
    if (process_ == 0) {
      close(end_[1]);
      const ForeignLock lock(path, "exclusive");
      char c = 0;
      const bool told = write(ready[1], "r", 1) == 1 && read(end_[0], &c, 1) == 0;
      _exit(told ? 0 : 1);
    }
    char c = 0;
    if (read(ready[0], &c, 1) != 1) throw std::runtime_error("no lock");
  }
  ~OtherProcess() {
    close(end_[1]);
    waitpid(process_, nullptr, 0);
  }
  OtherProcess(const OtherProcess&) = delete;
  OtherProcess& operator=(const OtherProcess&) = delete;
  std::string Number() const { return std::to_string(process_); }

 private:
  int end_[2]{};
  pid_t process_ = 0;
};

TEST_F(StoreLockTest, TheProgramInTheWayIsNamed) {
  Database database(Path());
  Recordset macros(database, "Makro");
  const OtherProcess other(Path());
  Counting impatient(1);
  database.SetPatience(impatient);
  const std::string holder = " (\"store_test\", Prozess " + other.Number() + ")";
  try {
    Add(macros);
    FAIL();
  } catch (const StoreLocked& locked) {
    EXPECT_EQ(locked.what(), "Die Datenbank \"" + Path() +
                                 "\" ist von einem anderen Programm belegt" + holder +
                                 "; es wurde nichts gespeichert.");
  }
  EXPECT_EQ(impatient.who, holder);
}

}  // namespace
}  // namespace kelvo
