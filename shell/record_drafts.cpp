#include "shell/record_drafts.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <array>

#include "base/operator.h"
#include "store/new_name.h"
#include "widgets/record_editor.h"

namespace kelvo {
namespace {

constexpr int kDelayMilliseconds = 1000;
constexpr std::size_t kLargestFile = 100'000'000;
constexpr char kAside[] = "entwuerfe.json";

const QString kRecord = QStringLiteral("satz");
const QString kName = QStringLiteral("name");
const QString kEdit = QStringLiteral("werte");

// Wire texts: byte b is code point b.
QJsonObject Packed(const KeptDraft& draft) {
  QJsonArray edit;
  for (const std::string& part : draft.edit) edit << QString::fromLatin1(part);
  return {{kRecord, qint64{draft.bookmark}},
          {kName, QString::fromStdString(draft.name)},
          {kEdit, edit}};
}

KeptDraft Unpacked(const QJsonObject& object) {
  KeptDraft draft{object[kRecord].toInteger(), object[kName].toString().toStdString(), {}};
  for (const QJsonValue& part : object[kEdit].toArray()) {
    draft.edit.push_back(part.toString().toLatin1().toStdString());
  }
  return draft;
}

void Join(std::string& words, const std::string& more) {
  words += (words.empty() ? "" : ", ") + more;
}

}  // namespace

std::string DraftWords(const std::vector<std::vector<std::string>>& names) {
  static constexpr std::array kPages{" der Makros", " der Matrix-Tastatur", " der AT-Tastatur"};
  std::string words;
  for (std::size_t page = 0; page < names.size() && page < kPages.size(); ++page) {
    for (const std::string& name : names[page]) {
      if (name == kNewRecordName) continue;
      Join(words, "„" + name + "“" + (IsNewRecordName(name) ? kPages[page] : ""));
    }
    const auto unnamed = std::count(names[page].begin(), names[page].end(), kNewRecordName);
    if (unnamed == 0) continue;
    Join(words, (unnamed > 1 ? std::to_string(unnamed) + " x " : std::string()) + "„" +
                    kNewRecordName + "“" + kPages[page]);
  }
  return words;
}

RecordDrafts::RecordDrafts(std::string path, std::vector<RecordEditorBase*> editors,
                           Operator& person, Tell tell)
    : file_(std::move(path), kAside),
      editors_(std::move(editors)),
      person_(person),
      tell_(std::move(tell)) {
  timer_.setSingleShot(true);
  timer_.setInterval(kDelayMilliseconds);
  QObject::connect(&timer_, &QTimer::timeout, [this] { Keep(); });
  for (RecordEditorBase* const editor : editors_) {
    editor->SetDraftListener([this] { timer_.start(); });
  }
}

void RecordDrafts::Offer(const std::vector<std::string>& leftBehind) {
  if (OfferFile(file_)) {
    file_.Take();
    Keep();
  }
  for (const std::string& path : leftBehind) {
    DraftFile left(path, kAside);
    if (!OfferFile(left) || !Keep()) continue;  // there until they are here
    left.Take();
    left.Remove();
  }
}

// Nothing for what was never written so.
std::optional<RecordDrafts::Drafts> RecordDrafts::DraftsIn(const std::string& bytes,
                                                           std::size_t pages) {
  const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(bytes));
  const QJsonArray kept = document.array();
  if (!document.isArray() || kept.size() > static_cast<qsizetype>(pages)) return std::nullopt;
  Drafts drafts;
  for (const QJsonValue& page : kept) {
    if (!page.isArray()) return std::nullopt;
    drafts.emplace_back();
    for (const QJsonValue& draft : page.toArray()) {
      if (!draft[kEdit].isArray() || !draft[kName].isString()) return std::nullopt;
      drafts.back().push_back(Unpacked(draft.toObject()));
    }
  }
  drafts.resize(pages);
  return drafts;
}

bool RecordDrafts::OfferFile(const DraftFile& file) {
  const auto left = file.LeftOver(kLargestFile);
  if (!left || !person_.IsThere()) return false;
  const auto drafts = DraftsIn(left->bytes, editors_.size());
  if (!left->problem.empty() || !drafts) {
    const std::string problem = left->problem.empty() ? "er ist beschädigt" : left->problem;
    person_.Message(LostDraftText(problem, file.SetAside()), Icon::Exclamation);
    return false;
  }
  std::vector<std::vector<std::string>> names(drafts->size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    for (const KeptDraft& draft : (*drafts)[i]) names[i].push_back(draft.name);
  }
  const std::string words = DraftWords(names);
  if (words.empty()) return true;
  const bool wanted = person_.Ask(
      "Nicht gespeicherte Änderungen sind vom letzten Mal übrig: " + words + ". Wiederherstellen ?",
      Icon::Question, {}, Proposal::YesAlways, DeclinedDraftHint(file.PlaceAside()));
  if (!person_.IsThere()) return false;
  if (!wanted) {
    file.SetAside();
    return false;
  }
  for (std::size_t i = 0; i < editors_.size(); ++i) editors_[i]->TakeDrafts((*drafts)[i]);
  return true;
}

bool RecordDrafts::Keep() {
  timer_.stop();
  QJsonArray all;
  bool any = false;
  for (const RecordEditorBase* const editor : editors_) {
    QJsonArray drafts;
    for (const KeptDraft& draft : editor->KeptDrafts()) drafts << Packed(draft);
    any = any || !drafts.isEmpty();
    all << drafts;
  }
  if (!any) {
    Remove();
    return true;
  }
  // Not worth a box at every key: the edits are still here.
  const auto reason = file_.Write(QJsonDocument(all).toJson(QJsonDocument::Compact).toStdString());
  if (reason) tell_(*reason);
  return !reason;
}

void RecordDrafts::Remove() {
  timer_.stop();
  file_.Remove();
}

}  // namespace kelvo
