#include "store/database.h"

#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <string_view>

#include "store/statement.h"

namespace kelvo {
namespace {

constexpr std::int64_t kApplicationId = 1263293007;  // "KLVO", see kelvo.sql

struct TableDescription {
  const char* name;
  const char* fields;  // separated by commas
  bool needsRecord = false;
};

constexpr TableDescription kTables[] = {
    {"Makro", "typ,lfdnr,Bezeichnung,ausgang,eingang,nr_im_display,wert"},
    {"DOVU", "Adresse,Bezeichnung,Checksum,aktiv"},
    {"Optionen", ""},  // what these two lack is as delivered
    {"Default", ""},
    {"Schnittstelle",
     "satznr,ComNr,Baud1,Bits1,StopBit1,Parity1,Shake1,Puffer1,RecCom2,Baud2,Bits2,Stopbit2,"
     "Shake2,Parity2,Puffer2",
     true},
    {"Anschluss", "ComNr,Geraet"},
};

bool HasTable(const Database& database, const char* name) {
  Statement statement(database, "select 1 from sqlite_master where type = 'table' and name = ?");
  statement.Bind(1, std::string(name));
  return statement.Step();
}

bool HasField(const Database& database, const char* table, std::string_view field) {
  Statement statement(database, "select 1 from pragma_table_info(?) where name = ?");
  statement.Bind(1, std::string(table));
  statement.Bind(2, std::string(field));
  return statement.Step();
}

bool HasRecord(const Database& database, const char* table) {
  return Statement(database, "select 1 from " + Quoted(table) + " limit 1").Step();
}

// What the program needs of a table and does not find; empty if nothing is missing.
std::string MissingIn(const Database& database, const TableDescription& table) {
  if (!HasTable(database, table.name)) return "die Tabelle " + std::string(table.name) + " fehlt";
  std::string_view fields = table.fields;
  while (!fields.empty()) {
    const std::string_view field = fields.substr(0, fields.find(','));
    fields.remove_prefix(std::min(fields.size(), field.size() + 1));
    if (HasField(database, table.name, field)) continue;
    return "das Feld " + std::string(field) + " der Tabelle " + table.name + " fehlt";
  }
  if (table.needsRecord && !HasRecord(database, table.name)) {
    return "die Tabelle " + std::string(table.name) + " ist leer";
  }
  return {};
}

}  // namespace

StoreConflict::StoreConflict(Kind conflict)
    : StoreError(conflict == Kind::Gone
                     ? "Der Satz wurde inzwischen gelöscht; es wurde nichts gespeichert."
                     : "Der Satz wurde inzwischen geändert; es wurde nichts gespeichert."),
      kind(conflict) {}

void Database::Closer::operator()(sqlite3* handle) const { sqlite3_close(handle); }

Database::Database(std::string path, Opening opening) : path_(std::move(path)) {
  OpenFile(opening);
  CheckContents();
}

void Database::Refuse(const std::string& what) const {
  throw StoreError("Die Datenbank \"" + path_ + "\" " + what);
}

void Database::OpenFile(Opening opening) {
  struct stat file {};
  if (stat(path_.c_str(), &file) != 0) {
    Refuse(errno == ENOENT || errno == ENOTDIR
               ? "fehlt."
               : "ist nicht zugänglich: " + std::string(std::strerror(errno)));
  }
  if (!S_ISREG(file.st_mode)) Refuse("ist keine Datei.");
  if (access(path_.c_str(), R_OK) != 0) Refuse("darf nicht gelesen werden (keine Berechtigung).");
  // A file that nobody may write is not written by the administrator either.
  readOnly_ = opening == Opening::ToRead || (file.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0;
  holder_ = std::make_unique<LockHolder>(path_);
  sqlite3* handle = nullptr;
  const int flags = readOnly_ ? SQLITE_OPEN_READONLY : SQLITE_OPEN_READWRITE;
  const int result = sqlite3_open_v2(path_.c_str(), &handle, flags, nullptr);
  handle_.reset(handle);
  if (result != SQLITE_OK) Refuse("lässt sich nicht öffnen.");
  readOnly_ = sqlite3_db_readonly(handle, "main") != 0;
}

void Database::CheckContents() const {
  try {
    Statement id(*this, "pragma application_id");
    if (!id.Step() || id.Column(0) != Value(kApplicationId)) {
      Refuse("gehört nicht zu diesem Programm.");
    }
    Statement check(*this, "pragma quick_check(1)");
    if (!check.Step() || check.Column(0) != Value(std::string("ok"))) Refuse("ist beschädigt.");
    for (const TableDescription& table : kTables) {
      const std::string missing = MissingIn(*this, table);
      if (!missing.empty()) Refuse("ist unvollständig: " + missing + ".");
    }
  } catch (const StoreError&) {
    if (sqlite3_errcode(handle_.get()) == SQLITE_NOTADB) {
      Refuse("gehört nicht zu diesem Programm.");
    }
    throw;
  }
}

}  // namespace kelvo
