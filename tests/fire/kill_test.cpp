#include <gtest/gtest.h>
#include <signal.h>

#include <QElapsedTimer>
#include <QProcess>
#include <iostream>
#include <map>
#include <random>
#include <set>

#include "store/database.h"
#include "store/statement.h"
#include "tests/fakes/open_port.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/fire/fire_count.h"

// The real window, killed while it saves. What it has let the operator take for done must be there,
// nothing may be there by half, and the next start must work: each start is also the next one of
// the kill before.

namespace kelvo {
namespace {

using testing_world::kPatience;

struct Record {
  std::string type;
  std::string name;
  std::string text;
  bool hasText = false;
  auto operator<=>(const Record&) const = default;
};

/// What may stand in a record after a kill.
struct Known {
  std::string done;                    ///< empty: no record
  std::optional<std::string> begun{};  ///< what was just being stored in its place
};

class KillTest : public testing::Test {
 protected:
  KillTest() {
    folder.AddDatabase();
    Database database(folder.Path("kelvo.mdb"));
    Statement(database, "delete from Makro where Bezeichnung like '(neuer%'").Step();
    delivered = Stored();
  }
  std::vector<Record> Stored() const {
    const Database database(folder.Path("kelvo.mdb"));
    Statement all(database,
                  "select ifnull(typ, ''), ifnull(Bezeichnung, ''), ifnull(wert, ''), "
                  "wert is not null from Makro order by rowid");
    std::vector<Record> records;
    const auto text = [&all](int column) { return std::get<std::string>(all.Column(column)); };
    while (all.Step()) {
      records.push_back({text(0), text(1), text(2), std::get<std::int64_t>(all.Column(3)) != 0});
    }
    return records;
  }
  /// Starts the next run; false when it did not come up.
  void Start(QProcess& process, int run, const char* what) const {
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QStringList arguments{QStringLiteral(KELVO_PROGRAM_DIR), QString::fromStdString(folder.Path()),
                          QString::number(run)};
    if (*what != 0) arguments << QString::fromUtf8(what);
    process.start(QStringLiteral(KELVO_SAVER), arguments);
  }
  /// Hears what it says until a line begins so; false when it ended before.
  bool Await(QProcess& process, const std::string& word) {
    for (;;) {
      while (!process.canReadLine()) {
        if (!process.waitForReadyRead(kPatience)) return false;
      }
      if (Hear(process.readLine().trimmed().toStdString()) == word) return true;
    }
  }
  void Kill(QProcess& process) {
    process.kill();
    process.waitForFinished(kPatience);
    while (process.canReadLine()) Hear(process.readLine().trimmed().toStdString());
  }
  std::string Hear(const std::string& line) {
    const std::string word = line.substr(0, line.find(' '));
    const std::string rest = line.substr(std::min(line.size(), word.size() + 1));
    const std::string name = rest.substr(0, rest.find('='));
    const std::string text = rest.substr(std::min(rest.size(), name.size() + 1));
    if (word == "will") known[name].begun = text;
    if (word == "done") known[name] = {text};
    if (word == "draft") draft = rest;
    if (word == "offered") ++offers;
    EXPECT_TRUE(word != "said" && word != "failed") << line;
    return word;
  }
  /// After the kill: exactly what is known, and what was begun either whole or not at all.
  /// A record whose draft is kept may stay empty.
  void Check(const std::string& context, int mostEmpty = 1) {
    std::map<std::string, std::string> found;
    const std::vector<Record> stored = Stored();
    int empty = 0;
    for (const Record& record : stored) {
      // A record is stored with the button "Neu"; what comes into it is another change.
      if (!record.hasText && record.name == "(neuer Name)") {
        ++empty;
        continue;
      }
      EXPECT_TRUE(record.hasText) << context << ": half a record, \"" << record.name << '"';
      if (std::find(delivered.begin(), delivered.end(), record) != delivered.end()) continue;
      EXPECT_TRUE(found.emplace(record.name, record.text).second) << context << record.name;
    }
    for (const auto& [name, what] : known) {
      const std::string text = found.contains(name) ? found[name] : "";
      const auto is = [&](const std::string& one) {
        return one == "*" ? !text.empty() : text == one;
      };
      EXPECT_TRUE(is(what.done) || (what.begun && is(*what.begun)))
          << context << ": \"" << name << "\" is \"" << text << "\", was \"" << what.done << '"';
      done += what.done.empty() ? 0 : 1;
      found.erase(name);
    }
    EXPECT_LE(empty, mostEmpty) << context << ": the start has left what the kill before has left";
    for (const auto& [name, text] : found) ADD_FAILURE() << context << ": nobody saved " << name;
    // What is there now is where the next run begins.
    delivered = stored;
    known.clear();
  }

  testing_world::TemporaryFolder folder;
  std::vector<Record> delivered;
  std::map<std::string, Known> known;
  std::string draft;
  int done = 0;
  int offers = 0;
};

TEST_F(KillTest, WhatWasSavedIsThereAndNothingByHalf) {
  const int kills = testing_world::FireCount(20);
  const unsigned first = testing_world::FireSeed();
  for (int run = 0; run < kills && !HasFailure(); ++run) {
    const unsigned seed = first + static_cast<unsigned>(run);
    std::mt19937 random(seed);
    const auto number = [&](int to) { return std::uniform_int_distribution<int>(0, to)(random); };
    QProcess process;
    Start(process, static_cast<int>(seed), "");
    const std::string context = "seed " + std::to_string(seed);
    ASSERT_TRUE(Await(process, "ready")) << context;
    for (int saves = number(8); saves >= 0; --saves) ASSERT_TRUE(Await(process, "will"));
    // Somewhere in what comes now.
    QElapsedTimer elapsed;
    elapsed.start();
    const qint64 moment = number(60'000) * qint64{1000};
    while (elapsed.nsecsElapsed() < moment) {
    }
    Kill(process);
    Check(context);
  }
  std::cout << kills << " kills while saving: " << done << " changes acknowledged, none lost\n";
}

TEST_F(KillTest, ADraftThatWasKeptIsOfferedAtTheNextStart) {
  const int kills = testing_world::FireCount(20) / 10;
  for (int run = 1; run <= kills && !HasFailure(); ++run) {
    QProcess process;
    Start(process, run, "drafts");
    ASSERT_TRUE(Await(process, "draft"));
    if (run % 2 == 0) {
      ASSERT_TRUE(Await(process, "draft"));
    }
    Kill(process);
    offers = 0;
    QProcess next;
    Start(next, run, "wait");
    ASSERT_TRUE(Await(next, "ready"));
    EXPECT_EQ(offers, 1) << run;
    // Told to end it keeps them again.
    next.terminate();
    ASSERT_TRUE(next.waitForFinished(kPatience));
    EXPECT_EQ(next.exitCode(), 0);
    EXPECT_NE(testing_world::ReadFile(folder.Path("kelvo.entwuerfe")).find(draft),
              std::string::npos)
        << draft;
    EXPECT_FALSE(std::filesystem::exists(folder.Path("kelvo.lock")));
    Check("run " + std::to_string(run), 2 * run);
  }
  std::cout << kills << " kills with drafts, none lost\n";
}

}  // namespace
}  // namespace kelvo
