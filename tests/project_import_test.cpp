#include <gtest/gtest.h>

#include <algorithm>

#include "inventory/journal.h"
#include "project/project_store.h"
#include "project/project_text.h"
#include "tests/fakes/temporary_folder.h"
#include "tests/random_project.h"

namespace kelvo {
namespace {

using testing_world::TemporaryFolder;

class ProjectImportTest : public testing::Test {
 protected:
  ProjectImportTest() : database(Copy(folder)), journal(folder.Path("bestand.txt")) {}

  static std::string Copy(const TemporaryFolder& folder) {
    folder.AddDatabase();
    return folder.Path("kelvo.mdb");
  }
  void Sql(const std::string& sql) { Statement(database, sql).Step(); }
  std::string Stored(const std::string& query) {
    Statement statement(database, query);
    std::string all;
    while (statement.Step()) {
      const Value value = statement.Column(0);
      const auto* const text = std::get_if<std::string>(&value);
      all += (all.empty() ? "" : "|") +
             (text != nullptr ? *text : std::to_string(std::get<std::int64_t>(value)));
    }
    return all;
  }
  void Add(int number, const std::string& name, const std::string& content) {
    Sql("insert into Makro (typ, nr_im_display, Bezeichnung, wert) values ('Makro', " +
        std::to_string(number) + ", '" + name + "', '" + content + "')");
  }
  void Empty() {
    for (const char* table : {"Makro", "DOVU", "Schnittstelle", "Anschluss"}) {
      Sql(std::string("delete from ") + table);
    }
  }
  static std::set<ProjectKind> AllKinds() {
    std::set<ProjectKind> kinds;
    for (const KindRow& row : ProjectKindTable()) kinds.insert(row.kind);
    kinds.erase(ProjectKind::Drawing);
    return kinds;
  }
  Project Here() { return ProjectOf(RecordsHere(database), journal.Entries(), AllKinds()); }
  std::string Export() { return ProjectText(Here()).value_or("stopped"); }
  ImportPlan Plan(const Project& there, const Project* base = nullptr) {
    return PlanImport(there, RecordsHere(database), journal.Entries(), base);
  }
  ImportDone Apply(const ImportPlan& plan) { return ApplyImport(database, journal, plan); }
  static ImportItem& ItemNamed(ImportPlan& plan, const std::string& name) {
    const auto found = std::find_if(plan.items.begin(), plan.items.end(), [&](const auto& item) {
      return NameOf(item.there ? *item.there : item.here->record) == name;
    });
    if (found == plan.items.end()) throw std::runtime_error("no item " + name);
    return *found;
  }
  static void ChooseAll(ImportPlan& plan, ImportChoice choice) {
    for (ImportItem& item : plan.items) {
      if (item.MayChoose(choice)) item.choice = choice;
    }
  }
  std::string Names() { return Stored("select Bezeichnung from Makro order by rowid"); }

  TemporaryFolder folder;
  Database database;
  WriteJournal journal;
};

TEST_F(ProjectImportTest, FiveThousandRecordsComeThroughAnEmptyDatabaseByteForByte) {
  Empty();
  Project project = RandomProject(1).Next(5000);
  Sql("update Optionen set rs485wait = 77");
  Sql("update \"Default\" set displayx = 320");
  for (const ProjectRecord& record : Here().records) project.records.push_back(record);
  Sql("update Optionen set rs485wait = 20");
  Sql("update \"Default\" set displayx = 240");
  const std::string text = ProjectText(project).value();
  const Project read = std::get<Project>(ReadProject(text));
  ImportPlan plan = Plan(read);
  ASSERT_EQ(plan.items.size(), read.records.size());
  ChooseAll(plan, ImportChoice::Take);
  const std::string before = Export();
  const ImportDone done = Apply(plan);
  Project exported = Here();
  exported.kinds = read.kinds;
  EXPECT_EQ(ProjectText(exported), text);
  EXPECT_EQ(Plan(read).Open() + Plan(read).Changes(), 0U) << "all is equal now";
  UndoImport(database, journal, done);
  EXPECT_EQ(Export(), before);
}

TEST_F(ProjectImportTest, WhatIsDamagedChangesNothing) {
  const std::string before = Export();
  std::string text = before;
  text.insert(text.find("Rahmen"), "\x01");
  EXPECT_TRUE(std::holds_alternative<ProjectFault>(ReadProject(text)));
  EXPECT_EQ(Export(), before);
}

TEST_F(ProjectImportTest, ShowsNewEqualDifferentAndAnotherNameOfTheSameNumber) {
  const Project there = Here();
  Sql("delete from Makro where Bezeichnung = 'Rahmen'");
  Sql("update Makro set wert = 'anders' where nr_im_display = 1");
  Sql("update Makro set Bezeichnung = 'Leeren', wert = 'auch' where nr_im_display = 3");
  ImportPlan plan = Plan(there);
  EXPECT_EQ(ItemNamed(plan, "Rahmen").finding, Finding::New);
  EXPECT_EQ(ItemNamed(plan, "Begrüßung").finding, Finding::Different);
  EXPECT_EQ(ItemNamed(plan, "Display löschen").finding, Finding::OtherName);
  EXPECT_EQ(plan.Open(), 2U) << "these two are for the operator to decide";
  EXPECT_EQ(plan.Changes(), 1U);
  EXPECT_EQ(ItemNamed(plan, "Begrüßung").besideName, "Begrüßung (2)");
  EXPECT_EQ(ItemNamed(plan, "Display löschen").besideName, "Display löschen");
  ItemNamed(plan, "Begrüßung").choice = ImportChoice::Beside;
  ItemNamed(plan, "Display löschen").choice = ImportChoice::Take;
  Apply(plan);
  EXPECT_EQ(Names(), "Begrüßung|Display löschen|Begrüßung (2)|Rahmen");
  EXPECT_EQ(Stored("select wert from Makro where Bezeichnung = 'Begrüßung'"), "anders");
  EXPECT_EQ(Stored("select typ from Makro where Bezeichnung = 'Begrüßung (2)'"), "Makro");
}

TEST_F(ProjectImportTest, ANameThatTheFileBringsIsNotProposedForAnother) {
  Project there = Here();
  there.records.push_back({ProjectKind::Macro, {Value(), "Rahmen (2)", Value(), Value(), Value()}});
  Sql("update Makro set wert = 'anders' where Bezeichnung = 'Rahmen'");
  ImportPlan plan = Plan(there);
  EXPECT_EQ(ItemNamed(plan, "Rahmen").besideName, "Rahmen (3)");
  ItemNamed(plan, "Rahmen (2)").besideName = "Kasten";
  ChooseAll(plan, ImportChoice::Beside);
  Apply(plan);
  EXPECT_EQ(Names(), "Begrüßung|Rahmen|Display löschen|Kasten|Rahmen (3)");
}

TEST_F(ProjectImportTest, WhatComesBesideMayNotBearTheNameOfAnother) {
  const Project there = Here();
  Sql("update Makro set wert = 'anders' where Bezeichnung in ('Rahmen', 'Begrüßung')");
  Sql("delete from Makro where Bezeichnung = 'Display löschen'");
  ImportPlan plan = Plan(there);
  ImportItem& beside = ItemNamed(plan, "Rahmen");
  beside.choice = ImportChoice::Beside;
  const auto fault = [&](const char* name) {
    beside.besideName = name;
    return plan.NameFaults()[static_cast<std::size_t>(&beside - plan.items.data())];
  };
  EXPECT_EQ(fault(" "), "ohne Bezeichnung");
  EXPECT_EQ(fault("Rahmen"), "„Rahmen“ gibt es hier schon") << "its own, which stays";
  EXPECT_EQ(fault("Begrüßung"), "„Begrüßung“ gibt es hier schon");
  ItemNamed(plan, "Begrüßung").choice = ImportChoice::Beside;
  EXPECT_EQ(fault("Begrüßung (2)"), "„Begrüßung (2)“ kommt schon aus der Datei");
  EXPECT_EQ(fault("Display löschen"), "„Display löschen“ kommt schon aus der Datei");
  ItemNamed(plan, "Display löschen").choice = ImportChoice::Leave;
  EXPECT_EQ(fault("Display löschen"), "") << "it stays in the file";
  EXPECT_EQ(fault(" Begrüßung "), "„Begrüßung“ gibt es hier schon") << "blanks tell nobody apart";
  EXPECT_EQ(fault("Kasten "), "");
  Sql("insert into Makro (typ, Bezeichnung) values ('Makro', 'Kasten')");
  EXPECT_THROW(Apply(plan), StoreConflict) << "another program has used the name since";
}

TEST_F(ProjectImportTest, WhatTheProgramWouldNotStoreComesThroughMarked) {
  Sql("update Makro set nr_im_display = 'zwei' where Bezeichnung = 'Rahmen'");
  Sql("update Anschluss set ComNr = 9 where ComNr = 6");
  Sql("update Makro set Bezeichnung = ' ', wert = printf('%.*c', 2000, 'ä') "
      "where Bezeichnung = 'Begrüßung'");
  Sql("insert into DOVU values (300, 'weit', 7, 2.5)");
  Sql("update \"Default\" set displayx = 99999");
  Sql("update Optionen set ChecksumabVer = 9e999, rs485wait = -3");
  const std::string text = Export();
  for (const char* marked :
       {"\"Unverändert\": [\"Nummer\"]", "{\"Com\": 9, ",
        "\"Unverändert\": [\"Bezeichnung\", \"Inhalt\"]",
        "\"aktiv\": 2.5, \"Unverändert\": [\"Adresse\", \"Prüfsumme\", \"aktiv\"]}",
        "\"Höhe\": 128, \"Unverändert\": [\"Breite\"]}",
        "\"Unverändert\": [\"rs485wait\", \"ChecksumabVer\"]"}) {
    EXPECT_NE(text.find(marked), std::string::npos) << marked << "\n" << text;
  }
  const ReadResult read = ReadProject(text);
  ASSERT_TRUE(std::holds_alternative<Project>(read)) << FaultText(std::get<ProjectFault>(read));
  EXPECT_EQ(ProjectText(std::get<Project>(read)), text);
  Empty();
  ImportPlan plan = Plan(std::get<Project>(read));
  ChooseAll(plan, ImportChoice::Take);
  Apply(plan);
  EXPECT_EQ(Export(), text);
}

TEST_F(ProjectImportTest, RecordsOfOneNameComeBackMarkedAndMatchFirstToTheLetter) {
  for (const char* name : {"Rahmen ", "Rahmen", ""}) Add(7, name, "zweiter");
  Sql("insert into DOVU select * from DOVU");
  Sql("insert into DOVU values (3, 'eins', 1, 1)");
  Sql("insert into DOVU values (3, 'zwei', 1, 1)");
  const std::string text = Export();
  const ReadResult read = ReadProject(text);
  ASSERT_TRUE(std::holds_alternative<Project>(read)) << FaultText(std::get<ProjectFault>(read));
  const auto& there = std::get<Project>(read);
  EXPECT_EQ(ProjectText(there), text);
  EXPECT_EQ(Plan(there).Open() + Plan(there).Changes(), 0U);
  Sql("update Makro set wert = Bezeichnung, nr_im_display = rowid + 20");
  for (const ImportItem& item : Plan(there).items) {
    const bool macro = item.kind == ProjectKind::Macro;
    EXPECT_EQ(item.finding, macro ? Finding::Different : Finding::Equal);
  }
  Empty();
  ImportPlan plan = Plan(there);
  ChooseAll(plan, ImportChoice::Take);
  EXPECT_EQ(plan.NameFaults(), std::vector<std::string>(plan.items.size()));
  Apply(plan);
  EXPECT_EQ(Export(), text);
}

TEST_F(ProjectImportTest, ANameThatBothSidesHaveGivenToDifferentRecordsIsAsked) {
  const Project base = Here();
  Sql("update Makro set Bezeichnung = 'Kasten' where Bezeichnung = 'Rahmen'");
  const Project there = Here();
  Sql("update Makro set Bezeichnung = 'Rahmen' where Bezeichnung = 'Kasten'");
  Sql("update Makro set Bezeichnung = 'Kasten ' where Bezeichnung = 'Begrüßung'");
  ImportPlan plan = Plan(there, &base);
  const auto faults = plan.NameFaults();
  EXPECT_EQ(std::count(faults.begin(), faults.end(), "„Kasten“ gibt es hier schon"), 1);
  Sql("update Makro set Bezeichnung = 'Begrüßung' where Bezeichnung = 'Kasten '");
  plan = Plan(there, &base);
  EXPECT_EQ(plan.NameFaults(), std::vector<std::string>(plan.items.size()));
  Add(9, " Kasten", "another program");
  EXPECT_THROW(Apply(plan), StoreConflict);
}

TEST_F(ProjectImportTest, TwoOperatorsChangesAreMergedAndOnlyRealConflictsAsked) {
  const std::string esc = "' || char(27) || '";
  Add(10, "beide", esc + "GC" + esc + "GP1,1;" + esc + "GL2,2;");
  for (const char* name : {"hier", "dort", "streit", "weg", "weg und anders"}) Add(20, name, "alt");
  const Project base = Here();
  Sql("update Makro set wert = replace(wert, 'GL2,2;', 'GL9,9;') where Bezeichnung = 'beide'");
  Sql("update Makro set wert = 'dort' where Bezeichnung in ('dort', 'streit')");
  Sql("delete from Makro where Bezeichnung like 'weg%'");
  const Project there = Here();
  Sql("delete from Makro");
  Add(11, "beide", esc + "GH" + esc + "GP1,1;" + esc + "GL2,2;");  // another number, too
  for (const char* name : {"hier", "dort", "streit", "weg"}) Add(20, name, "alt");
  Add(20, "weg und anders", "neu");
  Sql("update Makro set wert = 'hier' where Bezeichnung in ('hier', 'streit')");

  ImportPlan plan = Plan(there, &base);
  const auto finding = [&](const char* name) { return ItemNamed(plan, name).finding; };
  EXPECT_EQ(finding("beide"), Finding::Merged);
  EXPECT_EQ(finding("hier"), Finding::ChangedHere);
  EXPECT_EQ(finding("dort"), Finding::ChangedThere);
  EXPECT_EQ(finding("streit"), Finding::Conflict);
  EXPECT_EQ(finding("weg"), Finding::DeletedThere);
  EXPECT_EQ(finding("Rahmen"), Finding::DeletedHere);
  EXPECT_EQ(plan.Open(), 2U) << "the conflict, and what was deleted there and changed here";
  Apply(plan);
  EXPECT_EQ(Names(), "beide|hier|dort|streit|weg und anders");
  EXPECT_EQ(Stored("select wert from Makro order by rowid"),
            "\x1bGH\x1bGP1,1;\x1bGL9,9;|hier|dort|hier|neu");
  EXPECT_EQ(Stored("select nr_im_display from Makro where Bezeichnung = 'beide'"), "11");
  plan = Plan(there, &base);
  EXPECT_EQ(plan.Changes(), 0U) << "what was merged is not merged again";
  EXPECT_EQ(ItemNamed(plan, "beide").finding, Finding::Equal);
}

TEST_F(ProjectImportTest, APartOfAKindTellsOfNoDeletions) {
  const Project base = Here();
  Project there = base;
  std::erase_if(there.records, [](const auto& record) { return NameOf(record) == "Rahmen"; });
  EXPECT_EQ(Plan(there, &base).Changes(), 1U);
  there.partly = {ProjectKind::Macro};
  EXPECT_EQ(Plan(there, &base).Changes(), 0U);
}

TEST_F(ProjectImportTest, ARecordThatHasChangedSinceStopsAllOfIt) {
  Project there = Here();
  Sql("update Makro set wert = 'x'");
  Sql("delete from DOVU");
  ImportPlan plan = Plan(there);
  ChooseAll(plan, ImportChoice::Take);
  Sql("update Makro set wert = 'inzwischen' where Bezeichnung = 'Display löschen'");
  const std::string before = Export();
  EXPECT_THROW(Apply(plan), StoreConflict);
  EXPECT_EQ(Export(), before);
}

TEST_F(ProjectImportTest, UndoIsRefusedWhereARecordHasChangedSince) {
  const Project there = Here();
  Sql("delete from Makro");
  const ImportDone done = Apply(Plan(there));
  Sql("update Makro set wert = 'neu' where Bezeichnung = 'Rahmen'");
  try {
    UndoImport(database, journal, done);
    FAIL();
  } catch (const StoreError& error) {
    EXPECT_NE(std::string(error.what()).find("Makro 2 „Rahmen“"), std::string::npos);
  }
  EXPECT_EQ(Names(), "Begrüßung|Rahmen|Display löschen");
}

TEST_F(ProjectImportTest, LineSettingsTakenBesideGetTheNextNumber) {
  const Project there = Here();
  Sql("update Schnittstelle set Baud1 = '1200' where satznr = 2");
  ImportPlan plan = Plan(there);
  ChooseAll(plan, ImportChoice::Beside);
  Apply(plan);
  EXPECT_EQ(Stored("select satznr from Schnittstelle"), "1|2|3|4|5");
  EXPECT_EQ(Stored("select Baud1 from Schnittstelle where satznr in (2, 5)"), "1200|19200");
}

TEST_F(ProjectImportTest, DatabaseOfAnotherVersionTakesWhatItHasAPlaceFor) {
  Project there = Here();
  Sql("alter table Optionen drop column rs485wait");
  Sql("update Optionen set sofortsenden = 1");
  Sql("delete from \"Default\"");
  const auto import = [&] {
    ImportPlan plan = Plan(there);
    ChooseAll(plan, ImportChoice::Take);
    Apply(plan);
  };
  import();
  EXPECT_EQ(Stored("select sofortsenden from Optionen"), "0");
  EXPECT_EQ(Stored("select displayx + schnittstelle from \"Default\""), "241");
  EXPECT_EQ(Plan(there).Changes() + Plan(there).Open(), 0U);
  for (ProjectRecord& record : there.records) {
    if (record.kind == ProjectKind::Options) record.values[2] = std::int64_t{50};
  }
  EXPECT_THROW(import(), StoreError);
}

TEST_F(ProjectImportTest, EntriesOfTwoJournalsAreMergedByTimeAndTakenOutAgain) {
  const auto entry = [](int second, int address) {
    const ItemChange macro{ItemChange::Kind::Written, {ItemKind::Macro, second}};
    return JournalEntry{JournalTime(std::chrono::seconds(1'800'000'000 + second)),
                        {"/dev/ttyS0", address},
                        Event::Acknowledged,
                        macro,
                        "m",
                        "\x1b"
                        "EWM1,x\x03"};
  };
  for (const int second : {1, 3, 5}) journal.Add(entry(second, 3));
  WriteJournal second(folder.Path("bestand.txt"));
  const std::string before = testing_world::ReadFile(folder.Path("bestand.txt"));
  Project there;
  there.kinds = {ProjectKind::Inventory};
  there.inventory = {entry(0, 7), entry(3, 3), entry(4, 7), entry(9, 7)};
  const ImportPlan plan = Plan(there);
  EXPECT_EQ(plan.inventory.size(), 3U);
  const ImportDone done = Apply(plan);
  EXPECT_EQ(journal.Entries(), (std::vector{entry(0, 7), entry(1, 3), entry(3, 3), entry(4, 7),
                                            entry(5, 3), entry(9, 7)}));
  EXPECT_TRUE(second.Add(entry(10, 3)));
  EXPECT_EQ(second.Entries().size(), 7U) << "another program goes on in the file that is there now";
  journal.Refresh();
  UndoImport(database, journal, done);
  EXPECT_EQ(testing_world::ReadFile(folder.Path("bestand.txt")).rfind(before, 0), 0U);
  EXPECT_EQ(journal.Entries().size(), 4U);
}

}  // namespace
}  // namespace kelvo
