#include <filesystem>
#include <fstream>

#include "shell/program_slot.h"
#include "tests/window_fixture.h"

// What was edited and not saved, when the program ends in one way or another.

namespace kelvo {
namespace {

class KeptDraftsTest : public WindowTest {};

TEST_F(KeptDraftsTest, ClosingAsksWhenThereAreDrafts) {
  StartOn(Tab::Macros);
  Type("txtMakro", "Entwurf");
  window->close();
  EXPECT_TRUE(window->isVisible());
  EXPECT_EQ(person.questions.at(0), "Nicht gespeicherte Änderungen: „Begrüßung“.");
  Click("cmdMakroVerwerfen");
  EXPECT_TRUE(Editor("txtMakro").starts_with("\x1bGC"));
  window->close();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(KeptDraftsTest, ClosingSavesDraftsUnderTheirNames) {
  StartOn(Tab::Macros);
  Type("txtMakro", "Entwurf");
  Show(Tab::AtKeyboard);
  Trigger("mnuDateiNeu");  // never used: goes
  person.decisions = {Decision::Save};
  window->close();
  EXPECT_FALSE(window->isVisible());
  EXPECT_EQ(Stored("Makro", "wert"), "Entwurf");
  EXPECT_EQ(Stored("select * from Makro where typ = 'ATTab'", "Bezeichnung"), "NULL");
  EXPECT_FALSE(std::filesystem::exists(folder.Path("kelvo.entwuerfe")));
}

// As after a crash: the file is there, and nobody has said farewell.
TEST_F(KeptDraftsTest, DraftsSurviveTheProgramAndBelongToIt) {
  Sql("update Optionen set FirstRun = 0");
  StartOn(Tab::Macros);
  Type("txtMakro",
       "\x1b"
       "Entwurf\x05\xE4");
  const auto patience = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!std::filesystem::exists(folder.Path("kelvo.entwuerfe")) &&
         std::chrono::steady_clock::now() < patience) {
    QApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  {
    testing_world::VirtualWorld world;
    frmhaupt second(OutsideOf(world, person, {folder.Path(), folder.Path()}));
    bool loaded = false;
    QObject::connect(&second, &frmhaupt::Loaded, [&] { loaded = true; });
    second.show();
    while (!loaded) QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    EXPECT_EQ(person.notices.size(), 1U) << "the first program is there";
    EXPECT_TRUE(person.questions.empty()) << "its drafts are its own";
    second.close();
  }
  // Left behind by a second program that has died.
  std::filesystem::copy_file(folder.Path("kelvo.entwuerfe"), folder.Path("kelvo-2.entwuerfe"));
  window.reset();
  std::filesystem::remove(folder.Path("kelvo.entwuerfe"));
  person.answers = {true};
  StartOn(Tab::Macros);
  EXPECT_EQ(Editor("txtMakro"),
            "\x1b"
            "Entwurf\x05\xE4");
  EXPECT_EQ(Chosen("cboMakro"), "* Begrüßung");
  EXPECT_FALSE(std::filesystem::exists(folder.Path("kelvo-2.entwuerfe")));
}

TEST_F(KeptDraftsTest, LeftDraftsAreKeptUntilTheyAreDecidedOn) {
  Sql("update Optionen set FirstRun = 0");
  const auto write = [this](const char* name, const char* text) {
    std::ofstream(folder.Path(name)) << text;
  };
  const char* const drafts = R"([[{"satz":0,"name":"neu","werte":["Entwurf","7"]}],[],[]])";
  const auto read = [this](const char* name) { return testing_world::ReadFile(folder.Path(name)); };
  write("kelvo.entwuerfe", drafts);
  write("kelvo-3.entwuerfe", "{damaged");
  person.isThere = false;  // the program ends while the question stands
  StartOn(Tab::Macros);
  EXPECT_EQ(ProgramSlot(folder.Path()).Number(), 2);
  EXPECT_TRUE(ProgramSlot(folder.Path()).LeftBehind("entwuerfe").empty()) << "the first one's";
  window->close();
  window.reset();
  EXPECT_EQ(read("kelvo.entwuerfe"), drafts);
  EXPECT_EQ(read("kelvo-3.entwuerfe"), "{damaged");

  person.isThere = true;
  person.answers = {false};
  std::string told;
  person.duringMessage = [&] { told = person.LastMessage(); };
  StartOn(Tab::Macros);
  EXPECT_EQ(person.lastQuestion.hint,
            "Bei Nein bleibt der Entwurf unter einem anderen Namen erhalten:\n" +
                folder.Path("entwuerfe-1.json"));
  EXPECT_EQ(read("entwuerfe-1.json"), drafts);
  EXPECT_EQ(told,
            "Ein Entwurf vom letzten Mal kann nicht wiederhergestellt werden:\ner ist beschädigt\n"
            "Er wurde nicht gelöscht, sondern umbenannt:\n" +
                folder.Path("entwuerfe-2.json"));
  EXPECT_EQ(read("entwuerfe-2.json"), "{damaged");
}

}  // namespace
}  // namespace kelvo
