#include "shell/record_drafts.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <array>

#include "base/operator.h"
#include "store/new_name.h"
#include "widgets/files.h"
#include "widgets/record_editor.h"

namespace kelvo {
namespace {

constexpr int kDelayMilliseconds = 1000;
constexpr std::size_t kLargestFile = 100'000'000;

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
      Join(words, "\"" + name + "\"" + (IsNewRecordName(name) ? kPages[page] : ""));
    }
    const auto unnamed = std::count(names[page].begin(), names[page].end(), kNewRecordName);
    if (unnamed == 0) continue;
    Join(words, (unnamed > 1 ? std::to_string(unnamed) + " x " : std::string()) + "\"" +
                    kNewRecordName + "\"" + kPages[page]);
  }
  return words;
}

RecordDrafts::RecordDrafts(std::string path, std::vector<RecordEditorBase*> editors,
                           Operator& person)
    : path_(std::move(path)), editors_(std::move(editors)), person_(person) {
  timer_.setSingleShot(true);
  timer_.setInterval(kDelayMilliseconds);
  QObject::connect(&timer_, &QTimer::timeout, [this] { Keep(); });
  for (RecordEditorBase* const editor : editors_) {
    editor->SetDraftListener([this] { timer_.start(); });
  }
}

void RecordDrafts::Offer(const std::vector<std::string>& leftBehind) {
  OfferFile(path_);
  for (const std::string& path : leftBehind) {
    OfferFile(path);
    QFile::remove(QString::fromStdString(path));
  }
}

void RecordDrafts::OfferFile(const std::string& path) {
  const auto bytes = ReadFile(path, kLargestFile);
  if (!bytes) return;
  const QJsonArray kept = QJsonDocument::fromJson(QByteArray::fromStdString(*bytes)).array();
  std::vector<std::vector<KeptDraft>> drafts(editors_.size());
  std::vector<std::vector<std::string>> names(editors_.size());
  for (qsizetype i = 0; i < kept.size() && i < static_cast<qsizetype>(drafts.size()); ++i) {
    const auto page = static_cast<std::size_t>(i);
    for (const QJsonValue& draft : kept[i].toArray()) {
      drafts[page].push_back(Unpacked(draft.toObject()));
      names[page].push_back(drafts[page].back().name);
    }
  }
  const std::string words = DraftWords(names);
  if (words.empty() || !person_.Ask("Nicht gespeicherte Änderungen sind vom letzten Mal übrig: " +
                                    words + ". Wiederherstellen ?")) {
    QFile::remove(QString::fromStdString(path));
    return;
  }
  for (std::size_t i = 0; i < editors_.size(); ++i) editors_[i]->TakeDrafts(drafts[i]);
  Keep();  // before the other file goes
}

void RecordDrafts::Keep() {
  timer_.stop();
  QJsonArray all;
  bool any = false;
  for (const RecordEditorBase* const editor : editors_) {
    QJsonArray drafts;
    for (const KeptDraft& draft : editor->KeptDrafts()) drafts << Packed(draft);
    any = any || !drafts.isEmpty();
    all << drafts;
  }
  if (!any) return Remove();
  // What cannot be kept is not worth a box at every key; the edits are still here.
  WriteFile(path_, QJsonDocument(all).toJson(QJsonDocument::Compact).toStdString());
}

void RecordDrafts::Remove() {
  timer_.stop();
  QFile::remove(QString::fromStdString(path_));
}

}  // namespace kelvo
