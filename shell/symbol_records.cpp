#include "shell/symbol_records.h"

#include "base/wire_text.h"

namespace kelvo {

SymbolRecords::SymbolRecords(Database& database)
    : records_(database, "select * from Makro where typ = 'Symbol' order by Bezeichnung") {}

std::vector<GraphicsHost::StoredSymbol> SymbolRecords::All() {
  std::vector<GraphicsHost::StoredSymbol> symbols;
  records_.Refresh();
  for (records_.MoveFirst(); !records_.Eof(); records_.MoveNext()) {
    auto commands = WireText(records_.Text("wert").value_or(""));
    if (!commands) continue;
    symbols.push_back({records_.Text("Bezeichnung").value_or(""), std::move(*commands)});
  }
  return symbols;
}

bool SymbolRecords::Find(const std::string& name) {
  records_.Refresh();
  return records_.FindFirst("Bezeichnung", name);
}

void SymbolRecords::Store(const std::string& name, const std::string& commands) {
  Find(name) ? records_.Edit() : records_.AddNew();
  records_.Set("typ", std::string("Symbol"));
  records_.Set("Bezeichnung", name);
  records_.Set("wert", ScreenText(commands));
  records_.Update();
}

void SymbolRecords::Rename(const std::string& name, const std::string& changed) {
  if (Find(changed)) records_.Delete();
  if (!Find(name)) throw StoreConflict(StoreConflict::Kind::Gone);
  records_.Edit();
  records_.Set("Bezeichnung", changed);
  records_.Update();
}

void SymbolRecords::Delete(const std::string& name) {
  if (Find(name)) records_.Delete();
}

}  // namespace kelvo
