#pragma once

#include <string>
#include <vector>

#include "graphics/graphics_host.h"
#include "store/recordset.h"

namespace kelvo {

/// The operator's own symbols: records of the table `Makro` with typ "Symbol", whose `wert` holds
/// the drawing commands. So every database has room for them. What fails throws StoreError.
class SymbolRecords {
 public:
  explicit SymbolRecords(Database& database);

  /// As they are stored now, sorted by their names; those that cannot go on the wire are left out.
  std::vector<GraphicsHost::StoredSymbol> All();
  /// In the place of one of the same name.
  void Store(const std::string& name, const std::string& commands);
  /// Takes the place of one that has the new name already.
  void Rename(const std::string& name, const std::string& changed);
  void Delete(const std::string& name);

 private:
  bool Find(const std::string& name);

  Recordset records_;
};

}  // namespace kelvo
