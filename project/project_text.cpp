#include "project/project_text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <set>

#include "base/wire_text.h"
#include "inventory/journal_text.h"
#include "inventory/line_text.h"
#include "project/drawing_lines.h"
#include "project/identity.h"
#include "project/notation.h"
#include "store/database.h"

namespace kelvo {
namespace {

constexpr std::size_t kRecordsAtATime = 200;  // records between two looks at the progress

std::string RealText(double number) {
  // JSON has no word for these; as a text they come back as what they were.
  if (!std::isfinite(number)) return JsonString(std::to_string(number));
  std::array<char, 40> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  std::string text(digits.data(), end);
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

std::string ValueText(const Value& value, FieldForm form) {
  if (const auto* number = std::get_if<std::int64_t>(&value)) {
    const bool yesNo = form == FieldForm::YesNo && (*number == 0 || *number == 1);
    return yesNo ? *number == 1 ? "true" : "false" : std::to_string(*number);
  }
  if (const auto* number = std::get_if<double>(&value)) return RealText(*number);
  if (const auto* text = std::get_if<std::string>(&value)) return JsonString(*text);
  return "null";
}

// Members of one object; each may have several lines.
using Members = std::vector<std::vector<std::string>>;

std::vector<std::string> CommandLines(const std::string& start, const std::string& text) {
  const auto pieces = CommandPieces(text);
  if (pieces.empty()) return {start + "[]"};
  std::vector<std::string> lines{start + "["};
  for (const std::string_view piece : pieces) lines.push_back("  " + JsonString(piece) + ",");
  lines.back().pop_back();
  lines.emplace_back("]");
  return lines;
}

// `second`: a record before it has what tells it apart.
Members MembersOf(const ProjectRecord& record, bool second) {
  Members members;
  std::string odd;
  const KindRow& row = RowOf(record.kind);
  const auto identity = second ? IdentityField(row) : std::nullopt;
  for (std::size_t i = 0; i < row.fields.size(); ++i) {
    const ProjectField& field = row.fields[i];
    const Value& value = record.values[i];
    if (!field.always && std::holds_alternative<std::monostate>(value)) continue;
    if (!Fits(field, value) || identity == i)
      odd += (odd.empty() ? "" : ", ") + JsonString(field.member);
    const std::string start = "\"" + std::string(field.member) + "\": ";
    const auto* const text = std::get_if<std::string>(&value);
    if (field.form == FieldForm::Commands && text != nullptr) {
      members.push_back(CommandLines(start, *text));
    } else {
      members.push_back({start + ValueText(value, field.form)});
    }
  }
  if (!odd.empty()) members.push_back({JsonString(kProjectAsItIs) + ": [" + odd + "]"});
  return members;
}

bool InOneLine(ProjectKind kind) {
  return kind == ProjectKind::Terminal || kind == ProjectKind::Port || kind == ProjectKind::Display;
}

std::string OneLine(const Members& members) {
  std::string line;
  for (const auto& member : members) line += (line.empty() ? "" : ", ") + member.front();
  return "{" + line + "}";
}

void CheckTexts(const ProjectRecord& record) {
  for (const Value& value : record.values) {
    const auto* const text = std::get_if<std::string>(&value);
    if (text == nullptr || Utf8Length(*text) == text->size()) continue;
    throw StoreError(RecordText(record) +
                     ": Der Satz enthält Zeichen, die kein UTF-8 sind; er lässt sich nicht "
                     "exportieren.");
  }
}

std::vector<std::string> DrawingLines(const ProjectDrawing& drawing) {
  std::vector<std::string> lines{"{", "  \"Name\": " + JsonString(drawing.name) + ",",
                                 "  \"Objekte\": ["};
  AddObjectLines(lines, drawing.drawing, "    ");
  lines.insert(lines.end(), {"  ]", "}"});
  return lines;
}

// The columns of the journal's line, without its check, which guards against torn lines alone. The
// command stands last.
std::string EntryLine(const JournalEntry& entry) {
  const std::string line = JournalLine(entry);
  const auto body = Unsealed(std::string_view(line).substr(0, line.size() - 1)).value_or("");
  std::vector<std::string_view> columns = SplitAt(body, '\t');
  columns.pop_back();
  std::string text = "[";
  for (const std::string_view column : columns) {
    text += JsonString(PlainText(column).value_or("")) + ", ";
  }
  if (Utf8Length(text) == text.size()) return text + JsonString(ScreenText(entry.command)) + "]";
  throw StoreError(
      "Der Bestand enthält Zeichen, die kein UTF-8 sind; er lässt sich nicht "
      "exportieren.");
}

std::vector<std::string> RecordLines(const ProjectRecord& record, bool second) {
  const Members members = MembersOf(record, second);
  if (InOneLine(record.kind)) return {OneLine(members)};
  std::vector<std::string> lines{"{"};
  for (const auto& member : members) {
    for (const std::string& line : member) lines.push_back("  " + line);
    if (&member != &members.back()) lines.back() += ',';
  }
  lines.emplace_back("}");
  return lines;
}

// Writes section by section.
class Writer {
 public:
  Writer(const Project& project, const ProjectProgress& progress)
      : project_(project),
        progress_(progress),
        all_(project.records.size() + project.drawings.size() + project.inventory.size()) {}

  std::optional<std::string> Write() {
    text_ = "{\n  \"kelvo\": " + std::to_string(kProjectVersion);
    WritePartly();
    for (const KindRow& row : ProjectKindTable()) {
      if (project_.kinds.count(row.kind) > 0) WriteSection(row);
      if (stopped_) return std::nullopt;
    }
    return text_ + "\n}\n";
  }

 private:
  void WritePartly() {
    std::string names;
    for (const ProjectKind kind : project_.partly) {
      names += (names.empty() ? "" : ", ") + JsonString(RowOf(kind).member);
    }
    if (!names.empty()) text_ += ",\n  \"Auszug\": [" + names + "]";
  }

  void WriteSection(const KindRow& row) {
    text_ += ",\n  " + JsonString(row.member) + ": [";
    first_ = true;
    if (row.kind == ProjectKind::Drawing) {
      for (const ProjectDrawing& drawing : project_.drawings) AddItem(DrawingLines(drawing));
    } else if (row.kind == ProjectKind::Inventory) {
      for (const JournalEntry& entry : project_.inventory) AddItem({EntryLine(entry)});
    } else {
      WriteRecords(row.kind);
    }
    text_ += first_ ? "]" : "\n  ]";
  }

  void WriteRecords(ProjectKind kind) {
    for (; at_ < project_.records.size() && project_.records[at_].kind == kind; ++at_) {
      if (stopped_) return;
      const ProjectRecord& record = project_.records[at_];
      CheckTexts(record);
      const auto identity = IdentityOf(record);
      const bool second = identity && !written_.insert(*identity).second;
      AddItem(RecordLines(record, second));
    }
  }

  void AddItem(const std::vector<std::string>& lines) {
    if (stopped_) return;
    if (!first_) text_ += ',';
    first_ = false;
    for (const std::string& line : lines) text_ += "\n    " + line;
    stopped_ = ++done_ % kRecordsAtATime == 0 && progress_ && !progress_(done_, all_);
  }

  const Project& project_;
  const ProjectProgress& progress_;
  std::size_t all_;
  std::size_t done_ = 0;
  std::size_t at_ = 0;
  std::set<NameKey> written_;
  std::string text_;
  bool first_ = true;
  bool stopped_ = false;
};

}  // namespace

std::vector<std::string> ReadableLines(const ProjectRecord& record) {
  std::vector<std::string> lines;
  const KindRow& row = RowOf(record.kind);
  for (std::size_t i = 0; i < row.fields.size(); ++i) {
    const ProjectField& field = row.fields[i];
    const Value& value = record.values[i];
    if (std::holds_alternative<std::monostate>(value)) continue;
    const auto* const text = std::get_if<std::string>(&value);
    lines.push_back(std::string(field.member) + ":");
    if (field.form == FieldForm::Commands && text != nullptr) {
      for (const std::string_view piece : CommandPieces(*text)) lines.push_back(Notation(piece));
    } else {
      const bool blanks = text != nullptr && WithoutOuterBlanks(*text) != *text;
      lines.back() += " " + (blanks            ? "„" + Notation(*text) + "“"  // else unseen
                             : text != nullptr ? Notation(*text)
                                               : ValueText(value, field.form));
    }
  }
  return lines;
}

// A kind that has records is told of, whatever was said.
std::optional<std::string> ProjectText(Project project, const ProjectProgress& progress) {
  SortProject(project);
  for (const ProjectRecord& record : project.records) project.kinds.insert(record.kind);
  if (!project.drawings.empty()) project.kinds.insert(ProjectKind::Drawing);
  if (!project.inventory.empty()) project.kinds.insert(ProjectKind::Inventory);
  return Writer(project, progress).Write();
}

std::string FaultText(const ProjectFault& fault) {
  std::string text;
  if (fault.line > 0) {
    text = "Zeile " + std::to_string(fault.line) + ", Spalte " + std::to_string(fault.column);
  }
  if (!fault.place.empty()) text += (text.empty() ? "" : " ") + ("(" + fault.place + ")");
  return text.empty() ? fault.reason : text + ": " + fault.reason;
}

}  // namespace kelvo
