#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "project/project.h"

// A project as text, UTF-8 and JSON:
//
//   {
//     "kelvo": 1,                      the version of this form
//     "Auszug": ["Makros"],            kinds of which only a part is here; left out without any
//     "Makros": [
//       {
//         "Nummer": 7,
//         "Bezeichnung": "Begrüßung",
//         "Inhalt": [
//           "\\eGC",                   a line for each command, and for the text between commands
//           "\\eGP8,40;"
//         ]
//       }
//     ],
//     ...
//     "Terminals": [
//       {"Adresse": 3, "Bezeichnung": "Halle", "Prüfsumme": true, "aktiv": true}
//     ],
//     "Zeichnungsdateien": [           "Objekte" has a line for each object
//     "Bestände": [                    a line for each entry, the columns of bestand.txt
//   }
//
// A database may hold what the program would not store: a number out of range, a word in a number's
// place, a blank name, a macro that is too long, a second record of a name or, where the number
// tells them apart, of a number. It comes through as it is where the record says so behind all
// else, "Unverändert": ["Nummer"]; without that it is refused.
//
// Only characters that can be seen stand for themselves. In strings "\e" is ESC, "\xHH" any other
// of the first 256 characters, "\\" the backslash, which JSON writes twice each. What the database
// holds nothing in is left out.
//
// The order of kinds, records and members is fixed, so that the same project gives the same bytes.

namespace kelvo {

inline constexpr int kProjectVersion = 1;
/// The member of a record that names those which are as they are, whatever they hold.
inline constexpr char kProjectAsItIs[] = "Unverändert";
/// What the files' names end with.
inline constexpr char kProjectSuffix[] = ".kelvo";

/// What a reader does not understand, and where.
struct ProjectFault {
  std::size_t line = 0;    ///< from 1; 0 where it is the whole
  std::size_t column = 0;  ///< from 1, in characters
  std::string place;       ///< "Makro 7 „Begrüßung“, Inhalt, Zeile 3"; may be empty
  std::string reason;      ///< German, UTF-8
};
/// "Zeile 12, Spalte 3 (Makro 7, Nummer): …"
std::string FaultText(const ProjectFault& fault);

/// The text of a project, in the fixed order; nothing when it was stopped. Throws StoreError,
/// naming the record, for a text that is no UTF-8.
std::optional<std::string> ProjectText(Project project, const ProjectProgress& progress = {});

struct Stopped {};
using ReadResult = std::variant<Project, ProjectFault, Stopped>;
/// All of a text or nothing.
ReadResult ReadProject(std::string_view text, const ProjectProgress& progress = {});

/// A record as lines for reading: each field that it has, each command, without the marks of JSON.
std::vector<std::string> ReadableLines(const ProjectRecord& record);

}  // namespace kelvo
