#include "sheet/collect.h"

#include <algorithm>
#include <tuple>

#include "interfaces/port_control.h"
#include "inventory/stored_records.h"
#include "link/addresses.h"
#include "store/display_size.h"

namespace kelvo {
namespace {

struct Label {
  ComList list;
  const char* text;
  const char* unit = "";
};
constexpr Label kLabels[] = {{ComPortNr, "Anschluss"},
                             {ComBaud1, "Baudrate", " Bit/s"},
                             {ComParity1, "Parität"},
                             {ComBits1, "Datenbits"},
                             {ComStopBit1, "Stoppbits"},
                             {ComShake1, "Handshake"},
                             {ComPuffer1, "Puffer", " Zeichen"},
                             {ComBaud2, "Zweite Schnittstelle: Baudrate", " Bit/s"},
                             {ComParity2, "Zweite Schnittstelle: Parität"},
                             {ComBits2, "Zweite Schnittstelle: Bits je Zeichen"},
                             {ComStopbit2, "Zweite Schnittstelle: Stoppbits"},
                             {ComShake2, "Zweite Schnittstelle: Handshake"},
                             {ComPuffer2, "Zweite Schnittstelle: Puffer", " Zeichen"},
                             {ComRecCom2, "Zweite Schnittstelle: Empfang"}};

std::vector<SheetValue> LineValues(const Recordset& interfaces) {
  std::vector<SheetValue> values;
  for (const Label& label : kLabels) {
    const auto text = interfaces.Text(std::string(ComField(label.list)));
    const bool known = text && !text->empty();
    values.push_back({label.text, known ? *text + label.unit : "nicht eingestellt"});
  }
  return values;
}

std::map<std::int64_t, SheetWiring> Wirings(Database& database) {
  std::map<std::int64_t, SheetWiring> wirings;
  Recordset records(database, "select * from Makro where typ = 'MatrixTab'");
  for (; !records.Eof(); records.MoveNext()) {
    wirings[records.Bookmark()] = {records.Number("ausgang"), records.Number("eingang")};
  }
  return wirings;
}

bool Holds(const std::vector<SheetTerminal>& terminals, const TerminalId& id) {
  return std::any_of(terminals.begin(), terminals.end(),
                     [&id](const SheetTerminal& some) { return some.id == id; });
}

}  // namespace

std::vector<SheetTerminal> SheetTerminals(const ProgramData& data, const WriteJournal& journal,
                                          const TerminalId& listener,
                                          const std::function<std::string(int address)>& nameOf) {
  std::vector<SheetTerminal> terminals;
  for (const StoredTerminal& stored : StoredTerminals(data.ctlDovuData)) {
    terminals.push_back({{listener.device, stored.address}, nameOf(stored.address), stored});
  }
  for (const TerminalId& id : journal.Terminals()) {
    const bool one = id.address != kAllAddresses;
    if (one && !Holds(terminals, id)) terminals.push_back({id, nameOf(id.address)});
  }
  const bool known = listener.address != kUnknownAddress && !Holds(terminals, listener);
  if (known || terminals.empty()) terminals.push_back({listener, nameOf(listener.address)});
  return terminals;
}

SheetSources SourcesOf(ProgramData& data, const WriteJournal& journal,
                       std::shared_ptr<const Readings> readings,
                       std::vector<SheetTerminal> terminals) {
  SheetSources sources;
  for (const SheetTerminal& some : terminals) sources.inventories.push_back(journal.Of(some.id));
  sources.terminals = std::move(terminals);
  sources.readings = std::move(readings);
  sources.records = StoredRecords(data.database);
  sources.wiring = Wirings(data.database);
  sources.line = LineValues(data.ctlComData);
  std::tie(sources.width, sources.height) = DisplaySizeIn(data.Default);
  return sources;
}

}  // namespace kelvo
