#include "widgets/name_list.h"

#include <QComboBox>

#include "store/recordset.h"
#include "widgets/tame_text.h"

namespace kelvo {
namespace {

constexpr int kNameRole = Qt::UserRole;
constexpr int kBookmarkRole = Qt::UserRole + 1;

}  // namespace

void NameList::Fill(const Recordset& records) {
  box_.clear();
  indexes_.clear();
  std::size_t position = 0;
  for (const std::string& name : records.Column("Bezeichnung")) {
    Add(NewEntry::Last, records.BookmarkAt(position++), name);
  }
}

bool NameList::Shows(const Recordset& records) const {
  const std::vector<std::string> names = records.Column("Bezeichnung");
  if (static_cast<int>(names.size()) != box_.count()) return false;
  for (std::size_t position = 0; position < names.size(); ++position) {
    const std::int64_t bookmark = records.BookmarkAt(position);
    if (!Holds(bookmark) || NameOf(bookmark) != names[position]) return false;
  }
  return true;
}

void NameList::Add(NewEntry where, std::int64_t bookmark, const std::string& name) {
  const int index = where == NewEntry::First ? 0 : box_.count();
  box_.insertItem(index, QString());
  box_.setItemData(index, qlonglong{bookmark}, kBookmarkRole);
  NoteIndexes(index);
  Rename(bookmark, name);
}

void NameList::Rename(std::int64_t bookmark, const std::string& name) {
  const int index = IndexOf(bookmark);
  box_.setItemData(index, QString::fromStdString(name), kNameRole);
  box_.setItemText(index, Tamed(QString::fromStdString(name)));
}

void NameList::Remove(std::int64_t bookmark) {
  const int index = IndexOf(bookmark);
  if (index < 0) return;
  indexes_.erase(bookmark);
  box_.removeItem(index);
  NoteIndexes(index);
}

void NameList::Mark(std::int64_t bookmark, bool unsaved) {
  const int index = IndexOf(bookmark);
  const QString name = Tamed(QString::fromStdString(NameAt(index)));
  box_.setItemText(index, unsaved ? QStringLiteral("* ") + name : name);
}

void NameList::Select(std::int64_t bookmark) { box_.setCurrentIndex(IndexOf(bookmark)); }

std::string NameList::ChosenName() const { return NameAt(box_.currentIndex()); }

std::int64_t NameList::Chosen() const { return box_.currentData(kBookmarkRole).toLongLong(); }

void NameList::NoteIndexes(int first) {
  for (int index = first; index < box_.count(); ++index) {
    indexes_[box_.itemData(index, kBookmarkRole).toLongLong()] = index;
  }
}

int NameList::IndexOf(std::int64_t bookmark) const {
  const auto found = indexes_.find(bookmark);
  return found == indexes_.end() ? -1 : found->second;
}

std::string NameList::NameAt(int index) const {
  return box_.itemData(index, kNameRole).toString().toStdString();
}

}  // namespace kelvo
