#include "widgets/record_editor_base.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <algorithm>

#include "base/guard.h"
#include "base/wire_text.h"
#include "widgets/form.h"

namespace kelvo {
namespace {

// Enough to tell one text from another.
constexpr std::size_t kShownLength = 300;

std::string Description(const std::optional<std::string>& name,
                        const std::optional<std::string>& wire) {
  const std::string text = wire.value_or("");
  return "'" + name.value_or("") + "':\n" + ReadableText(text.substr(0, kShownLength)) +
         (text.size() > kShownLength ? " …" : "");
}

}  // namespace

RecordRow::RecordRow(const char* namesName, const char* discardName, int nameWidth)
    : layout(new QHBoxLayout),
      names(Named(new QComboBox, namesName)),
      discard(MakeButton(discardName, QObject::tr("Änderung ver&werfen"),
                         QObject::tr("Zeigt wieder, was gespeichert ist."))) {
  names->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  names->setMinimumContentsLength(nameWidth);
  layout->addWidget(LabelFor(names, QObject::tr("Be&zeichnung:")));
  layout->addWidget(names, 1);
  layout->addWidget(discard);
}

RecordEditorBase::RecordEditorBase(Services services, RecordKind kind)
    : records_(services.records),
      names_(*services.row.names),
      person_(services.person),
      kind_(std::move(kind)),
      discard_(*services.row.discard) {
  names_.Fill(records_);
  EnableDiscard(false);
  QObject::connect(&discard_, &QAbstractButton::clicked, &discard_, [this] {
    const QByteArray name = discard_.objectName().toUtf8();
    Guarded(person_, name.constData(), [this] { Discard(); });
  });
}

void RecordEditorBase::SelectFirst() {
  records_.MoveFirst();
  ShowCurrent();
}

void RecordEditorBase::SelectChosen() {
  if (!records_.MoveToBookmark(names_.Chosen()) &&
      !records_.FindFirst("Bezeichnung", names_.ChosenName())) {
    records_.MoveFirst();
  }
  ShowCurrent();
}

bool RecordEditorBase::Select(std::int64_t bookmark) {
  if (!records_.MoveToBookmark(bookmark)) return false;
  ShowCurrent();
  return true;
}

std::optional<std::string> RecordEditorBase::Wert() const {
  const auto text = records_.Text("wert");
  if (!text) return std::nullopt;
  // Characters that no wire can carry were put in by another program; the rest is shown.
  return QString::fromStdString(*text).toLatin1().toStdString();
}

std::string RecordEditorBase::CurrentName() const {
  return HasCurrent() ? names_.NameOf(Current()) : kNewRecordName;
}

std::string RecordEditorBase::GivenName() const {
  std::string name = CurrentName();
  if (IsNewRecordName(name)) name.clear();
  return name;
}

// What is saved without asking must not be the second of a name.
std::string RecordEditorBase::NameToSave(const std::string& name, std::int64_t bookmark) const {
  if (!IsNewRecordName(name)) return name;
  const std::vector<std::string> names = records_.Column("Bezeichnung");
  const auto taken = [&](const std::string& some) {
    for (std::size_t i = 0; i < names.size(); ++i) {
      if (names[i] == some && records_.BookmarkAt(i) != bookmark) return true;
    }
    return false;
  };
  std::string free = name;
  for (int number = 2; taken(free); ++number) {
    free = std::string(kNewRecordName) + " " + std::to_string(number);
  }
  return free;
}

void RecordEditorBase::EnableDiscard(bool on) { discard_.setEnabled(on); }

void RecordEditorBase::ReadRecords() {
  records_.Refresh();
  if (!names_.Shows(records_)) {
    names_.Fill(records_);
    MarkDrafts();
  }
  SelectCurrent();
}

RecordEditorBase::Target RecordEditorBase::AskForName(std::string& name,
                                                      const std::string& savedTyp) {
  const std::int64_t edited = Current();
  for (;;) {
    const auto answer = person_.Input(kind_.namePrompt, name);
    if (!answer || answer->empty()) break;
    name = *answer;
    const Target target = TargetOf(name, savedTyp);
    if (target != Target::None) return target;
  }
  if (Current() != edited && records_.MoveToBookmark(edited)) ShowCurrent();
  return Target::None;
}

RecordEditorBase::Target RecordEditorBase::TargetOf(const std::string& name,
                                                    const std::string& savedTyp) {
  if (kind_.overwriteQuestion.empty()) return HasCurrent() ? Target::Current : Target::New;
  ReadRecords();  // another program may have used the name since
  const std::int64_t edited = Current();
  // Of several records of a name, which another program or an import can make, the one edited.
  const bool own = HasCurrent() && records_.Text("Bezeichnung") == name;
  if (!own && !records_.FindFirst("Bezeichnung", name)) return Target::New;
  ShowCurrent();
  const Proposal proposal = Current() == edited ? Proposal::ByIcon : Proposal::No;
  const std::string typ = records_.Text("typ").value_or("");
  const std::string hint = typ.empty() || typ == savedTyp
                               ? std::string()
                               : "Der Satz dieses Namens ist keiner dieser Art (\"" + typ +
                                     "\", nicht \"" + savedTyp +
                                     "\"). Von der Seite, auf der er jetzt steht, würde er "
                                     "verschwinden.";
  return person_.Ask(kind_.overwriteQuestion, Icon::Question, "Speichern", proposal, hint)
             ? Target::Current
             : Target::None;
}

bool RecordEditorBase::Store(Target target, const std::string& name, const Fields& fields,
                             const Recordset::Row& asRead) {
  try {
    Write(target, name, fields, asRead);
    return true;
  } catch (const StoreConflict& conflict) {
    if (conflict.kind == StoreConflict::Kind::Gone) {
      if (!KeepDraftOfDeleted(name, Proposal::ByIcon)) return false;
      ReadRecords();
      Write(Target::New, name, fields, {});
      return true;
    }
    ReadRecords();
    if (!MayOverwrite(name, fields)) return false;
    Write(target, name, fields, records_.Current());
    return true;
  }
}

void RecordEditorBase::Append(const std::string& name, const Fields& fields) {
  Write(Target::New, name, fields, {});
}

void RecordEditorBase::Write(Target target, const std::string& name, const Fields& fields,
                             const Recordset::Row& asRead) {
  const Recordset::Row before = records_.Current();
  const std::string nameBefore = CurrentName();
  const bool hadContent = Wert().has_value();
  target == Target::New ? records_.AddNew() : records_.Edit(asRead);
  records_.Set("Bezeichnung", name);
  if (!kind_.typ.empty()) records_.Set("typ", kind_.typ);
  for (const auto& [field, value] : fields) records_.Set(field, value);
  records_.Update();
  if (target == Target::Current) {
    names_.Rename(Current(), name);
    if (hadContent) NoteOverwriting(Current(), nameBefore, before);
    return;
  }
  records_.MoveLast();
  names_.Add(kind_.newEntry, Current(), name);
  // By its record and not by its name, which an older one may bear as well.
  SelectCurrent();
}

void RecordEditorBase::NoteOverwriting(std::int64_t bookmark, const std::string& name,
                                       const Recordset::Row& before) {
  person_.Done().Note("Überschreiben von „" + name + "“", [this, bookmark, name, before] {
    if (!records_.MoveToBookmark(bookmark)) return;
    records_.Edit();
    records_.SetAll(before);
    records_.Update();
    names_.Rename(bookmark, name);
    ShowCurrent();
  });
}

// The current record is the one that another program has stored.
bool RecordEditorBase::MayOverwrite(const std::string& name, const Fields& fields) {
  const auto wert =
      std::find_if(fields.begin(), fields.end(), [](const auto& f) { return f.first == "wert"; });
  const auto* const here = wert == fields.end() ? nullptr : std::get_if<std::string>(&wert->second);
  return person_.Ask("Der Satz wurde inzwischen von anderer Stelle geändert.\n\nGespeichert ist " +
                         Description(records_.Text("Bezeichnung"), Wert()) + "\n\nHier steht " +
                         Description(name, here ? WireText(*here) : std::nullopt) +
                         "\n\nÜberschreiben ?",
                     Icon::Exclamation, "Speichern");
}

bool RecordEditorBase::KeepDraftOfDeleted(const std::string& name, Proposal proposal) {
  return person_.Ask("Der Satz '" + name +
                         "' wurde inzwischen von anderer Stelle gelöscht. Was hier geändert wurde, "
                         "als neuen Satz behalten ?",
                     Icon::Question, "Speichern", proposal);
}

std::int64_t RecordEditorBase::DeleteCurrent() {
  const std::int64_t bookmark = Current();
  if (bookmark == 0) return 0;
  const std::string name = records_.Text("Bezeichnung").value_or("");
  if (!person_.Ask(kind_.noun + " '" + name + "' löschen ?", Icon::Question, {}, Proposal::No)) {
    return 0;
  }
  records_.Delete();
  records_.MoveNext();
  if (records_.Eof() && records_.RecordCount() > 0) records_.MoveLast();
  names_.Remove(bookmark);
  return bookmark;
}

std::vector<std::int64_t> RecordEditorBase::NeverFilled() {
  const std::int64_t current = Current();
  const std::vector<std::string> names = records_.Column("Bezeichnung");
  std::vector<std::int64_t> bookmarks;
  for (std::size_t i = 0; i < names.size(); ++i) {
    if (names[i] != kNewRecordName || !records_.MoveToBookmark(records_.BookmarkAt(i))) continue;
    if (!Wert()) bookmarks.push_back(Current());
  }
  records_.MoveToBookmark(current);
  return bookmarks;
}

bool RecordEditorBase::Remove(std::int64_t bookmark) {
  const std::int64_t current = Current();
  if (!records_.MoveToBookmark(bookmark)) return true;
  bool removed = false;
  try {
    records_.Delete();
    names_.Remove(bookmark);
    removed = true;
  } catch (const StoreConflict&) {
    removed = true;  // another program has made something of it
  } catch (const StoreError&) {
    // It is tried again when it is left next.
  }
  records_.MoveToBookmark(current);
  return removed;
}

}  // namespace kelvo
