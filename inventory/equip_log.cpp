#include "inventory/equip_log.h"

#include <utility>

#include "inventory/line_text.h"
#include "store/draft_file.h"
#include "store/whole_file.h"

namespace kelvo {
namespace {

using What = EquipEntry::What;

constexpr std::string_view kAside = "ausstattung.txt";
constexpr std::string_view kHead = "kelvo-ausstattung 1";
constexpr std::string_view kTarget = "ziel";
constexpr std::string_view kEraseFirst = "vorher löschen";
constexpr std::string_view kBegin = "beginn";
constexpr std::string_view kWithChecksum = "mit Prüfsumme";
constexpr std::string_view kByVersion = "nach Version";

constexpr std::pair<What, std::string_view> kWhats[] = {{What::Version, "version"},
                                                        {What::FreeBytes, "frei"},
                                                        {What::EraseBegun, "löschen"},
                                                        {What::Erased, "gelöscht"},
                                                        {What::EraseFailed, "löschen misslungen"},
                                                        {What::Begun, "begonnen"},
                                                        {What::Result, "ergebnis"},
                                                        {What::NoRoom, "kein platz"},
                                                        {What::Anew, "von vorn"},
                                                        {What::Stopped, "angehalten"},
                                                        {What::Resumed, "fortgesetzt"}};

constexpr std::pair<WriteVerdict, std::string_view> kVerdicts[] = {
    {WriteVerdict::Proven, "geprüft"},          {WriteVerdict::AcknowledgedOnly, "bestätigt"},
    {WriteVerdict::Unproven, "ungeprüft"},      {WriteVerdict::WrongSum, "falsche summe"},
    {WriteVerdict::Refused, "abgelehnt"},       {WriteVerdict::UnknownCode, "unbekanntes zeichen"},
    {WriteVerdict::Silent, "keine reaktion"},   {WriteVerdict::NoTerminal, "niemand"},
    {WriteVerdict::OtherAnswer, "ein anderer"}, {WriteVerdict::LineLost, "leitung verloren"}};

template <typename Value, std::size_t size>
std::string WordOf(const std::pair<Value, std::string_view> (&words)[size], Value value) {
  for (const auto& [known, word] : words) {
    if (known == value) return std::string(word);
  }
  return {};
}

template <typename Value, std::size_t size>
std::optional<Value> ValueOf(const std::pair<Value, std::string_view> (&words)[size],
                             std::string_view text) {
  for (const auto& [value, word] : words) {
    if (word == text) return value;
  }
  return std::nullopt;
}

std::string_view ChecksumWord(std::optional<bool> checksum) {
  if (!checksum) return kByVersion;
  return *checksum ? kWithChecksum : "ohne Prüfsumme";
}

std::string TargetLine(const EquipTarget& target) {
  return std::string(kTarget) + "\t" + EscapedText(target.id.device) + "\t" +
         std::to_string(target.id.address) + "\t" + std::string(ChecksumWord(target.checksum)) +
         "\t" + EscapedText(target.name);
}

std::optional<EquipTarget> ReadTargetLine(const std::vector<std::string_view>& fields) {
  if (fields.size() != 5) return std::nullopt;
  const auto device = PlainText(fields[1]);
  const auto address = NumberIn<int>(fields[2]);
  const auto name = PlainText(fields[4]);
  if (!device || !address || !name) return std::nullopt;
  std::optional<bool> checksum;
  if (fields[3] != kByVersion) checksum = fields[3] == kWithChecksum;
  return EquipTarget{{*device, *address}, *name, checksum};
}

}  // namespace

// The equipment's own file stands in the middle, seals and all: as escaped text in one line.
std::vector<std::string> JobLines(const EquipJob& job) {
  std::vector<std::string> lines{std::string(kHead)};
  for (const EquipTarget& target : job.targets) lines.push_back(TargetLine(target));
  if (job.erase) lines.emplace_back(kEraseFirst);
  const std::string equipment = EquipmentFile(job.equipment);
  for (const std::string_view line : SplitAt(equipment, '\n')) {
    if (!line.empty()) lines.push_back("= " + std::string(line));
  }
  return lines;
}

std::optional<EquipJob> ReadJobLines(const std::vector<std::string_view>& lines) {
  if (lines.empty() || lines.front() != kHead) return std::nullopt;
  EquipJob job;
  std::string equipment;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    const auto fields = SplitAt(lines[i], '\t');
    if (lines[i].starts_with("= ")) {
      equipment += std::string(lines[i].substr(2)) + "\n";
    } else if (lines[i] == kEraseFirst) {
      job.erase = true;
    } else if (auto target = ReadTargetLine(fields); target && fields[0] == kTarget) {
      job.targets.push_back(*std::move(target));
    } else {
      return std::nullopt;
    }
  }
  auto read = ReadEquipmentFile(equipment);
  if (!read) return std::nullopt;
  job.equipment = *std::move(read);
  return job;
}

// time, target, step, what, verdict, bytes, text
std::string EntryLine(const EquipEntry& entry) {
  return TimeText(entry.time) + "\t" + std::to_string(entry.target) + "\t" +
         std::to_string(entry.step) + "\t" + WordOf(kWhats, entry.what) + "\t" +
         WordOf(kVerdicts, entry.verdict) + "\t" + std::to_string(entry.bytes) + "\t" +
         EscapedText(entry.text);
}

std::optional<EquipEntry> ReadEntryLine(std::string_view line) {
  const auto fields = SplitAt(line, '\t');
  if (fields.size() != 7) return std::nullopt;
  const auto time = TimeIn(fields[0]);
  const auto target = NumberIn<std::size_t>(fields[1]);
  const auto step = NumberIn<std::size_t>(fields[2]);
  const auto what = ValueOf(kWhats, fields[3]);
  const auto verdict = ValueOf(kVerdicts, fields[4]);
  const auto bytes = NumberIn<std::int64_t>(fields[5]);
  const auto text = PlainText(fields[6]);
  if (!time || !target || !step || !what || !verdict || !bytes || !text) return std::nullopt;
  return EquipEntry{*what, *target, *step, *verdict, *bytes, *text, *time};
}

std::optional<EquipLog> EquipLog::Create(const std::string& path, const EquipJob& job) {
  std::string text;
  for (const std::string& line : JobLines(job)) text += Sealed(line) + "\n";
  text += Sealed(std::string(kBegin)) + "\n";
  if (!Open(path)) static_cast<void>(DraftFile(path, kAside).SetAside());
  if (WriteWholeFile(path, text, FileKind::Own)) return std::nullopt;
  return EquipLog(path, job);
}

std::optional<EquipLog> EquipLog::Open(const std::string& path) {
  const JournalFile::Lines lines = JournalFile(path, FileKind::Own).Read();
  std::vector<std::string_view> head;
  std::optional<EquipLog> log;
  for (const std::string& line : lines.lines) {
    const auto inner = Unsealed(line);
    if (!inner) continue;
    if (!log && *inner != kBegin) {
      head.push_back(*inner);
    } else if (!log) {
      auto job = ReadJobLines(head);
      if (!job) return std::nullopt;
      log = EquipLog(path, *std::move(job));
    } else if (const auto entry = ReadEntryLine(*inner)) {
      log->progress_.Take(*entry);
    }
  }
  return log;
}

bool EquipLog::Add(const EquipEntry& entry) {
  progress_.Take(entry);
  return !file_.Append(Sealed(EntryLine(entry)) + "\n");
}

std::optional<std::string> EquipLog::Discard() const { return RemoveOwnFile(path_); }

}  // namespace kelvo
