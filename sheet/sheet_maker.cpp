#include "sheet/sheet_maker.h"

#include <utility>

#include "inventory/statement_words.h"
#include "sheet/characters.h"
#include "sheet/keyboard_chapters.h"
#include "sheet/macro_chapters.h"
#include "sheet/record_chapters.h"
#include "sheet/terminal_chapters.h"

namespace kelvo {
namespace {

constexpr char kTitle[] = "Datenblatt";
constexpr char kDatabasePart[] = "Datenbank";

SheetTable TerminalTable(const SheetSources& sources) {
  SheetTable table{{{"Adresse", 5}, {"Name", 16}, {"Anschluss", 10}, {"Version", 8}}, {}};
  for (const SheetTerminal& terminal : sources.terminals) {
    const Reading* const version = sources.readings->Last(terminal.id, CommandName::AskVersion);
    const bool known = terminal.id.address != kUnknownAddress;
    table.rows.push_back(
        {known ? std::to_string(terminal.id.address) : "?",
         terminal.name.empty() ? "ohne Namen" : PrintedWords(terminal.name),
         terminal.id.device.empty() ? "nicht bekannt" : PrintedWords(terminal.id.device),
         version == nullptr ? kNotRead
                            : PrintedText(version->reply) + " (" + ReadBasis(version->time) + ")"});
  }
  return table;
}

constexpr char kLegend[] =
    "Worauf jede Angabe beruht, steht bei ihr: „gelesen“ hat das Terminal selbst gesagt. "
    "„geschrieben und bestätigt“ wurde von hier gesendet, und das Terminal hat es angenommen; "
    "„geprüft“ heißt, dass auch die Prüfsumme stimmte. „Datenbank“ ist, was die Datenbank beim "
    "Erstellen enthielt. „errechnet“ ist nachgebildet, nicht gelesen. Was an kelvo vorbei geschah, "
    "steht hier nicht.";

}  // namespace

const char* ChapterTitle(SheetChapter chapter) {
  switch (chapter) {
    case SheetChapter::Interfaces:
      return "Adresse, Schnittstellen, Konfiguration";
    case SheetChapter::Matrix:
      return "Tastenfeld (Matrix)";
    case SheetChapter::At:
      return "AT-Tastatur";
    case SheetChapter::Macros:
      return "Makros";
    case SheetChapter::Bitmaps:
      return "Bitmaps";
    case SheetChapter::Eeprom:
      return "EEPROM: Platz und Bestand";
    case SheetChapter::Readings:
      return "Antworten des Terminals";
    case SheetChapter::Drawings:
      return "Zeichnungen";
    case SheetChapter::Database:
      return "Sätze, die in keinem dieser Terminals bekannt sind";
    case SheetChapter::Characters:
      break;
  }
  return "Zeichenerklärung";
}

SheetMaker::SheetMaker(SheetSources sources, std::set<SheetChapter> chapters,
                       const DeviceFonts& fonts)
    : sources_(std::move(sources)), chapters_(std::move(chapters)), fonts_(fonts) {
  PlanOverview();
  for (std::size_t index = 0; index < sources_.terminals.size(); ++index) PlanTerminal(index);
  Then([this] {
    PlanRecords();
    PlanCharacters();
  });
}

void SheetMaker::PlanCharacters() {
  if (!Wanted(SheetChapter::Characters)) return;
  Then([this] {
    Begin(ChapterTitle(SheetChapter::Characters));
    Add(SheetHeading{1, ChapterTitle(SheetChapter::Characters)});
    AddAll(CharactersChapter());
  });
}

bool SheetMaker::Step() {
  if (done_ >= steps_.size()) return false;
  // It may plan others, which moves those that are planned.
  const std::function<void()> step = std::move(steps_[done_++]);
  step();
  return done_ < steps_.size();
}

void SheetMaker::Begin(std::string part) { sheet_.parts.push_back({std::move(part), {}}); }

void SheetMaker::AddAll(Blocks blocks) {
  for (SheetBlock& block : blocks) Add(std::move(block));
}

void SheetMaker::PlanOverview() {
  Then([this] {
    const bool one = sources_.terminals.size() == 1;
    const std::string of = one ? SheetName(sources_.terminals.front())
                               : std::to_string(sources_.terminals.size()) + " Terminals";
    sheet_.title = std::string(kTitle) + ": " + of;
    Begin(of);
    Add(SheetHeading{0, sheet_.title});
    if (sources_.made) Add(SheetText{"Erstellt am " + LocalMoment(*sources_.made) + "."});
    Add(TerminalTable(sources_));
    Add(SheetText{kLegend, true});
    Add(SheetContents{});
  });
}

void SheetMaker::PlanTerminal(std::size_t index) {
  Then([this, index] {
    const std::string name = SheetName(sources_.terminals[index]);
    Begin(name);
    Add(SheetHeading{1, name});
  });
  const std::pair<SheetChapter, Blocks (*)(const SheetSubject&)> chapters[] = {
      {SheetChapter::Interfaces, InterfacesChapter},
      {SheetChapter::Matrix, MatrixChapter},
      {SheetChapter::At, AtChapter}};
  const auto plan = [this, index](SheetChapter chapter, Blocks (*make)(const SheetSubject&)) {
    if (!Wanted(chapter)) return;
    Then([this, index, chapter, make] {
      Add(SheetHeading{2, ChapterTitle(chapter)});
      AddAll(make(SubjectOf(sources_, index)));
    });
  };
  for (const auto& [chapter, make] : chapters) plan(chapter, make);
  if (Wanted(SheetChapter::Macros)) PlanItems(index, SheetChapter::Macros, ItemKind::Macro);
  if (Wanted(SheetChapter::Bitmaps)) PlanItems(index, SheetChapter::Bitmaps, ItemKind::Bitmap);
  plan(SheetChapter::Eeprom, EepromChapter);
  plan(SheetChapter::Readings, ReadingsChapter);
}

// A step for each item: the picture of a macro has to be reckoned.
void SheetMaker::PlanItems(std::size_t index, SheetChapter chapter, ItemKind kind) {
  Then([this, index, chapter, kind] {
    const SheetSubject subject = SubjectOf(sources_, index);
    Add(SheetHeading{2, ChapterTitle(chapter)});
    if (KnowsAny(subject.inventory, kind)) {
      Add(ItemTable(subject, {kind}));
    } else {
      Add(SheetText{"Von hier geschrieben liegt dort nichts davon."});
    }
    Add(SheetText{ElseWords(subject.inventory)});
  });
  for (const auto& [key, held] : sources_.inventories[index].Items()) {
    if (key.kind != kind) continue;
    Then([this, index, item = &held] {
      const SheetSubject subject = SubjectOf(sources_, index);
      const TextPrinter printer(sources_, fonts_);
      AddAll(ItemHead(subject, *item));
      const std::string text(ItemContent(item->item));
      const bool macro = item->item.key.kind == ItemKind::Macro;
      AddAll(macro ? printer.Macro(text, TextsIn(subject.inventory)) : printer.Bitmap(text));
    });
  }
}

void SheetMaker::PlanRecords() {
  if (Wanted(SheetChapter::Drawings) || Wanted(SheetChapter::Database)) {
    Then([this] {
      Begin(kDatabasePart);
      Add(SheetHeading{1, kDatabasePart});
    });
  }
  const auto plan = [this](SheetChapter chapter,
                           std::vector<const StoredRecord*> (*records)(const SheetSources&)) {
    if (!Wanted(chapter)) return;
    const std::vector<const StoredRecord*> some = records(sources_);
    Then([this, chapter, some] {
      Add(SheetHeading{2, ChapterTitle(chapter)});
      if (some.empty()) {
        Add(SheetText{"Keine."});
      } else {
        Add(RecordTable(some));
      }
    });
    for (const StoredRecord* const record : some) {
      Then([this, record] {
        AddAll(RecordBlocks(sources_, *record, TextPrinter(sources_, fonts_)));
      });
    }
  };
  plan(SheetChapter::Drawings, DrawingsIn);
  plan(SheetChapter::Database, RecordsElsewhere);
}

}  // namespace kelvo
