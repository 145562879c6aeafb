#include <sqlite3.h>

#include "tests/window_fixture.h"

namespace kelvo {
namespace {

/// The whole window with a database that another version has delivered.
class OldDatabasesTest : public WindowTest {
 protected:
  void Run(const std::string& sql) {
    sqlite3* database = nullptr;
    sqlite3_open(folder.Path("kelvo.mdb").c_str(), &database);
    char* error = nullptr;
    sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &error);
    if (error != nullptr) ADD_FAILURE() << sql << ": " << error;
    sqlite3_free(error);
    sqlite3_close(database);
  }
  void TakeDatabase(const std::string& sqlFile) {
    std::filesystem::remove(folder.Path("kelvo.mdb"));
    Run(testing_world::ReadFile(sqlFile));
  }
  // Every page is seen, a macro saved and renamed, an option and a setting changed, the program
  // started again.
  void Work() {
    Start();
    for (int tab = 0; tab < Find<QTabWidget>("cmdTab").count(); ++tab) {
      Show(static_cast<Tab>(tab));
    }
    Show(Tab::Macros);
    Type("txtMakro", "\x1bGC");
    person.inputs = {"Geändert"};
    Trigger("mnuDateiSave");
    Trigger("mnuOptionenSofortSenden");
    Show(Tab::Interfaces);
    Choose("cboCom_0", "9600");
    window.reset();
    EXPECT_EQ(Shown(), "");
    Start();
    Show(Tab::Macros);
    Choose("cboMakro", "Geändert");
    EXPECT_EQ(Editor("txtMakro"), "\x1bGC");
    EXPECT_TRUE(Find<QAction>("mnuOptionenSofortSenden").isChecked());
    window.reset();
    EXPECT_EQ(Stored("Schnittstelle", "Baud1"), "9600");
    EXPECT_EQ(Shown(), "");
  }
  // What the operator was told.
  std::string Shown() const {
    std::string text;
    for (const auto& message : person.messages) text += "[" + message.text + "]";
    for (const auto& question : person.questions) text += "[" + question + "]";
    return text;
  }
};

TEST_F(OldDatabasesTest, EachOneThatWasDeliveredGoesOn) {
  std::size_t databases = 0;
  for (const auto& file : std::filesystem::directory_iterator(KELVO_DATABASES)) {
    SCOPED_TRACE(file.path());
    TakeDatabase(file.path());
    Work();
    ++databases;
  }
  EXPECT_GE(databases, 2u);
}

TEST_F(OldDatabasesTest, WhatIsMissingOrMoreInADatabaseIsNoHindrance) {
  const char* const differences[] = {
      "delete from Optionen; delete from \"Default\"; delete from Makro; delete from Zuletzt;"
      "delete from Anschluss where ComNr < 6",
      "drop table Fenster; drop table Zuletzt; alter table Optionen drop column rs485wait;"
      "alter table Optionen drop column FirstRun; alter table \"Default\" drop column displayx",
      "alter table Makro add column neu text; alter table Optionen add column neu integer default "
      "3;"
      "alter table Schnittstelle add column neu text; alter table DOVU add column neu text;"
      "create table Neu (a); pragma user_version = 2"};
  for (const char* difference : differences) {
    SCOPED_TRACE(difference);
    TakeDatabase(KELVO_DATABASES "/" KELVO_VERSION ".sql");
    Run(difference);
    Work();
  }
}

TEST_F(OldDatabasesTest, OptionThatCannotBeStoredIsSaidAndHolds) {
  Run("alter table Optionen drop column sofortsenden");
  Start();
  Trigger("mnuOptionenSofortSenden");
  EXPECT_EQ(
      Shown(),
      "[Das Feld \"sofortsenden\" der Tabelle \"Optionen\" fehlt. / mnuOptionenSofortSenden]");
  EXPECT_TRUE(Find<QAction>("mnuOptionenSofortSenden").isChecked());
}

}  // namespace
}  // namespace kelvo
