#include "keyboards/table_records.h"

#include <QString>

#include "base/val.h"
#include "base/wire_text.h"

namespace kelvo {

void TableRecords::Refresh() {
  records_.Refresh();
  if (!names_.Shows(records_)) FillNames();
  SelectCurrent();
}

void TableRecords::SelectFirst() {
  records_.MoveFirst();
  SelectCurrent();
}

void TableRecords::SelectChosen() {
  if (!records_.FindFirst("Bezeichnung", names_.ChosenName())) records_.MoveFirst();
  SelectCurrent();
}

void TableRecords::AddNew() {
  records_.AddNew();
  records_.Set("typ", typ_);
  records_.Set("Bezeichnung", std::string(NewRecordName));
  records_.Update();
  records_.MoveLast();
  names_.Insert(0, Current(), NewRecordName);
  // By its record and not by its name, which an older one may bear as well.
  SelectCurrent();
}

bool TableRecords::Save(const Contents& contents) {
  const std::int64_t edited = Current();
  const std::string proposed = edited == 0 ? NewRecordName : names_.NameOf(edited);
  const auto name = person_.Input("Bezeichnung für diese Tastaturtabelle :", proposed);
  if (!name || name->empty()) return false;
  if (edited == 0) AddNew();
  if (edited != 0 && !records_.MoveToBookmark(edited)) return false;
  records_.Edit();
  records_.Set("Bezeichnung", *name);
  records_.Set("typ", typ_);
  records_.Set("lfdnr", static_cast<std::int64_t>(records_.RecordCount()) - 1);
  records_.Set("ausgang", std::to_string(contents.ausgang));
  records_.Set("eingang", std::to_string(contents.eingang));
  records_.Set("nr_im_display", std::int64_t{RoundToEven(contents.number)});
  records_.Set("wert", ScreenText(contents.wert));
  records_.Update();
  names_.Rename(Current(), *name);
  SelectCurrent();
  return true;
}

std::int64_t TableRecords::Delete() {
  const std::int64_t bookmark = Current();
  if (bookmark == 0) return 0;
  // Both keyboards share this wording, deliberately.
  if (!person_.Ask("Umkodiertabelle '" + names_.NameOf(bookmark) + "' löschen ?", Icon::Question))
    return 0;
  if (!records_.MoveToBookmark(bookmark)) return 0;
  records_.Delete();
  records_.MoveNext();
  names_.Remove(bookmark);
  if (records_.Eof() && records_.RecordCount() > 0) records_.MoveLast();
  SelectCurrent();
  return bookmark;
}

std::optional<std::string> TableRecords::Wert() const {
  const auto text = records_.Text("wert");
  if (!text) return std::nullopt;
  // Characters that no wire can carry were put in by another program; they are no part of any code.
  return QString::fromStdString(*text).toLatin1().toStdString();
}

}  // namespace kelvo
