#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>
#include <string>

#include "inventory/journal_text.h"
#include "inventory/line_text.h"
#include "link/addresses.h"
#include "project/identity.h"
#include "project/node_reader.h"
#include "project/notation.h"
#include "project/project_text.h"
#include "project/read_drawing.h"

namespace kelvo {
namespace {

using Type = JsonNode::Type;

constexpr char kVersion[] = "kelvo";
constexpr char kPartly[] = "Auszug";
constexpr std::size_t kStep = 500;  // records between two looks at the progress
constexpr std::size_t kColumns = 8;

struct WasStopped {};

const KindRow* KindNamed(std::string_view member) {
  for (const KindRow& row : ProjectKindTable()) {
    if (member == row.member) return &row;
  }
  return nullptr;
}

// As the database's column makes of it what is given.
Value WholeOf(const JsonNode& node) {
  if (node.type == Type::Whole) return node.whole;
  const bool whole = std::floor(node.real) == node.real && std::abs(node.real) < 1e15;
  return whole ? Value(static_cast<std::int64_t>(node.real)) : Value(node.real);
}

// A text in a number's column stays one unless it is a number.
Value NumberOfText(const std::string& text) {
  std::int64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto read = std::from_chars(text.data(), end, number);
  return read.ec == std::errc() && read.ptr == end ? Value(number) : Value(text);
}

Value NumberValue(const NodeReader& node, FieldForm form) {
  const JsonNode& json = node.Node();
  if (json.type == Type::String) return NumberOfText(node.Text());
  if (form == FieldForm::YesNo && json.type == Type::Bool) return std::int64_t{json.yes};
  if (json.type != Type::Whole && json.type != Type::Real) {
    node.MustBe(form == FieldForm::YesNo   ? Type::Bool
                : form == FieldForm::Whole ? Type::Whole
                                           : Type::Real);
  }
  if (form != FieldForm::Real) return WholeOf(json);
  return json.type == Type::Whole ? static_cast<double>(json.whole) : json.real;
}

Value CommandsValue(const NodeReader& list) {
  std::string text;
  for (std::size_t i = 0; i < list.Count(); ++i) text += list.Item(i, "Befehl").Text();
  return text;
}

// A number that stands for a text, which databases hold whatever a column is for.
bool IsNumber(const JsonNode& node) { return node.type == Type::Whole || node.type == Type::Real; }

Value AnyValue(const NodeReader& node, const ProjectField& field) {
  if (node.Node().type == Type::Null && field.always) return {};
  switch (field.form) {
    case FieldForm::Text:
      return node.Text();
    case FieldForm::Commands:
      return CommandsValue(node);
    case FieldForm::Whole:
    case FieldForm::Real:
    case FieldForm::YesNo:
      break;
  }
  return NumberValue(node, field.form);
}

[[noreturn]] void FailToFit(const NodeReader& node, const ProjectField& field, const Value& value) {
  if (field.form == FieldForm::Text)
    node.Fail("Eine Bezeichnung ist nicht leer und hat eine Zeile.");
  if (field.form == FieldForm::Commands) {
    node.Fail("Ein Makro hat höchstens " + std::to_string(field.range.most) +
              " Zeichen; hier sind es " + std::to_string(Characters(std::get<std::string>(value))) +
              ".");
  }
  const bool real = field.form == FieldForm::Real;
  const bool number = std::holds_alternative<std::int64_t>(value) ||
                      (real && std::holds_alternative<double>(value));
  if (field.form == FieldForm::YesNo) node.MustBe(Type::Bool);
  if (!number) node.MustBe(real ? Type::Real : Type::Whole);
  node.Fail("Hier geht es von " + std::to_string(field.range.least) + " bis " +
            std::to_string(field.range.most) + ".");
}

/// What of a record is as it is, whatever it holds.
using Odd = std::set<std::string>;

Value ValueOf(const NodeReader& node, const ProjectField& field, const Odd& odd) {
  const bool asItIs = odd.contains(field.member);
  const bool text = field.form == FieldForm::Text || field.form == FieldForm::Commands;
  if (asItIs && text && IsNumber(node.Node())) return NumberValue(node, FieldForm::Whole);
  if (asItIs && text && node.Node().type == Type::String) return node.Text();
  Value value = AnyValue(node, field);
  if (!asItIs && !Fits(field, value)) FailToFit(node, field, value);
  return value;
}

Odd OddOf(const KindRow& row, const NodeReader& record) {
  Odd odd;
  const auto list = record.MemberIf(kProjectAsItIs);
  for (std::size_t i = 0; list && i < list->Count(); ++i) {
    const NodeReader item = list->Item(i, "Wort");
    const std::string name = item.Text();
    const auto is = [&name](const ProjectField& field) { return name == field.member; };
    if (std::none_of(row.fields.begin(), row.fields.end(), is)) {
      item.Fail("„" + name + "“ ist hier nicht bekannt.");
    }
    odd.insert(name);
  }
  return odd;
}

// "Makro 7 „Begrüßung“" of what can be read of it; without number and name "Makro, Satz 3".
std::string PlaceOf(const KindRow& row, const JsonNode& node, std::size_t index) {
  ProjectRecord record{row.kind, std::vector<Value>(row.fields.size())};
  for (const auto& field : {row.number, row.name}) {
    const JsonNode* const member = field ? node.Find(row.fields[*field].member) : nullptr;
    if (member == nullptr) continue;
    if (member->type == Type::Whole) record.values[*field] = member->whole;
    if (member->type == Type::String) record.values[*field] = member->text;
  }
  const std::string text = RecordText(record);
  const bool nameless = text == row.noun && row.identity != KindRow::Identity::Single;
  return nameless ? std::string(row.member) + ", Satz " + std::to_string(index + 1) : text;
}

class Reader {
 public:
  Reader(const JsonNode& root, const ProjectProgress& progress)
      : root_(root, {}), progress_(progress) {}

  Project Read() {
    root_.MustBe(Type::Object);
    CheckVersion();
    CheckMembers();
    for (const KindRow& row : ProjectKindTable()) {
      if (const auto section = root_.MemberIf(row.member)) ReadSection(row, *section);
    }
    if (const auto partly = root_.MemberIf(kPartly)) ReadPartly(*partly);
    return std::move(project_);
  }

 private:
  void CheckVersion() const {
    const auto member = root_.MemberIf(kVersion);
    if (!member) root_.Fail("Das ist keine Projektdatei von kelvo: „kelvo“ mit der Version fehlt.");
    const std::int64_t version = member->Whole();
    if (version > kProjectVersion) {
      member->Fail("Die Datei hat die Version " + std::to_string(version) +
                   " und kommt von einem neueren kelvo; gelesen wird bis Version " +
                   std::to_string(kProjectVersion) + ".");
    }
    if (version < 1) member->Fail("Eine Version " + std::to_string(version) + " gibt es nicht.");
  }

  void CheckMembers() const {
    const JsonNode& node = root_.Node();
    for (std::size_t i = 0; i < node.names.size(); ++i) {
      const std::string& name = node.names[i];
      if (name == kVersion || name == kPartly || KindNamed(name) != nullptr) continue;
      NodeReader(node.items[i], {}).Fail("„" + name + "“ ist hier nicht bekannt.");
    }
  }

  void ReadPartly(const NodeReader& list) {
    for (std::size_t i = 0; i < list.Count(); ++i) {
      const NodeReader item = list.Item(i, "Wort");
      const std::string name = item.Text();
      const KindRow* const row = KindNamed(name);
      if (row == nullptr || project_.kinds.count(row->kind) == 0) {
        item.Fail("„" + name + "“ enthält die Datei nicht.");
      }
      if (!project_.partly.insert(row->kind).second) {
        item.Fail("„" + name + "“ steht hier zum zweiten Mal.");
      }
    }
  }

  void ReadSection(const KindRow& row, const NodeReader& section) {
    project_.kinds.insert(row.kind);
    const std::size_t count = NodeReader(section.Node(), row.member).Count();
    for (std::size_t i = 0; i < count; ++i) {
      Look();
      const JsonNode& item = section.Node().items[i];
      if (row.kind == ProjectKind::Inventory) {
        ReadEntry({item, Within(row.member, "Eintrag " + std::to_string(i + 1))});
      } else if (row.kind == ProjectKind::Drawing) {
        project_.drawings.push_back(DrawingOf(section.Item(i, row.noun)));
      } else {
        ReadRecord(row, {item, PlaceOf(row, item, i)}, i);
      }
    }
  }

  void ReadRecord(const KindRow& row, const NodeReader& node, std::size_t index) {
    node.MustBe(Type::Object);
    if (row.identity == KindRow::Identity::Single && index > 0) {
      node.Fail("Davon kann es nur einen Satz geben.");
    }
    CheckFields(row, node);
    const Odd odd = OddOf(row, node);
    ProjectRecord record{row.kind, {}};
    for (const ProjectField& field : row.fields) {
      const auto member =
          field.always ? std::optional(node.Member(field.member)) : node.MemberIf(field.member);
      record.values.push_back(member ? ValueOf(*member, field, odd) : Value());
    }
    CheckOnlyOne(row, node, odd, record);
    project_.records.push_back(std::move(record));
  }

  void CheckOnlyOne(const KindRow& row, const NodeReader& node, const Odd& odd,
                    const ProjectRecord& record) {
    const auto identity = IdentityOf(record);
    if (!identity) return;
    const char* const member = row.fields[*IdentityField(row)].member;
    if (odd.contains(member)) return;
    const auto [first, isFirst] = first_.insert({*identity, RecordText(record)});
    if (isFirst) return;
    node.Member(member).Fail(row.identity == KindRow::Identity::Name
                                 ? "Die Bezeichnung hat schon " + first->second +
                                       "; Leerzeichen am Rand zählen nicht."
                                 : "Die Nummer hat schon " + first->second + ".");
  }

  static void CheckFields(const KindRow& row, const NodeReader& node) {
    const JsonNode& object = node.Node();
    for (std::size_t i = 0; i < object.names.size(); ++i) {
      const std::string& name = object.names[i];
      const auto known = [&name](const ProjectField& field) { return name == field.member; };
      if (name == kProjectAsItIs) continue;
      if (std::any_of(row.fields.begin(), row.fields.end(), known)) continue;
      NodeReader(object.items[i], node.Place()).Fail("„" + name + "“ ist hier nicht bekannt.");
    }
  }

  void ReadEntry(const NodeReader& node) {
    if (node.Count() != kColumns) {
      node.Fail("Ein Eintrag hat " + std::to_string(kColumns) + " Spalten.");
    }
    std::string line;
    for (std::size_t i = 0; i + 1 < kColumns; ++i) {
      line += EscapedText(node.Item(i, "Spalte").Text()) + '\t';
    }
    line += EscapedWire(node.Item(kColumns - 1, "Spalte").Wire());
    auto entry = ReadJournalLine(Sealed(std::move(line)));
    if (!entry) node.Fail("Das ist kein Eintrag eines Bestands.");
    const int address = entry->terminal.address;
    if (address > kAllAddresses || (address < 0 && address != kUnknownAddress)) {
      node.Fail("Adressen gehen von 0 bis " + std::to_string(kAllAddresses) + ".");
    }
    project_.inventory.push_back(*std::move(entry));
  }

  void Look() {
    if (++read_ % kStep == 0 && progress_ && !progress_(read_, read_ + kStep)) throw WasStopped{};
  }

  NodeReader root_;
  const ProjectProgress& progress_;
  Project project_;
  std::map<NameKey, std::string> first_;  // who has a name or number, in words
  std::size_t read_ = 0;
};

// Characters, not bytes, are what an editor counts.
ProjectFault FaultAt(std::string_view text, std::size_t offset, std::string place,
                     std::string reason) {
  const std::string_view before = text.substr(0, offset);
  const std::size_t newline = before.rfind('\n');
  const std::string_view line = before.substr(newline == std::string_view::npos ? 0 : newline + 1);
  return {static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')) + 1,
          Characters(line) + 1, std::move(place), std::move(reason)};
}

}  // namespace

ReadResult ReadProject(std::string_view text, const ProjectProgress& progress) {
  auto tree = ReadJson(text, progress);
  if (std::holds_alternative<JsonStopped>(tree)) return Stopped{};
  if (auto* const fault = std::get_if<JsonFault>(&tree)) {
    return FaultAt(text, fault->offset, {}, std::move(fault->reason));
  }
  try {
    return Reader(std::get<JsonNode>(tree), progress).Read();
  } catch (const NodeFault& fault) {
    return FaultAt(text, fault.offset, fault.place, fault.reason);
  } catch (const WasStopped&) {
    return Stopped{};
  }
}

}  // namespace kelvo
