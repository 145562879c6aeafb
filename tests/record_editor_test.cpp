#include "widgets/record_editor.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

#include "tests/fakes/fake_operator.h"
#include "tests/fakes/temporary_folder.h"

namespace kelvo {
namespace {

using Strings = std::vector<std::string>;

struct Edit {
  std::string text;
  std::string number;
  bool operator==(const Edit&) const = default;
};
const RecordKind uniqueNames{{}, "Name ?", "Ersetzen ?", "Text", NewEntry::Last};
const RecordKind freeNames{"Art", "Name ?", {}, "Tabelle", NewEntry::First};

/// A page of one field over a real database.
class RecordEditorTest : public testing::Test {
 protected:
  RecordEditorTest() {
    folder.AddDatabase();
    database.emplace(folder.Path("kelvo.mdb"));
    Sql("delete from Makro");
    page.setLayout(row.layout);
  }
  void Sql(const std::string& statement) { Statement(*database, statement).Step(); }
  /// Records of these names, with the texts 1, 2 ...
  void Start(const RecordKind& kind, const Strings& stored) {
    for (const std::string& name : stored) {
      Sql("insert into Makro (typ, Bezeichnung, wert) select 'Art', '" + name +
          "', count(*) + 1 from Makro");
    }
    records.emplace(*database, "select * from Makro where typ = 'Art'");
    editor.emplace(RecordEditorBase::Services{*records, row, person}, kind,
                   RecordEditor<Edit>::Screen{[this] { Type(editor->Wert().value_or("")); },
                                              [this](const Edit& edit) { Type(edit.text); },
                                              [this] { return Shown(); },
                                              [](const Edit& edit) -> std::optional<Fields> {
                                                if (edit.text == "bad") return std::nullopt;
                                                return Fields{{"typ", "Art"}, {"wert", edit.text}};
                                              },
                                              [](const Edit& edit) { return Strings{edit.text}; },
                                              [](const Strings& packed) {
                                                return Edit{packed.at(0), {}};
                                              }});
    QObject::connect(&text, &QLineEdit::textChanged, &text, [this] { editor->Edited(); });
    editor->SelectFirst();
  }
  void Type(const std::string& typed) { text.setText(QString::fromStdString(typed)); }
  Edit Shown() const { return {text.text().toStdString(), {}}; }
  /// The list with ">" before the selected entry, the text, and "!" while it can be discarded.
  std::string Seen() const {
    std::string seen;
    for (int entry = 0; entry < row.names->count(); ++entry) {
      seen += entry == row.names->currentIndex() ? ">" : " ";
      seen += row.names->itemText(entry).toStdString();
    }
    return seen + ": " + Shown().text + (row.discard->isEnabled() ? "!" : "");
  }
  /// Name and field of every record.
  std::string InDatabase(const std::string& field = "wert") {
    Statement all(*database, "select group_concat(Bezeichnung || '=' || ifnull(" + field +
                                 ", 'NULL'), ' ') from Makro");
    all.Step();
    return std::get<std::string>(all.Column(0));
  }
  void Choose(int entry) {
    row.names->setCurrentIndex(entry);
    editor->SelectChosen();
  }
  /// The operator answers with these names, and to questions as told.
  void Save(std::deque<std::optional<std::string>> inputs, bool answer = false) {
    person.inputs = std::move(inputs);
    person.answers = {answer};
    editor->SaveShown();
  }
  void Delete(bool answer) {
    person.answers = {answer};
    editor->Delete();
  }

  testing_world::TemporaryFolder folder;
  testing_world::FakeOperator person;
  std::optional<Database> database;
  std::optional<Recordset> records;
  QWidget page;
  RecordRow row{"cboNamen", "cmdVerwerfen", 10};
  std::optional<RecordEditor<Edit>> editor;
  QLineEdit text;
};

TEST_F(RecordEditorTest, AnEditStaysWithItsRecordUntilItIsGivenUp) {
  Start(uniqueNames, {"eins", "zwei"});
  Type("A");
  EXPECT_EQ(Seen(), ">* eins zwei: A!");
  Choose(1);
  EXPECT_EQ(Seen(), " * eins>zwei: 2");
  editor->SetSource("select * from Makro where typ = 'Grafik'");
  EXPECT_EQ(Seen(), ": ");
  EXPECT_EQ(editor->DraftNames(), Strings{"eins"});
  editor->SetSource("Makro");
  EXPECT_EQ(Seen(), ">* eins zwei: A!");
  row.discard->click();
  EXPECT_EQ(Seen(), ">eins zwei: 1");
  // What is typed back is no edit either.
  Type("A");
  Type("1");
  EXPECT_EQ(Seen(), ">eins zwei: 1");
  EXPECT_EQ(editor->DraftNames(), Strings{});
  EXPECT_EQ(InDatabase(), "eins=1 zwei=2");
}

TEST_F(RecordEditorTest, WhereANameStandsForItsRecordOverwritingIsAsked) {
  Start(uniqueNames, {"eins"});
  Type("A");
  Save({""});
  // Another program has used the name since.
  Sql("insert into Makro (typ, Bezeichnung, wert) values ('Art', 'zwei', '2')");
  Save({"zwei", std::nullopt});
  EXPECT_EQ(Seen(), ">* eins zwei: A!");
  EXPECT_EQ(InDatabase(), "eins=1 zwei=2");
  Save({"zwei", "O'Brien"});
  EXPECT_EQ(person.prompts.back(), "Name ?|zwei");
  EXPECT_EQ(person.questions, (Strings{"Ersetzen ?", "Ersetzen ?"}));
  EXPECT_TRUE(person.proposesNo) << "the name of another record";
  EXPECT_EQ(Seen(), " eins zwei>O'Brien: A");
  Type("B");
  Save({"zwei"}, true);
  EXPECT_EQ(Seen(), " eins>zwei O'Brien: B");
  EXPECT_EQ(InDatabase("lfdnr || wert"), "eins=NULL zwei=2B O'Brien=2A");
  // What another page saves leaves the draft alone.
  Type("C");
  person.inputs = {"vier"};
  EXPECT_TRUE(editor->Save({{"typ", "Art"}}, {"D", {}}, "Vorschlag"));
  EXPECT_EQ(Seen(), " eins * zwei O'Brien>vier: D");
}

TEST_F(RecordEditorTest, OfTwoRecordsOfANameTheOneThatIsEditedIsSaved) {
  Start(uniqueNames, {"eins", "eins"});
  Choose(1);
  Type("A");
  Save({"eins"}, true);
  EXPECT_EQ(Seen(), " eins>eins: A");
  EXPECT_FALSE(person.proposesNo) << "it is its own name";
  EXPECT_EQ(InDatabase(), "eins=1 eins=A");
}

TEST_F(RecordEditorTest, WhereNamesAreFreeSavingRenames) {
  Start(freeNames, {});
  Type("A");
  EXPECT_EQ(Seen(), ": A!");
  EXPECT_EQ(editor->DraftNames(), Strings{"(neuer Name)"});
  Save({"eins"});
  EXPECT_EQ(Seen(), ">eins: A");
  EXPECT_EQ(editor->DraftNames(), Strings{});
  editor->New({"B", {}});
  EXPECT_EQ(Seen(), ">(neuer Name) eins: B");
  EXPECT_EQ(InDatabase("typ"), "eins=Art (neuer Name)=Art");
  Save({"eins"});
  EXPECT_EQ(Seen(), ">eins eins: B");
  EXPECT_EQ(InDatabase("lfdnr || wert"), "eins=0A eins=1B");
  // Each entry is its own record, though they have one name.
  Choose(1);
  EXPECT_EQ(Seen(), " eins>eins: A");
  Choose(0);
  EXPECT_EQ(Seen(), ">eins eins: B");
  Delete(true);
  EXPECT_EQ(Seen(), ">eins: A");
}

TEST_F(RecordEditorTest, ANewRecordThatIsNotUsedGoesWhenItIsLeft) {
  Start(uniqueNames, {"eins"});
  const Fields art{{"typ", "Art"}};
  editor->New({}, art);
  Choose(0);
  EXPECT_EQ(InDatabase(), "eins=1");
  editor->New({}, art);
  Type("A");
  editor->New({}, art);
  EXPECT_EQ(Seen(), " eins * (neuer Name)>(neuer Name): ");
  Choose(1);
  EXPECT_EQ(Seen(), " eins>* (neuer Name): A!");
  Save({"zwei"});
  EXPECT_EQ(Seen(), " eins>zwei: A");
  EXPECT_EQ(InDatabase(), "eins=1 zwei=A");
  editor->New({}, art);
  editor->SetSource("Makro");
  editor->New({}, art);
  editor->RemoveUnused();
  EXPECT_EQ(InDatabase(), "eins=1 zwei=A");
}

// When all is saved at the end nobody is asked for names.
TEST_F(RecordEditorTest, RecordsThatNobodyHasNamedAreSavedUnderDifferentNames) {
  Start(uniqueNames, {"eins"});
  for (const char* text : {"A", "B", "C"}) {
    editor->New({}, {{"typ", "Art"}});
    Type(text);
  }
  EXPECT_TRUE(editor->SaveDrafts());
  EXPECT_EQ(InDatabase(), "eins=1 (neuer Name) 2=A (neuer Name) 3=B (neuer Name)=C");
  EXPECT_EQ(editor->GivenName(), "");
}

TEST_F(RecordEditorTest, WhatAnotherProgramSavedIsOverwrittenOnlyAfterBothWereShown) {
  for (const RecordKind& kind : {uniqueNames, freeNames}) {
    Sql("delete from Makro");
    person.questions.clear();
    Start(kind, {"eins"});
    Type("mine");
    Sql("update Makro set wert = 'theirs'");
    editor->Refresh();  // the page was shown again in between: the edit is older than that
    person.inputs = {"eins", "eins"};
    const bool asks = !kind.overwriteQuestion.empty();
    person.answers = asks ? std::deque<bool>{true, false} : std::deque<bool>{false};
    editor->SaveShown();
    EXPECT_NE(person.questions.back().find("'eins':\ntheirs"), std::string::npos);
    EXPECT_NE(person.questions.back().find("'eins':\nmine"), std::string::npos);
    EXPECT_EQ(Seen(), ">* eins: mine!");
    EXPECT_EQ(InDatabase(), "eins=theirs");
    person.answers = asks ? std::deque<bool>{true, true} : std::deque<bool>{true};
    editor->SaveShown();
    EXPECT_EQ(Seen(), ">eins: mine");
    EXPECT_EQ(InDatabase(), "eins=mine");
  }
}

TEST_F(RecordEditorTest, WhatWasOverwrittenCanBeTakenBackAndItsKindIsNamed) {
  Sql("insert into Makro (typ, Bezeichnung, wert) values ('MatrixTab', 'Pult', 'table')");
  Start(uniqueNames, {"eins"});
  editor->SetSource("Makro");
  Choose(1);
  Type("mine");
  Save({"Pult"}, true);
  EXPECT_NE(person.lastQuestion.hint.find("\"MatrixTab\""), std::string::npos);
  EXPECT_EQ(InDatabase("typ || wert"), "Pult=Artmine eins=Art2");
  person.Done().Undo();
  EXPECT_EQ(InDatabase("typ || wert"), "Pult=MatrixTabtable eins=Art2");
  EXPECT_EQ(Shown().text, "table");
}

TEST_F(RecordEditorTest, DiscardingShowsWhatIsStoredNow) {
  Start(freeNames, {"eins"});
  Type("mine");
  Sql("update Makro set wert = 'theirs'");
  row.discard->click();
  EXPECT_EQ(Seen(), ">eins: theirs");
}

TEST_F(RecordEditorTest, AnEditOutlivesItsRecord) {
  Start(freeNames, {"eins", "zwei"});
  Type("mine");
  Sql("delete from Makro where Bezeichnung = 'eins'");
  Save({"eins"}, false);
  EXPECT_EQ(Seen(), ">* eins zwei: mine!");
  EXPECT_EQ(InDatabase(), "zwei=2");
  Save({"eins"}, true);
  EXPECT_EQ(Shown().text, "mine");
  EXPECT_EQ(InDatabase(), "zwei=2 eins=mine");
  Type("more");
  Sql("delete from Makro where Bezeichnung = 'eins'");
  editor->Refresh();  // the page is shown again, and Esc closes the question
  EXPECT_EQ(Shown().text, "more");
  EXPECT_EQ(editor->DraftNames(), Strings{"eins"});
  EXPECT_EQ(InDatabase(), "zwei=2 eins=NULL");
}

TEST_F(RecordEditorTest, DeletesOnlyAfterAYesAndGoesToTheNext) {
  Start(uniqueNames, {"a", "b", "c"});
  Choose(1);
  Type("A");
  Delete(false);
  EXPECT_EQ(person.questions.back(), "Text 'b' löschen ?");
  EXPECT_EQ(Seen(), " a>* b c: A!");
  for (const char* left : {" a>c: 3", ">a: 1", ": ", ": "}) {
    Delete(true);
    EXPECT_EQ(Seen(), left);
  }
  EXPECT_EQ(editor->DraftNames(), Strings{});
  EXPECT_EQ(person.questions.size(), 4U);
}

TEST_F(RecordEditorTest, DeletionsAndDiscardedEditsCanBeTakenBack) {
  Start(uniqueNames, {"a", "b", "c"});
  std::string said;
  editor->SetStoredListener([&](const std::string& words) { said = words; });
  Choose(1);
  Type("B");
  Delete(false);
  EXPECT_EQ(said, "");
  Delete(true);
  EXPECT_EQ(said, "Text „b“ gelöscht");
  EXPECT_TRUE(person.proposesNo);
  Type("C");
  row.discard->click();
  Delete(true);
  EXPECT_EQ(InDatabase(), "a=1");
  EXPECT_EQ(person.Done().Latest(), "Löschen von „c“");
  person.Done().Undo();
  EXPECT_EQ(Seen(), " a>c: 3");
  EXPECT_EQ(person.Done().Latest(), "Verwerfen der Änderung an „c“");
  person.Done().Undo();
  EXPECT_EQ(Seen(), " a>* c: C!");
  person.Done().Undo();
  EXPECT_EQ(Seen(), " a * c>* b: B!");
  EXPECT_EQ(InDatabase(), "a=1 b=2 c=3");
  EXPECT_EQ(person.Done().Latest(), "");
}

TEST_F(RecordEditorTest, AllDraftsAreSavedAtOnceOrTheOneThatCannotBeIsShown) {
  Start(freeNames, {"a", "b", "c"});
  Type("A");
  Choose(1);
  Type("bad");
  Choose(2);
  EXPECT_FALSE(editor->SaveDrafts());
  EXPECT_EQ(Seen(), " a>* b c: bad!");
  EXPECT_EQ(InDatabase(), "a=A b=2 c=3");
  Type("B");
  EXPECT_TRUE(editor->SaveDrafts());
  EXPECT_EQ(InDatabase(), "a=A b=B c=3");
  EXPECT_TRUE(person.prompts.empty());
}

TEST_F(RecordEditorTest, DraftsOutliveTheProgram) {
  Start(freeNames, {"a", "b", "c"});
  int told = 0;
  editor->SetDraftListener([&] { ++told; });
  Type("A");
  Choose(1);
  Type("B");
  EXPECT_GE(told, 2);
  const auto kept = editor->KeptDrafts();
  Sql("delete from Makro where Bezeichnung = 'b'");
  Start(freeNames, {});
  editor->TakeDrafts(kept);
  EXPECT_EQ(editor->DraftNames(), (Strings{"a", "b"}));
  editor->SaveDrafts();
  EXPECT_EQ(InDatabase(), "a=A c=3 b=B");
  Start(freeNames, {});
  row.discard->click();
  EXPECT_EQ(Shown().text, "A");
}

TEST_F(RecordEditorTest, FollowsWhatAnotherPageDidToTheTable) {
  Start(freeNames, {"a", "b", "c"});
  editor->New({});
  Type("N");
  Choose(2);
  Type("A");
  Choose(1);
  Type("B");
  editor->Refresh();
  EXPECT_EQ(Seen(), " * (neuer Name)>* a * b c: B!") << "nothing happened: the order stays";
  Sql("delete from Makro where Bezeichnung = 'a'");
  Sql("update Makro set Bezeichnung = 'd' where Bezeichnung = 'c'");
  person.answers = {false};
  editor->Refresh();
  EXPECT_EQ(person.questions.size(), 1U) << "the edit of a record that is gone";
  EXPECT_EQ(Seen(), ">* b d * (neuer Name): A!");
  EXPECT_EQ(editor->DraftNames(), (Strings{"b", "(neuer Name)"}));
}

TEST_F(RecordEditorTest, WhatCannotBeStoredLeavesRecordAndScreenAgreed) {
  Start(uniqueNames, {"eins", "zwei"});
  Type("A");
  Sql("pragma query_only = on");
  EXPECT_THROW(editor->New({}), StoreError);
  EXPECT_THROW(Save({"drei"}), StoreError);
  EXPECT_EQ(Seen(), ">* eins zwei: A!");
  EXPECT_THROW(Save({"zwei"}, true), StoreError);
  EXPECT_THROW(Delete(true), StoreError);
  EXPECT_EQ(Seen(), " * eins>zwei: 2");
}

}  // namespace
}  // namespace kelvo
