#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "graphics/drawing.h"
#include "inventory/entry.h"
#include "store/statement.h"

// What a project is made of, as values: records of the database, drawings that lie in files, and
// what was written into the Terminals.

namespace kelvo {

/// In the order in which a project's text has them.
enum class ProjectKind : std::uint8_t {
  Macro,
  MatrixTable,
  AtTable,
  Picture,   ///< a drawing among the records
  Symbol,    ///< the operator's own
  Other,     ///< a record of `Makro` of a kind that the program does not know
  Terminal,  ///< of the bus
  Line,      ///< stored settings of both interfaces
  Port,      ///< the device behind "Com 1" ..
  Options,   ///< always one
  Display,   ///< its size, always one
  Drawing,   ///< from a file
  Inventory,
};
inline constexpr std::size_t kProjectKinds = 13;

/// How the value of a field stands in the text.
enum class FieldForm : std::uint8_t {
  Whole,     ///< a whole number
  Real,      ///< any number
  YesNo,     ///< true, false
  Text,      ///< a string
  Commands,  ///< an array of strings, one for each command
};

/// What a number may be, the limits included.
struct NumberRange {
  std::int64_t least = 0;
  std::int64_t most = 0;
};

struct ProjectField {
  const char* column;  ///< of the table
  const char* member;  ///< in the text, UTF-8
  FieldForm form;
  /// Stands in the text also when the database holds nothing there, and must.
  bool always = false;
  NumberRange range{};  ///< of numbers, and of how many characters commands have; 0 for any
};
/// Of a text in UTF-8, as an editor counts them.
std::size_t Characters(std::string_view text);
/// Whether the program itself would store this there: no other form, no number out of range, no
/// name of nothing but blanks or of several lines, no macro that is too long. A database may hold
/// more than that. Nothing at all fits everywhere.
bool Fits(const ProjectField& field, const Value& value);

/// What is to know of a kind of record.
struct KindRow {
  ProjectKind kind;
  /// What tells records of the kind apart.
  enum class Identity : std::uint8_t { Name, Number, Single } identity;
  const char* member;  ///< of the text; also what the operator reads: "Matrix-Tabellen"
  const char* noun;    ///< "Matrix-Tabelle"
  const char* table;   ///< empty where there are no records
  const char* typ;     ///< of the records of `Makro`
  std::span<const ProjectField> fields;
  std::optional<std::size_t> number;  ///< the field that holds the record's number
  std::optional<std::size_t> name;
};
const KindRow& RowOf(ProjectKind kind);
/// All of them, in their order.
std::span<const KindRow> ProjectKindTable();

struct ProjectRecord {
  ProjectKind kind = ProjectKind::Macro;
  std::vector<Value> values;  ///< in the order of the kind's fields
  bool operator==(const ProjectRecord&) const = default;
};
/// UTF-8, empty without one.
std::string NameOf(const ProjectRecord& record);
/// Nothing where there is none, or no number.
std::optional<std::int64_t> NumberOf(const ProjectRecord& record);
/// "Makro 7 „Begrüßung“"
std::string RecordText(const ProjectRecord& record);

struct ProjectDrawing {
  std::string name;  ///< of its file, without folders, UTF-8
  Drawing drawing;
  bool operator==(const ProjectDrawing&) const = default;
};

struct Project {
  std::vector<ProjectRecord> records;
  std::vector<ProjectDrawing> drawings;
  std::vector<JournalEntry> inventory;  ///< in the order in which it happened
  std::set<ProjectKind> kinds;          ///< what it tells of, also where that is nothing
  std::set<ProjectKind> partly;         ///< of these only what was chosen
  bool operator==(const Project&) const = default;
};
/// The order in which records are written: by kind, number and name, at last by all else.
bool StandsBefore(const ProjectRecord& one, const ProjectRecord& other);
/// Brings records and drawings into the order in which they are written.
void SortProject(Project& project);

/// Told from time to time how much of all is done. False stops what is going on.
using ProjectProgress = std::function<bool(std::size_t done, std::size_t all)>;

}  // namespace kelvo
