#include "widgets/record_editor.h"

#include <QComboBox>
#include <QHBoxLayout>

#include "base/guard.h"
#include "widgets/form.h"

namespace kelvo {

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
      discard_(*services.row.discard),
      person_(services.person),
      kind_(std::move(kind)) {
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
  if (!records_.FindFirst("Bezeichnung", names_.ChosenName())) records_.MoveFirst();
  ShowCurrent();
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

void RecordEditorBase::EnableDiscard(bool on) { discard_.setEnabled(on); }

void RecordEditorBase::ReadRecords() {
  records_.Refresh();
  if (!names_.Shows(records_)) names_.Fill(records_);
  SelectCurrent();
}

RecordEditorBase::Target RecordEditorBase::AskForName(std::string& name) {
  const std::int64_t edited = Current();
  for (;;) {
    const auto answer = person_.Input(kind_.namePrompt, name);
    if (!answer || answer->empty()) break;
    name = *answer;
    const Target target = TargetOf(name);
    if (target != Target::None) return target;
  }
  if (Current() != edited && records_.MoveToBookmark(edited)) ShowCurrent();
  return Target::None;
}

RecordEditorBase::Target RecordEditorBase::TargetOf(const std::string& name) {
  if (kind_.overwriteQuestion.empty()) return HasCurrent() ? Target::Current : Target::New;
  if (!records_.FindFirst("Bezeichnung", name)) return Target::New;
  ShowCurrent();
  return person_.Ask(kind_.overwriteQuestion, Icon::Question, "Speichern") ? Target::Current
                                                                           : Target::None;
}

void RecordEditorBase::Store(Target target, const std::string& name, const Fields& fields) {
  target == Target::New ? records_.AddNew() : records_.Edit();
  records_.Set("Bezeichnung", name);
  if (!kind_.typ.empty()) records_.Set("typ", kind_.typ);
  for (const auto& [field, value] : fields) records_.Set(field, value);
  records_.Update();
  if (target == Target::Current) return names_.Rename(Current(), name);
  records_.MoveLast();
  names_.Add(kind_.newEntry, Current(), name);
  // By its record and not by its name, which an older one may bear as well.
  SelectCurrent();
}

std::int64_t RecordEditorBase::DeleteCurrent() {
  const std::int64_t bookmark = Current();
  if (bookmark == 0) return 0;
  const std::string name = records_.Text("Bezeichnung").value_or("");
  if (!person_.Ask(kind_.noun + " '" + name + "' löschen ?", Icon::Question)) return 0;
  records_.Delete();
  records_.MoveNext();
  if (records_.Eof() && records_.RecordCount() > 0) records_.MoveLast();
  names_.Remove(bookmark);
  return bookmark;
}

}  // namespace kelvo
