#pragma once

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "inventory/write_run.h"
#include "link/commands.h"
#include "sheet/sheet_maker.h"

namespace kelvo {

/// Terminals of which much is known, and a database.
class SheetSample {
 public:
  static constexpr char kDevice[] = "/dev/ttyUSB0";

  /// Another one on the line.
  TerminalId AddTerminal(int address, const std::string& name) {
    const TerminalId id{kDevice, address};
    terminals_.push_back({id, name, StoredTerminal{address, name, true, false}});
    return id;
  }
  void Note(const TerminalId& id, Event event, const Item& item) {
    journal_.Add({Moment(),
                  id,
                  event,
                  {ItemChange::Kind::Written, item.key},
                  item.name,
                  event == Event::Acknowledged ? item.command : std::string(),
                  0});
  }
  void Written(const TerminalId& id, const Command& command, const std::string& name) {
    Note(id, Event::Acknowledged, *ItemOf(command.Text(), name));
  }
  void Read(const TerminalId& id, CommandName query, const std::string& reply) {
    readings_->Add({Moment(), id, query, reply});
  }
  WriteJournal& Journal() { return journal_; }

  SheetSources Sources() const {
    SheetSources sources;
    sources.terminals = terminals_;
    for (const SheetTerminal& terminal : terminals_) {
      sources.inventories.push_back(journal_.Of(terminal.id));
    }
    sources.readings = readings_;
    sources.records = records;
    sources.wiring = wiring;
    sources.line = {{"Baudrate", "19200 Bit/s"}};
    return sources;
  }
  static Sheet Made(const SheetSources& sources, const DeviceFonts& fonts) {
    SheetMaker maker(sources, {std::begin(kSheetChapters), std::end(kSheetChapters)}, fonts);
    while (maker.Step()) {
    }
    return maker.Made();
  }

  std::vector<StoredRecord> records;
  std::map<std::int64_t, SheetWiring> wiring;

 private:
  // A minute later each time, from a day in local summer on.
  JournalTime Moment() { return JournalTime(std::chrono::minutes(29'000'000 + minute_++)); }

  int minute_ = 0;
  WriteJournal journal_;
  std::shared_ptr<Readings> readings_ = std::make_shared<Readings>();
  std::vector<SheetTerminal> terminals_;
};

/// All texts of a sheet in their order; the cells of a table one by one.
inline std::vector<std::string> TextsOf(const Sheet& sheet) {
  std::vector<std::string> texts{sheet.title};
  const auto add = [&texts](const auto&... some) { (texts.push_back(some), ...); };
  for (const SheetPart& part : sheet.parts) {
    add(part.name);
    for (const SheetBlock& block : part.blocks) {
      if (const auto* heading = std::get_if<SheetHeading>(&block)) add(heading->text);
      if (const auto* text = std::get_if<SheetText>(&block)) add(text->text);
      if (const auto* picture = std::get_if<SheetPicture>(&block)) add(picture->caption);
      if (const auto* table = std::get_if<SheetTable>(&block)) {
        for (const SheetColumn& column : table->columns) add(column.title);
        for (const auto& row : table->rows) texts.insert(texts.end(), row.begin(), row.end());
      }
      if (const auto* grid = std::get_if<SheetGrid>(&block)) {
        for (const auto& title : grid->columns) add(title.sign, title.code);
        for (const auto& [title, cells] : grid->rows) {
          add(title.sign, title.code);
          for (const auto& cell : cells) add(cell.sign, cell.code);
        }
      }
    }
  }
  return texts;
}

}  // namespace kelvo
