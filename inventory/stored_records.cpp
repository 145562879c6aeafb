#include "inventory/stored_records.h"

#include <utility>

#include "base/val.h"
#include "base/wire_text.h"
#include "store/recordset.h"

namespace kelvo {

std::vector<StoredRecord> StoredRecords(Database& database) {
  std::vector<StoredRecord> all;
  Recordset records(database, "select * from Makro where typ <> 'Symbol'");
  for (; !records.Eof(); records.MoveNext()) {
    auto wire = WireText(records.Text("wert").value_or(""));
    if (!wire) continue;
    const auto number = records.Text("nr_im_display");
    all.push_back({records.Bookmark(), records.Text("typ").value_or(""),
                   records.Text("Bezeichnung").value_or(""),
                   number ? RoundToEven(records.Number("nr_im_display")) : -1, *std::move(wire)});
  }
  return all;
}

}  // namespace kelvo
