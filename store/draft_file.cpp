#include "store/draft_file.h"

#include <filesystem>

#include "store/file_calls.h"
#include "store/whole_file.h"

namespace kelvo {
namespace {

namespace fs = std::filesystem;

constexpr int kMostAside = 99;

}  // namespace

DraftFile::DraftFile(std::string path, std::string_view aside) : path_(std::move(path)) {
  const fs::path name(aside);
  asideName_ = (fs::path(path_).parent_path() / name.stem()).string();
  asideEnding_ = name.extension().string();
}

std::optional<DraftFile::Left> DraftFile::LeftOver(std::size_t limit) const {
  if (own_ || path_.empty() || !IsThere(path_)) return std::nullopt;
  Left left;
  left.problem = ReadWholeFile(path_, limit, left.bytes, FileKind::Own).value_or("");
  return left;
}

std::string DraftFile::PlaceAside() const {
  for (int number = 1; number <= kMostAside; ++number) {
    std::string place = asideName_ + "-" + std::to_string(number) + asideEnding_;
    if (!IsThere(place)) return place;
  }
  return {};
}

std::string DraftFile::SetAside() const {
  std::string place = PlaceAside();
  if (place.empty() || Files().Rename(path_, place) != 0) return {};
  return place;
}

std::optional<std::string> DraftFile::Write(std::string_view bytes) {
  if (path_.empty()) return std::nullopt;
  if (!own_ && IsThere(path_) && SetAside().empty()) return "der vom letzten Mal ist im Weg";
  own_ = true;
  return WriteWholeFile(path_, bytes, FileKind::Own);
}

void DraftFile::Remove() {
  if (own_) static_cast<void>(RemoveOwnFile(path_));
}

std::string LostDraftText(const std::string& problem, const std::string& place) {
  const std::string head =
      "Ein Entwurf vom letzten Mal kann nicht wiederhergestellt werden:\n" + problem + "\n";
  if (place.empty())
    return head + "Er bleibt, wo er ist; beim nächsten Start wird es neu versucht.";
  return head + "Er wurde nicht gelöscht, sondern umbenannt:\n" + place;
}

std::string DeclinedDraftHint(const std::string& place) {
  if (place.empty()) return "Bei Nein wird beim nächsten Start wieder gefragt.";
  return "Bei Nein bleibt der Entwurf unter einem anderen Namen erhalten:\n" + place;
}

}  // namespace kelvo
