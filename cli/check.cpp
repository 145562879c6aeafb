#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "cli/content.h"
#include "cli/verbs.h"
#include "settings/macro_check.h"
#include "terminal/eeprom.h"

namespace kelvo::cli {
namespace {

constexpr Column kCheckColumns[] = {{"datei", "Datei"},   {"text", "Text"}, {"schwere", "Schwere"},
                                    {"stelle", "Stelle"}, {"laenge", ""},   {"hinweis", "Hinweis"}};

std::string Word(Severity severity) {
  switch (severity) {
    case Severity::Error:
      return "Fehler";
    case Severity::Warning:
      return "Warnung";
    case Severity::Hint:
      break;
  }
  return "Hinweis";
}

std::string TextName(const Content& content) {
  const Item* const item = content.item ? &*content.item : nullptr;
  const std::string& name = item != nullptr ? item->name : content.record.name;
  if (item != nullptr && content.record.typ.empty()) return ItemText(item->key) + " " + name;
  const int number = content.record.number;
  return content.record.typ + (number < 0 ? "" : " " + std::to_string(number)) + " " + name;
}

bool IsMacro(const Content& content) {
  if (content.item) return content.item->key.kind == ItemKind::Macro;
  return !content.drawing &&
         KindOfRecord(content.record.typ).value_or(ItemKind::Macro) == ItemKind::Macro;
}

// Of a macro what it holds; of all else the command that writes it.
std::string CheckedText(const Content& content) {
  if (!content.item) return content.record.wire;
  const bool macro = IsMacro(content);
  return macro ? std::string(ItemContent(*content.item)) : content.item->command;
}

/// What is found, row by row.
class Findings {
 public:
  explicit Findings(Bench& bench) : bench_(bench) {
    table_.columns.assign(std::begin(kCheckColumns), std::end(kCheckColumns));
  }

  void Error(const std::string& place, const std::string& text, const std::string& why) {
    Add(place, text, Severity::Error, {}, {}, why);
  }
  /// Unless the check of its text has said why already.
  void Refuse(const Fault& fault) {
    if (!wrongPlaces_.contains(fault.place)) Error(fault.place, "", fault.reason);
  }
  void Check(const Contents& contents);
  void CheckConflicts(const Contents& contents);
  void CheckSize(const Equipment& equipment);
  Status End();

 private:
  void Add(const std::string& place, const std::string& text, Severity severity, Cell position,
           Cell length, const std::string& words);
  MacroContext ContextOf(const Content& content, const std::map<int, std::string>& macros) const;
  void CheckText(const Content& content, const std::map<int, std::string>& macros);

  Bench& bench_;
  Table table_;
  std::set<std::string> wrongPlaces_;
};

void Findings::Add(const std::string& place, const std::string& text, Severity severity,
                   Cell position, Cell length, const std::string& words) {
  if (severity == Severity::Error) wrongPlaces_.insert(place);
  table_.rows.push_back(
      {place, text, Word(severity), std::move(position), std::move(length), words});
}

// Macros that run each other are known as far as they are here.
void Findings::Check(const Contents& contents) {
  std::map<int, std::string> macros;
  for (const Content& content : contents.all) {
    const Item* const item = content.item ? &*content.item : nullptr;
    if (item != nullptr && item->key.kind == ItemKind::Macro) {
      macros[item->key.number] = std::string(ItemContent(*item));
    } else if (item == nullptr && content.record.number >= 0 && content.record.typ == "Makro") {
      macros[content.record.number] = content.record.wire;
    }
  }
  for (const Content& content : contents.all) CheckText(content, macros);
}

MacroContext Findings::ContextOf(const Content& content,
                                 const std::map<int, std::string>& macros) const {
  const DisplaySizeChoice display = DisplayOf(bench_);
  MacroContext context;
  context.display = {display.width, display.height};
  context.isMacro = IsMacro(content);
  const int number = content.item ? content.item->key.number : content.record.number;
  if (number >= 0) context.number = number;
  if (!macros.empty()) {
    context.macroText = [&macros](int wanted) {
      const auto found = macros.find(wanted);
      return found == macros.end() ? std::nullopt : std::optional(found->second);
    };
  }
  context.hasGlyph = [this](int font, unsigned char character) {
    return bench_.Fonts().Font(font).HasGlyph(character);
  };
  return context;
}

void Findings::CheckText(const Content& content, const std::map<int, std::string>& macros) {
  for (const Remark& remark : CheckMacro(CheckedText(content), ContextOf(content, macros))) {
    Add(content.place, TextName(content), remark.severity,
        static_cast<std::int64_t>(remark.position) + 1, static_cast<std::int64_t>(remark.length),
        remark.text);
  }
}

// Each item with where it comes from, so that both sides of a conflict are found again.
void Findings::CheckConflicts(const Contents& contents) {
  std::vector<Item> items;
  std::vector<std::string> places;
  for (const Content& content : contents.all) {
    Contents alone{{content}, {}, {}};
    for (Item& item : EquipmentOf(alone).items) {
      items.push_back(std::move(item));
      places.push_back(content.place);
    }
  }
  for (const ItemConflict& conflict : Conflicts(items)) {
    std::string where = places[conflict.one];
    if (places[conflict.other] != where) where.append(", ").append(places[conflict.other]);
    Error(where, "alles", conflict.text);
  }
}

void Findings::CheckSize(const Equipment& equipment) {
  if (!bench_.Asked().eeprom) return;
  const auto needed = static_cast<std::int64_t>(LeastBytes(equipment.items));
  const std::int64_t room = *bench_.Asked().eeprom - kEepromReserve;
  const std::string words = "Gebraucht werden mindestens " + std::to_string(needed) + " Byte und " +
                            std::to_string(kEepromReserve) + " Byte Reserve; das EEPROM hat " +
                            std::to_string(*bench_.Asked().eeprom) + ".";
  if (needed > room) return Error("", "alles", words);
  Add("", "alles", Severity::Hint, {}, {}, words);
}

Status Findings::End() {
  bench_.Print(table_);
  return wrongPlaces_.empty() ? AllWell : SomethingFailed;
}

// A text without a number is no mistake as long as nobody writes it.
bool MayBeWritten(const Content& content) {
  return content.item ? content.record.typ.empty() : !content.drawing && content.record.number >= 0;
}

}  // namespace

Status RunCheck(Bench& bench) {
  Contents contents = ContentsOf(bench);
  Findings findings(bench);
  findings.Check(contents);
  Contents numbered{{}, contents.settings, contents.faults};
  std::copy_if(contents.all.begin(), contents.all.end(), std::back_inserter(numbered.all),
               MayBeWritten);
  const Equipment equipment = EquipmentOf(numbered);
  for (const Fault& fault : numbered.faults) findings.Refuse(fault);
  findings.CheckConflicts(numbered);
  findings.CheckSize(equipment);
  return findings.End();
}

}  // namespace kelvo::cli
