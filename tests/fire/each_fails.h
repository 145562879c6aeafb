#pragma once

#include <cerrno>
#include <iostream>

#include "tests/fire/failing_system.h"
#include "tests/fire/fire_count.h"
#include "tests/window_fixture.h"

namespace kelvo {

using testing_world::FailingSystem;
using testing_world::ReadFile;

inline constexpr int kMostCalls = 200;
inline constexpr char kOld[] = "what lies there already";

/// The whole program, with each call of the system failing once.
class FailingFilesTest : public WindowTest {
 protected:
  /// Does `act` with its first call failing, then with its second, until there are no more. `check`
  /// is told whether one has.
  void EachFails(const char* what, const std::function<void()>& prepare,
                 const std::function<void()>& act, const std::function<void(bool told)>& check) {
    for (int call = 1; call < kMostCalls; call += step) {
      Forget();
      person.notices.clear();
      prepare();
      {
        const FailingSystem failing(folder.Path(), call, call % 2 == 0 ? ENOSPC : EIO);
        act();
      }
      if (FailingSystem::Failed().empty()) break;
      SCOPED_TRACE(what + (": " + FailingSystem::Failed()));
      ++faults;
      const std::size_t said = person.messages.size() + person.notices.size();
      EXPECT_LE(said, 1U) << "said more than once";
      for (const auto& message : person.messages) ExpectGerman(message.text);
      for (const std::string& notice : person.notices) ExpectGerman(notice);
      const bool shown = !shows.empty() && Text(shows.c_str()).find(mark) != std::string::npos;
      check(said > 0 || shown);
      told += said > 0 || shown ? 1 : 0;
    }
    Forget();
    prepare();
    act();
    EXPECT_TRUE(person.messages.empty())
        << what << ": does not work afterwards: " << person.LastMessage();
  }
  static void ExpectGerman(const std::string& text) {
    for (const char* word : {"rror", "annot", "ailed", "o space", "std::", "I/O"}) {
      EXPECT_EQ(text.find(word), std::string::npos) << text;
    }
    EXPECT_TRUE(text.find("Daten") != std::string::npos || text.find("atei") != std::string::npos ||
                text.find("kann nicht aufgezeichnet werden") != std::string::npos)
        << text;
  }
  /// A file that the operator saves.
  void EachFailsAtFile(const char* what, const std::string& name,
                       const std::function<void()>& act) {
    person.file = folder.Path(name);
    EachFails(
        what, [&] { std::ofstream(*person.file, std::ios::binary) << kOld; }, act,
        [&](bool said) {
          EXPECT_EQ(ReadFile(*person.file) == kOld, said) << "is " << ReadFile(*person.file).size();
        });
    person.file.reset();
  }
  std::string StoredText(const std::string& name) {
    Database database(folder.Path("kelvo.mdb"));
    Recordset records(database, "Makro");
    return records.FindFirst("Bezeichnung", name) ? records.Text("wert").value_or("NULL") : "";
  }

  /// What is told otherwise than by a box: a label that then holds this.
  std::string shows;
  std::string mark;
  int step = 1;  ///< from call to call; no multiple of the calls that something takes
  DeviceFonts fonts;
  int faults = 0;
  int told = 0;
};

}  // namespace kelvo
