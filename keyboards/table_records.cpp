#include "keyboards/table_records.h"

#include <QComboBox>

#include "link/val.h"
#include "link/wire_text.h"

namespace kelvo {
namespace {

constexpr char newName[] = "(neuer Name)";
constexpr int nameRole = Qt::UserRole;
constexpr int bookmarkRole = Qt::UserRole + 1;

}  // namespace

void TableRecords::InsertName(int index, std::int64_t bookmark, const std::string& name) {
  names_.insertItem(index, QString());
  names_.setItemData(index, qlonglong{bookmark}, bookmarkRole);
  Rename(index, name);
}

void TableRecords::Rename(int index, const std::string& name) {
  names_.setItemData(index, QString::fromStdString(name), nameRole);
  names_.setItemText(index, QString::fromStdString(name));
}

void TableRecords::FillNames() {
  names_.clear();
  std::size_t position = 0;
  for (const std::string& name : records_.Column("Bezeichnung")) {
    InsertName(names_.count(), records_.BookmarkAt(position++), name);
  }
}

void TableRecords::Refresh() {
  records_.Refresh();
  if (!ListIsCurrent()) FillNames();
  SelectCurrent();
}

bool TableRecords::ListIsCurrent() const {
  const std::vector<std::string> names = records_.Column("Bezeichnung");
  if (static_cast<int>(names.size()) != names_.count()) return false;
  for (std::size_t position = 0; position < names.size(); ++position) {
    const std::int64_t bookmark = records_.BookmarkAt(position);
    if (!Holds(bookmark) || NameOf(bookmark) != names[position]) return false;
  }
  return true;
}

int TableRecords::IndexOf(std::int64_t bookmark) const {
  return names_.findData(qlonglong{bookmark}, bookmarkRole);
}

std::string TableRecords::NameOf(std::int64_t bookmark) const {
  return names_.itemData(IndexOf(bookmark), nameRole).toString().toStdString();
}

void TableRecords::SelectCurrent() {
  names_.setCurrentIndex(Current() == 0 ? -1 : IndexOf(Current()));
}

void TableRecords::SelectFirst() {
  records_.MoveFirst();
  SelectCurrent();
}

void TableRecords::SelectChosen() {
  const std::string name = names_.currentData(nameRole).toString().toStdString();
  if (!records_.FindFirst("Bezeichnung", name)) records_.MoveFirst();
  SelectCurrent();
}

void TableRecords::AddNew() {
  records_.AddNew();
  records_.Set("typ", typ_);
  records_.Set("Bezeichnung", std::string(newName));
  records_.Update();
  records_.MoveLast();
  InsertName(0, Current(), newName);
  // By its record and not by its name, which an older one may bear as well.
  SelectCurrent();
}

bool TableRecords::Save(const Contents& contents) {
  const std::int64_t edited = Current();
  const std::string proposed = edited == 0 ? newName : NameOf(edited);
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
  Rename(IndexOf(Current()), *name);
  SelectCurrent();
  return true;
}

std::int64_t TableRecords::Delete() {
  const std::int64_t bookmark = Current();
  if (bookmark == 0) return 0;
  // Both keyboards share this wording, deliberately.
  if (!person_.Ask("Umkodiertabelle '" + NameOf(bookmark) + "' löschen ?", Icon::Question))
    return 0;
  if (!records_.MoveToBookmark(bookmark)) return 0;
  records_.Delete();
  records_.MoveNext();
  names_.removeItem(IndexOf(bookmark));
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

void TableRecords::Mark(std::int64_t bookmark, bool unsaved) {
  const int index = IndexOf(bookmark);
  if (index < 0) return;
  const QString name = names_.itemData(index, nameRole).toString();
  names_.setItemText(index, unsaved ? QStringLiteral("* ") + name : name);
}

}  // namespace kelvo
