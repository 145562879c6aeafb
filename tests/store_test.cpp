#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "store/display_size.h"
#include "store/recordset.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

using testing_world::ReadFile;
using testing_world::TemporaryFolder;

class StoreTest : public testing::Test {
 protected:
  StoreTest() { folder.AddDatabase(); }
  std::string Path() const { return folder.Path("kelvo.mdb"); }

  static void Add(Recordset& records, const std::string& name, const std::string& wert) {
    records.AddNew();
    records.Set("typ", std::string("Makro"));
    records.Set("Bezeichnung", name);
    records.Set("wert", wert);
    records.Update();
  }

  TemporaryFolder folder;
};

TEST_F(StoreTest, RecordIsFoundByItsExactNameWhateverThatHolds) {
  Database database(Path());
  Recordset macros(database, "select * from Makro where typ = 'Makro'");
  const std::string names[] = {"O'Brien", "100 %", "\" or 1=1", "Prüfung", "prüfung", ""};
  for (const std::string& name : names) Add(macros, name, "wert von " + name);
  for (const std::string& name : names) {
    ASSERT_TRUE(macros.FindFirst("Bezeichnung", name)) << name;
    EXPECT_EQ(macros.Text("wert"), "wert von " + name);
  }
  macros.MoveFirst();
  const auto before = macros.Bookmark();
  EXPECT_FALSE(macros.FindFirst("Bezeichnung", std::string("PRÜFUNG")));
  EXPECT_EQ(macros.Bookmark(), before);
}

TEST_F(StoreTest, TextsComeBackByteForByte) {
  Database database(Path());
  Recordset macros(database, "Makro");
  const std::string text("\033EWM\x03\x04\0\r\n\xC3\xBC", 10);
  Add(macros, "bytes", text);
  Database again(Path());
  Recordset read(again, "Makro");
  ASSERT_TRUE(read.FindFirst("Bezeichnung", std::string("bytes")));
  EXPECT_EQ(read.Text("wert"), text);
  EXPECT_EQ(read.Text("ausgang"), std::nullopt);
  EXPECT_EQ(read.Number("ausgang"), 0);
}

TEST_F(StoreTest, ADisplayIsWithinItsLimitsWhateverIsStored) {
  Database database(Path());
  Recordset defaults(database, "Default");
  const std::pair<Value, int> cases[] = {{std::int64_t{240}, 240},
                                         {std::int64_t{1'000'000'000}, 640},
                                         {1e300, 640},
                                         {-1e300, 20},
                                         {std::string("abc"), 240},
                                         {std::string("nan"), 240},
                                         {std::monostate(), 240},
                                         {std::string("1e999"), 640},
                                         {239.6, 240}};
  for (const auto& [stored, width] : cases) {
    defaults.Edit();
    defaults.Set("displayx", stored);
    defaults.Update();
    EXPECT_EQ(DisplaySizeIn(defaults).first, width) << width;
  }
}

TEST_F(StoreTest, MovesStayWithinTheRecordsAndTheirEnd) {
  Database database(Path());
  Recordset records(database, "Schnittstelle");
  int moves = 0;
  records.SetRepositionHandler([&] { ++moves; });
  records.MoveLast();
  EXPECT_EQ(records.Number("satznr"), 4);
  records.MoveNext();
  EXPECT_TRUE(records.Eof());
  EXPECT_EQ(records.Text("ComNr"), std::nullopt);
  records.MoveNext();
  records.MovePrevious();
  EXPECT_EQ(records.Number("satznr"), 4);
  records.MoveFirst();
  records.MovePrevious();
  EXPECT_EQ(records.Number("satznr"), 1);
  EXPECT_EQ(moves, 6);
}

TEST_F(StoreTest, DeletedRecordIsGoneAndTheNextFollows) {
  Database database(Path());
  Recordset macros(database, "Makro");
  const std::size_t count = macros.RecordCount();
  macros.MoveFirst();
  const auto names = macros.Column("Bezeichnung");
  macros.Delete();
  EXPECT_EQ(macros.Bookmark(), 0);
  EXPECT_EQ(macros.Text("Bezeichnung"), std::nullopt);
  EXPECT_THROW(macros.Delete(), StoreError);
  macros.MoveNext();
  EXPECT_EQ(macros.Text("Bezeichnung"), names[1]);
  EXPECT_EQ(macros.RecordCount(), count - 1);
}

TEST_F(StoreTest, OtherRecordSetsSeeAChangeAfterARefresh) {
  Database database(Path());
  Recordset all(database, "Makro");
  Recordset tables(database, "select * from Makro where typ = 'MatrixTab'");
  tables.AddNew();
  tables.Set("typ", std::string("MatrixTab"));
  tables.Set("Bezeichnung", std::string("neu"));
  tables.Update();
  tables.MoveLast();
  EXPECT_EQ(tables.Text("Bezeichnung"), "neu");
  all.MoveLast();
  const auto current = all.Bookmark();
  EXPECT_FALSE(all.FindFirst("Bezeichnung", std::string("neu")));
  all.Refresh();
  EXPECT_EQ(all.Bookmark(), current);
  EXPECT_TRUE(all.FindFirst("Bezeichnung", std::string("neu")));
}

TEST_F(StoreTest, ARecordThatAnotherProgramTouchedIsNotChangedAsIfItWereAsRead) {
  Database here(Path());
  Database there(Path());
  const auto expectConflict = [](StoreConflict::Kind kind, const std::function<void()>& change) {
    try {
      change();
      ADD_FAILURE() << "no conflict";
    } catch (const StoreConflict& conflict) {
      EXPECT_EQ(conflict.kind, kind);
    }
  };
  const auto set = [](Recordset& records, const std::string& name) {
    records.Edit();
    records.Set("Bezeichnung", name);
    records.Update();
  };
  Recordset macros(here, "Makro");
  Recordset others(there, "Makro");
  others.MoveLast();
  macros.MoveLast();
  const Recordset::Row asRead = macros.Current();
  others.Edit();
  others.Set("wert", std::string("theirs"));  // another field of the same record
  others.Update();
  expectConflict(StoreConflict::Kind::Changed, [&] { set(macros, "mine"); });
  expectConflict(StoreConflict::Kind::Changed, [&] { macros.Delete(); });
  macros.Refresh();
  EXPECT_EQ(macros.Text("wert"), "theirs");
  expectConflict(StoreConflict::Kind::Changed, [&] {
    macros.Edit(asRead);
    macros.Set("Bezeichnung", std::string("mine"));
    macros.Update();
  });
  set(macros, "mine");
  others.Refresh();
  EXPECT_EQ(others.Text("Bezeichnung"), "mine");
  others.Delete();
  expectConflict(StoreConflict::Kind::Gone, [&] { set(macros, "again"); });
  // The number of the deleted record is given to the next one.
  Add(others, "another", "record");
  others.MoveLast();
  EXPECT_EQ(others.Bookmark(), macros.Bookmark());
  expectConflict(StoreConflict::Kind::Changed, [&] { macros.Delete(); });
  others.Refresh();
  EXPECT_EQ(others.Text("Bezeichnung"), "another");
}

// Opening must fail with a text that names the file and holds `what`, and change nothing.
void ExpectRefused(const std::string& path, const std::string& what) {
  const std::string before = ReadFile(path);
  try {
    Database database(path);
    FAIL() << path << " was opened";
  } catch (const StoreError& error) {
    EXPECT_NE(std::string(error.what()).find(path), std::string::npos) << error.what();
    EXPECT_NE(std::string(error.what()).find(what), std::string::npos) << error.what();
  }
  EXPECT_EQ(ReadFile(path), before);
}

TEST_F(StoreTest, MissingForeignAndDamagedFilesAreRefusedAndLeftAlone) {
  ExpectRefused(folder.Path("nothing.mdb"), "fehlt");
  EXPECT_FALSE(std::filesystem::exists(folder.Path("nothing.mdb")));
  ExpectRefused(folder.Path(""), "keine Datei");

  const std::string foreign = folder.Path("foreign.mdb");
  std::ofstream(foreign) << "this is no database, but it is long enough to be taken for one";
  ExpectRefused(foreign, "gehört nicht");
  std::ofstream(foreign, std::ios::trunc).close();
  ExpectRefused(foreign, "gehört nicht");

  const std::string damaged = folder.Path("damaged.mdb");
  std::string bytes = ReadFile(Path());
  std::fill(bytes.begin() + 4096, bytes.begin() + 8192, '\xA5');
  std::ofstream(damaged, std::ios::binary) << bytes;
  ExpectRefused(damaged, "beschädigt");
}

TEST_F(StoreTest, MissingTableOrFieldIsNamed) {
  const std::pair<const char*, const char*> damages[] = {
      {"alter table DOVU drop column aktiv", "Feld aktiv der Tabelle DOVU fehlt"},
      {"alter table Anschluss drop column Geraet", "Feld Geraet der Tabelle Anschluss fehlt"},
      {"drop table DOVU", "Tabelle DOVU fehlt"},
      {"delete from Schnittstelle", "Tabelle Schnittstelle ist leer"}};
  for (const auto& [damage, told] : damages) {
    TemporaryFolder other;
    other.AddDatabase();
    { Statement(Database(other.Path("kelvo.mdb")), damage).Step(); }
    ExpectRefused(other.Path("kelvo.mdb"), told);
  }
}

TEST_F(StoreTest, OptionThatTheDatabaseLacksIsAsDeliveredAndItsRecordIsMadeByAChange) {
  const auto values = [](const Recordset& options) {
    std::string all;
    for (const char* field : {"sofortsenden", "rs485wait", "BMPSchwarzschwelle", "ChecksumabVer",
                              "BMPinPixelabVer", "EEPromelegantlöschenabVer"}) {
      all += options.Text(field).value_or("-") + ' ';
    }
    return all;
  };
  Database database(Path());
  const std::string delivered = values(Recordset(database, "Optionen"));
  Statement(database, "alter table Optionen drop column rs485wait").Step();
  Recordset options(database, "Optionen");
  EXPECT_EQ(values(options), delivered);
  options.Edit();
  options.Set("rs485wait", std::int64_t{50});
  EXPECT_THROW(options.Update(), StoreError);
  Statement(database, "delete from Optionen").Step();
  options.Refresh();
  EXPECT_EQ(values(options), delivered);
  EXPECT_FALSE(options.YesNo("FirstRun"));
  options.Edit();
  options.Set("sofortsenden", std::int64_t{1});
  options.Update();
  Recordset again(database, "Optionen");
  EXPECT_EQ(again.RecordCount(), 1u);
  EXPECT_EQ(values(again), "1" + delivered.substr(1));
  EXPECT_EQ(values(options), values(again));
}

TEST_F(StoreTest, WriteProtectedFileOpensAndSaysSoAtEachSave) {
  chmod(Path().c_str(), 0444);
  const std::string before = ReadFile(Path());
  Database database(Path());
  EXPECT_TRUE(database.ReadOnly());
  Recordset macros(database, "Makro");
  const std::size_t count = macros.RecordCount();
  try {
    Add(macros, "x", "y");
    FAIL();
  } catch (const StoreError& error) {
    EXPECT_NE(std::string(error.what()).find("schreibgeschützt"), std::string::npos);
  }
  EXPECT_EQ(macros.RecordCount(), count);
  EXPECT_EQ(ReadFile(Path()), before);
}

}  // namespace
}  // namespace kelvo
