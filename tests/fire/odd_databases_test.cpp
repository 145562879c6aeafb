#include "tests/fire/odd_databases.h"

#include <sqlite3.h>

#include <QAbstractItemView>
#include <QRegularExpression>
#include <iostream>

#include "sheet/collect.h"
#include "tests/fire/fire_count.h"
#include "tests/window_fixture.h"

namespace kelvo {
namespace {

constexpr int kFew = 40;

/// The whole window over a database that nobody would have left behind so.
class OddDatabasesTest : public WindowTest {
 protected:
  std::string Path() const { return folder.Path("kelvo.mdb"); }

  // Everything that is stored, but what the program notes of itself: that it was started, and which
  // record of the ports is in front.
  std::string Contents() const {
    sqlite3* database = nullptr;
    sqlite3_open_v2(Path().c_str(), &database, SQLITE_OPEN_READONLY, nullptr);
    std::string all;
    const auto add = [](void* text, int columns, char** values, char**) {
      for (int i = 0; i < columns; ++i) {
        *static_cast<std::string*>(text) += values[i] != nullptr ? values[i] : "-";
      }
      return 0;
    };
    for (const char* table : {"Makro", "DOVU", "Optionen", "\"Default\"", "Schnittstelle",
                              "Anschluss", "sqlite_master"}) {
      std::string fields;
      const std::string bare = QString::fromUtf8(table).remove(u'"').toStdString();
      sqlite3_exec(database,
                   ("select 'quote(\"' || name || '\") || ''|'' || ' from pragma_table_info('" +
                    bare + "') where name not in ('FirstRun', 'schnittstelle')")
                       .c_str(),
                   add, &fields, nullptr);
      all += bare + ":";
      sqlite3_exec(database, ("select " + fields + "'' from " + table).c_str(), add, &all, nullptr);
    }
    sqlite3_close(database);
    return all;
  }

  // Starts the program; false when it says that it cannot.
  bool Begins() {
    person.duringMessage = [this] { told.push_back(person.LastMessage()); };
    try {
      Start();
    } catch (const StoreError& error) {
      told.emplace_back(error.what());
      return false;
    }
    return true;
  }
  // Looks at every page and every record. Nothing is changed.
  void LookAround() {
    for (int tab = 0; tab < kTabCount; ++tab) {
      Show(static_cast<Tab>(tab));
      QApplication::processEvents();
    }
    Show(Tab::Macros);
    for (const char* kind : {"chkMakroTyp_1", "chkMakroTyp_2", "chkMakroTyp_3", "chkMakroTyp_4"}) {
      Click(kind);
      LookThrough("cboMakro");
    }
    Show(Tab::MatrixKeyboard);
    LookThrough("cboTastTabBez");
    Show(Tab::AtKeyboard);
    LookThrough("cboATTabBez");
    Show(Tab::Terminals);
    auto& terminals = Find<QAbstractItemView>("ctlDovuListe");
    for (int row = 0; row < std::min(terminals.model()->rowCount(), 10); ++row) {
      terminals.setCurrentIndex(terminals.model()->index(row, 1));
    }
    for (const char* action : {"mnuAnsichtGrafik", "mnuDateiDatenblatt", "mnuDateiExportieren",
                               "mnuAnsichtVergleich", "mnuDovuSenden"}) {
      Trigger(action);
      QApplication::processEvents();
    }
  }
  void LookThrough(const char* list) {
    auto& box = Find<QComboBox>(list);
    for (int i = 0; i < std::min(box.count(), 10); ++i) {
      box.setCurrentIndex(i);
      Q_EMIT box.activated(i);
      QApplication::processEvents();
    }
  }
  void CheckWords() {
    told.insert(told.end(), person.questions.begin(), person.questions.end());
    told.insert(told.end(), person.notices.begin(), person.notices.end());
    static const QRegularExpression foreign(
        QStringLiteral("no such|not today|error|malformed|std::|bad_|invalid|constraint|database|"
                       "syntax|wrong index|out of|unsupported|basic_string|vector"));
    for (const std::string& text : told) {
      const QString words = QString::fromStdString(text);
      EXPECT_FALSE(words.contains(foreign)) << text;
      EXPECT_LT(words.size(), 2000) << "nobody reads that";
    }
  }

  std::vector<std::string> told;
};

TEST_F(OddDatabasesTest, AreUsedAsFarAsTheyCanBeAndNeverChangedByThat) {
  const int count = testing_world::FireCount(kFew);
  const unsigned first = testing_world::FireSeed();
  int tried = 0;
  int started = 0;
  for (; tried < count && !HasFailure(); ++tried) {
    const unsigned number = first + static_cast<unsigned>(tried);
    std::filesystem::remove(Path());
    const std::string done = testing_world::MakeOddDatabase(Path(), number);
    SCOPED_TRACE("KELVO_FIRE_SEED=" + std::to_string(number) + "\n" + done);
    // What a sanitizer leaves unsaid when it ends the program.
    if (testing_world::LongFire()) std::cerr << number << '\n' << std::flush;
    const std::string before = Contents();
    if (Begins()) {
      ++started;
      LookAround();
      const auto size = Grafik().DisplaySize();
      EXPECT_TRUE(size.width() <= 640 && size.height() <= 480);
      window->close();
    }
    window.reset();
    CheckWords();
    EXPECT_TRUE(Contents() == before) << "changed";
    told.clear();
    Forget();
    person.notices.clear();
  }
  std::cout << tried << " odd databases: " << started << " used, " << tried - started
            << " refused\n";
  EXPECT_TRUE(HasFailure() || (started > count / 2 && started < count));
}

}  // namespace
}  // namespace kelvo
