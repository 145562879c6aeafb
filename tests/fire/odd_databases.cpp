#include "tests/fire/odd_databases.h"

#include <sqlite3.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <random>
#include <vector>

#include "tests/fakes/temporary_folder.h"

namespace kelvo::testing_world {
namespace {

constexpr std::array kBases = {KELVO_STORE "/kelvo.sql", KELVO_DATABASES "/0.1.0.sql",
                               KELVO_DATABASES "/before-0.1.0.sql"};

struct TableFields {
  const char* table;
  std::vector<const char*> fields;
};

const std::vector<TableFields>& Tables() {
  static const std::vector<TableFields> tables = {
      {"Makro", {"typ", "lfdnr", "Bezeichnung", "ausgang", "eingang", "nr_im_display", "wert"}},
      {"DOVU", {"Adresse", "Bezeichnung", "Checksum", "aktiv"}},
      {"Optionen",
       {"FensterMitZoomen", "sofortsenden", "rs485wait", "BMPSchwarzschwelle", "FirstRun",
        "EEPromelegantlöschenabVer", "ChecksumabVer", "BMPinPixelabVer"}},
      {"Default", {"displayx", "displayy", "schnittstelle"}},
      {"Schnittstelle",
       {"satznr", "ComNr", "Baud1", "Bits1", "StopBit1", "Parity1", "Shake1", "Puffer1", "RecCom2",
        "Baud2", "Bits2", "Stopbit2", "Shake2", "Parity2", "Puffer2"}},
      {"Anschluss", {"ComNr", "Geraet"}},
      {"Fenster", {"Name", "Lage"}},
      {"Zuletzt", {"Datei"}}};
  return tables;
}

// What a field may hold that it should not, as SQL.
constexpr std::array kOddValues = {
    "null", "''", "'abc'", "' 12'", "'12abc'", "'nan'", "'inf'", "'-1e999'", "'&HFFFFFFFFFF'",
    "9e999", "-9e999", "1e300", "-1e300", "1e-300", "0.5", "2.5", "-1", "-2", "255", "256", "300",
    "65536", "1000000", "1000000000", "2147483648", "-2147483649", "9223372036854775807",
    "-9223372036854775808", "x''", "x'00'", "x'FF00FE'", "cast(x'C328FF' as text)",
    "cast(x'61C3' as text)", "cast(x'610062' as text)", "char(0)", "char(10, 13, 9, 127)",
    "char(0x202E) || 'txt.exe'", "char(0x1F600)", "'<img src=\"fifo\">'", "'%1 %n &amp; &x'",
    "replace(hex(zeroblob(40000)), '00', 'lang ')", "replace(hex(zeroblob(30000)), '00', '9')",
    // Commands whose parameters no display has.
    "char(27) || 'GP99999999999,-99999999999;' || char(27) || 'GR1e9,&HFFFFFFFF;'",
    "char(27) || 'GZ0,255;' || char(27) || 'GF-1;' || char(27) || 'GT' || char(4)",
    "char(27) || 'GC' || char(27) || 'GE1,1,999999999,999999999;'",
    "char(27) || 'EWM300,' || char(27) || 'EWM0,'", "char(27) || 'GM99999999999;'",
    "char(27) || 'EWK-1,256,99999999999,;;;'", "char(27) || 'EWK1,,,,&HFFFFFFFFF,'"};

constexpr std::array kTypes = {"'Makro'", "'MatrixTab'", "'ATTab'", "'Grafik'", "'Symbol'"};

class OddDatabase {
 public:
  OddDatabase(const std::string& path, unsigned number) : path_(path), random_(number) {
    sqlite3_open(path.c_str(), &database_);
    if (OneIn(8)) Run("pragma encoding = 'UTF-16'");
    Run(ReadFile(kBases[Below(kBases.size())]));
    sqlite3_exec(database_, "begin", nullptr, nullptr, nullptr);
    AddUsual();
  }
  ~OddDatabase() { sqlite3_close(database_); }
  OddDatabase(const OddDatabase&) = delete;
  OddDatabase& operator=(const OddDatabase&) = delete;

  void Spoil() {
    for (std::size_t times = 1 + Below(5); times > 0; --times) SpoilOnce();
    sqlite3_exec(database_, "commit", nullptr, nullptr, nullptr);
    if (OneIn(12)) Run("pragma journal_mode = wal");
    sqlite3_close(database_);
    database_ = nullptr;
    if (OneIn(15)) SpoilBytes();
  }
  const std::string& Done() const { return done_; }

 private:
  std::size_t Below(std::size_t end) {
    return std::uniform_int_distribution<std::size_t>(0, end - 1)(random_);
  }
  bool OneIn(std::size_t many) { return Below(many) == 0; }
  std::string Odd() { return kOddValues[Below(kOddValues.size())]; }

  // What fails, because an earlier step has taken the table away, changes nothing.
  void Run(const std::string& sql) {
    const bool done = sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
    if (done && sql.size() < 1000) done_ += sql + "\n";
  }
  // Every page has something to show.
  void AddUsual() {
    for (const char* typ : kTypes) {
      Run(std::string("insert into Makro values (") + typ +
          ", 0, 'Satz', '255', '255', 3, char(27) || 'EWK1,65,66;')");
    }
    Run("insert into DOVU values (3, 'Halle', 1, 1)");
  }

  void SpoilOnce() {
    const TableFields& some = Tables()[Below(Tables().size())];
    const std::string table = "\"" + std::string(some.table) + "\"";
    const std::string field = "\"" + std::string(some.fields[Below(some.fields.size())]) + "\"";
    const std::string one = " where rowid = (select rowid from " + table + " limit 1 offset " +
                            std::to_string(Below(6)) + ")";
    switch (Below(16)) {
      case 0:
        return Run("delete from " + table + (OneIn(2) ? "" : one));
      case 1:
        return Run("insert into " + table + " select * from " + table);
      case 2:
        return AddRecord(some, table);
      case 3:
        return Run("alter table " + table + " drop column " + field);
      case 4:
        return SpoilTable(table, field);
      case 5:
        return Run("update " + table + " set rowid = " + Odd() + one);
      case 6:
      case 7:
        return Run("update " + table + " set " + field + " = " + Odd());
      default:
        return Run("update " + table + " set " + field + " = " + Odd() + one);
    }
  }
  void AddRecord(const TableFields& some, const std::string& table) {
    for (std::size_t records = 1 + Below(20); records > 0; --records) {
      std::string values;
      for (std::size_t i = 0; i < some.fields.size(); ++i) values += (i > 0 ? ", " : "") + Odd();
      if (table == "\"Makro\"" && !OneIn(4)) {
        values = kTypes[Below(kTypes.size())] + values.substr(values.find(", "));
      }
      Run("insert into " + table + " values (" + values + ")");
    }
  }
  void SpoilTable(const std::string& table, const std::string& field) {
    switch (Below(6)) {
      case 0:
        return Run("drop table " + table);
      case 1:
        return Run("alter table " + table + " add column rowid text");
      case 2:
        return Run("alter table " + table + " rename to Fremd; create view " + table +
                   " as select * from Fremd");
      case 3:
        return Run("create trigger Fremd" + std::to_string(Below(1000)) + " before update on " +
                   table + " begin select raise(abort, 'not today'); end");
      case 4:
        return Run("alter table " + table + " rename to Fremd; create table " + table +
                   " as select * from Fremd; create unique index Einmal on " + table + " (" +
                   field + ")");
      default:
        return Run("create table Kopie (" + field +
                   " primary key, Rest) without rowid; drop table " + table +
                   "; alter table Kopie rename to " + table);
    }
  }
  void SpoilBytes() {
    std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
    const std::size_t size = std::filesystem::file_size(path_);
    if (OneIn(4)) {
      done_ += "cut\n";
      return std::filesystem::resize_file(path_, Below(size));
    }
    for (std::size_t bytes = 1 + Below(20); bytes > 0; --bytes) {
      file.seekp(static_cast<std::streamoff>(Below(size)));
      file.put(static_cast<char>(Below(256)));
    }
    done_ += "other bytes\n";
  }

  const std::string path_;
  std::mt19937 random_;
  sqlite3* database_ = nullptr;
  std::string done_;
};

}  // namespace

std::string MakeOddDatabase(const std::string& path, unsigned number) {
  OddDatabase database(path, number);
  database.Spoil();
  return database.Done();
}

}  // namespace kelvo::testing_world
