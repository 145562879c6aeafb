#include <sqlite3.h>

#include <chrono>
#include <thread>

#include "store/database.h"

// How the open database is used: waiting for others, and what goes wrong.

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kLongestSleep{2000};
constexpr milliseconds kOneSleep{10};

// For programs without windows, and before there is one.
class Sleeping : public Patience {
 public:
  void Begin(Access /*access*/, const std::string& /*holder*/) override {
    end_ = steady_clock::now() + kLongestSleep;
  }
  bool Wait() override {
    if (steady_clock::now() >= end_) return false;
    std::this_thread::sleep_for(kOneSleep);
    return true;
  }
  void End() override {}

 private:
  steady_clock::time_point end_;
};

std::string FailureWords(int code, bool changing) {
  const std::string nothingSaved = changing ? "; es wurde nichts gespeichert." : ".";
  switch (code) {
    case SQLITE_READONLY:
      return "ist schreibgeschützt" + nothingSaved;
    case SQLITE_FULL:
      return "kann nicht wachsen, der Datenträger ist voll" + nothingSaved;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return "ist beschädigt" + nothingSaved;
    case SQLITE_IOERR:
      return "lässt sich nicht lesen oder schreiben (Fehler des Datenträgers)" + nothingSaved;
    case SQLITE_CANTOPEN:
      return "lässt sich nicht öffnen" + nothingSaved;
    case SQLITE_NOMEM:
    case SQLITE_TOOBIG:
      return "enthält mehr, als der Speicher fasst" + nothingSaved;
    case SQLITE_CONSTRAINT:
    case SQLITE_MISMATCH:
      return "nimmt das nicht an, ihre Tabellen sind verändert" + nothingSaved;
    case SQLITE_ERROR:
      return "passt nicht zu diesem Programm, ihre Tabellen sind verändert" + nothingSaved;
    default:
      return "meldet den Fehler " + std::to_string(code) + nothingSaved;
  }
}

}  // namespace

Database::Impatience::Impatience(const Database& database)
    : database_(database), before_(database.waiting_) {
  database_.waiting_ = true;
}

int Database::Patiently(Access access, const std::function<int()>& attempt) const {
  int result = attempt();
  if (result != SQLITE_BUSY || waiting_) return result;
  const Impatience outer(*this);
  Sleeping sleeping;
  Patience& patience = patience_ != nullptr ? *patience_ : sleeping;
  patience.Begin(access, holder_->Words());
  while (result == SQLITE_BUSY && patience.Wait()) result = attempt();
  patience.End();
  return result;
}

void Database::Fail(Access access) const {
  const std::string name = "Die Datenbank \"" + path_ + "\" ";
  const int code = sqlite3_errcode(handle_.get());
  const bool changing = access == Access::Change;
  if (code == SQLITE_BUSY || code == SQLITE_LOCKED) {
    throw StoreLocked(
        name + "ist von einem anderen Programm belegt" + holder_->Words() +
        (changing ? "; es wurde nichts gespeichert." : "; sie lässt sich jetzt nicht lesen."));
  }
  throw StoreError(name + FailureWords(code, changing));
}

}  // namespace kelvo
