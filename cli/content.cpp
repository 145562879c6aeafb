#include "cli/content.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/wire_text.h"
#include "cli/files.h"
#include "cli/project_content.h"
#include "graphics/create_bitmap.h"
#include "graphics/create_pic.h"
#include "graphics/dib.h"
#include "graphics/pic_reader.h"
#include "graphics/wmf.h"
#include "inventory/stored_records.h"
#include "link/commands.h"
#include "link/control_characters.h"
#include "project/notation.h"

namespace kelvo::cli {
namespace {

constexpr char kBitmapFile[] = "BM";
constexpr std::size_t kBitmapFileHead = 14;
constexpr std::size_t kMostPixels = 4'000'000;
// How metafiles begin: with the head that says how large they are shown, or without.
constexpr std::string_view kMetafiles[] = {"\xD7\xCD\xC6\x9A",
                                           std::string_view("\x01\x00\x09\x00", 4)};

/// A file as it was named: with the number in the Terminal in front, or without.
struct NamedFile {
  std::string path;
  int number = -1;
};

NamedFile NamedFileOf(const std::string& argument) {
  const std::size_t equals = argument.find('=');
  if (equals == 0 || equals == std::string::npos) return {argument};
  int number = 0;
  const char* const end = argument.data() + equals;
  const auto read = std::from_chars(argument.data(), end, number);
  if (read.ec != std::errc() || read.ptr != end) return {argument};
  if (number < 0 || number > 255) {
    throw WrongRequest("Nummern gehen von 0 bis 255, nicht \"" + argument + "\".");
  }
  return {argument.substr(equals + 1), number};
}

bool BeginsWithCommand(const std::string& wire, CommandName name) {
  std::string begin;
  BeginCommand(begin, name);
  return wire.starts_with(begin);
}

void AddItem(Contents& contents, const NamedFile& file, const std::string& wire) {
  std::optional<Item> item = ItemOf(wire, std::filesystem::path(file.path).stem().string());
  if (!item) {
    contents.faults.push_back({file.path, "Der Befehl nennt keine Nummer von 0 bis 255."});
  } else if (file.number >= 0 && file.number != item->key.number) {
    contents.faults.push_back({file.path, "Der Befehl hat selbst eine Nummer, " +
                                              std::to_string(item->key.number) +
                                              "; eine andere davor geht nicht."});
  } else {
    contents.all.push_back({.place = file.path, .item = *std::move(item)});
  }
}

// Drawings may be of any length, so a text without a number that draws from its beginning is one.
void AddText(Contents& contents, const NamedFile& file, const std::string& bytes) {
  const std::string wire = WireOfFile(bytes);
  if (wire.empty()) return contents.faults.push_back({file.path, "Die Datei ist leer."});
  const bool whole = BeginsWithCommand(wire, CommandName::WriteKeyTable) ||
                     BeginsWithCommand(wire, CommandName::WriteBitmap) ||
                     BeginsWithCommand(wire, CommandName::WriteMakro);
  if (whole) return AddItem(contents, file, wire);
  Content content{.place = file.path};
  content.drawing = file.number < 0 && LooksLikePic(wire);
  content.record = {0, content.drawing ? "Grafik" : "Makro",
                    std::filesystem::path(file.path).stem().string(), file.number, wire};
  contents.all.push_back(std::move(content));
}

// What the stored options and the display say of the Terminal; its version counts as the newest.
TerminalTraits TraitsOf(Bench& bench) {
  TerminalTraits traits;
  traits.displayHeight = DisplayOf(bench).height;
  traits.blackThreshold = BlackThreshold(bench);
  return traits;
}

// A text may begin so, too; but it has no zeros in the reserved place.
bool IsBitmapFile(const std::string& bytes) {
  constexpr std::size_t kReserved = 6;
  return bytes.starts_with(kBitmapFile) && bytes.size() > kBitmapFileHead &&
         bytes.compare(kReserved, 4, std::string(4, '\0')) == 0;
}

bool IsMetafile(const std::string& bytes) {
  return std::any_of(std::begin(kMetafiles), std::end(kMetafiles),
                     [&bytes](std::string_view begin) { return bytes.starts_with(begin); });
}

void AddMetafile(Bench& bench, Contents& contents, const NamedFile& file,
                 const std::string& bytes) {
  const DisplaySizeChoice display = DisplayOf(bench);
  const WmfDrawing read = ReadWmf(bytes, display.width, display.height, bench.Fonts());
  if (!read.error.empty()) return contents.faults.push_back({file.path, read.error});
  TerminalTraits traits = TraitsOf(bench);
  const Translation pic = CreatePic(read.drawing, traits);
  for (const std::string& message : pic.messages) contents.faults.push_back({file.path, message});
  Content content{.place = file.path, .drawing = file.number < 0};
  content.record = {0, "Grafik", std::filesystem::path(file.path).stem().string(), file.number,
                    pic.text};
  contents.all.push_back(std::move(content));
}

void AddBitmap(Bench& bench, Contents& contents, const NamedFile& file, const std::string& bytes) {
  const auto picture = ReadDib(std::string_view(bytes).substr(kBitmapFileHead), kMostPixels);
  if (!picture) {
    return contents.faults.push_back(
        {file.path, "Das Bild ist beschädigt, gepackt oder zu groß (erwartet: BMP, ungepackt)."});
  }
  Content content{.place = file.path, .picture = *picture};
  DrawingObject object;
  object.kind = Kind::Picture;
  object.picture = *picture;
  TerminalTraits traits = TraitsOf(bench);
  const Translation bitmap =
      CreateBitmap(object, picture->Width(), picture->Height(), kCreateForEEProm, traits);
  const Command command = WriteBitmap(std::max(file.number, 0), bitmap.text);
  content.item = ItemOf(command.Text(), std::filesystem::path(file.path).stem().string());
  if (file.number < 0) content.record = {0, "Bitmap", content.item->name, -1, command.Text()};
  contents.all.push_back(std::move(content));
}

void AddEquipment(Contents& contents, const NamedFile& file, const Equipment& equipment) {
  for (const Item& item : equipment.items) {
    contents.all.push_back({.place = file.path + ": " + ItemText(item.key), .item = item});
  }
  contents.settings += equipment.settings;
}

void AddFile(Bench& bench, Contents& contents, const std::string& argument) {
  const NamedFile file = NamedFileOf(argument);
  const std::string bytes = ReadWhole(file.path);
  if (const auto equipment = ReadEquipmentFile(bytes)) {
    AddEquipment(contents, file, *equipment);
  } else if (LooksLikeProject(file.path, bytes)) {
    AddProject(contents, file.path, ProjectFrom(file.path, bytes), TraitsOf(bench));
  } else if (IsMetafile(bytes)) {
    AddMetafile(bench, contents, file, bytes);
  } else if (IsBitmapFile(bytes)) {
    AddBitmap(bench, contents, file, bytes);
  } else {
    AddText(contents, file, bytes);
  }
}

std::string ContentName(const Content& content) {
  return content.item ? content.item->name : content.record.name;
}

int ContentNumber(const Content& content) {
  return content.item ? content.item->key.number : content.record.number;
}

// Names count before numbers.
void KeepNamed(std::vector<Content>& kept, std::vector<Content>& all, const std::string& wanted) {
  const auto take = [&](const auto& is) {
    std::size_t found = 0;
    for (const Content& content : all) {
      if (!is(content)) continue;
      kept.push_back(content);
      ++found;
    }
    return found;
  };
  std::size_t found = take([&](const Content& content) { return ContentName(content) == wanted; });
  if (found == 0) {
    found =
        take([&](const Content& some) { return std::to_string(ContentNumber(some)) == wanted; });
  }
  if (found == 0) throw WrongRequest("Einen Text \"" + wanted + "\" gibt es nicht.");
  if (found == 1) return;
  std::string places;
  for (std::size_t i = kept.size() - found; i < kept.size(); ++i) {
    places += (places.empty() ? "" : "; ") + kept[i].place;
  }
  throw WrongRequest("\"" + wanted + "\" ist nicht eindeutig: " + places + ".");
}

// A number in front of the file is easily forgotten.
std::string HowToNumber(const Content& content) {
  const bool missing = content.record.number < 0 && !KindOfRecord(content.record.typ);
  const bool macro = content.record.number < 0 && content.record.typ == "Makro";
  if (!missing && !macro) return {};
  return content.ofProject ? " --record nennt, was von einem Projekt geschrieben wird."
                           : " Vor einer Datei nennt sie „7=DATEI“.";
}

void AddRecords(Bench& bench, Contents& contents) {
  for (const StoredRecord& record : StoredRecords(bench.Data().database)) {
    Content content{.place = "Datenbank: " + record.typ + " \"" + record.name + "\"",
                    .record = record};
    content.drawing = record.typ == "Grafik";
    contents.all.push_back(std::move(content));
  }
}

}  // namespace

Contents ContentsOf(Bench& bench) {
  const Options& asked = bench.Asked();
  Contents contents;
  for (const std::string& file : asked.files) AddFile(bench, contents, file);
  if (asked.records.empty()) return contents;
  if (asked.files.empty()) AddRecords(bench, contents);
  std::vector<Content> kept;
  for (const std::string& wanted : asked.records) KeepNamed(kept, contents.all, wanted);
  for (Content& content : kept) content.leftOut = false;  // asked for by its name
  contents.all = std::move(kept);
  return contents;
}

std::string WireOfFile(std::string bytes) {
  if (bytes.ends_with('\n')) bytes.pop_back();
  if (bytes.ends_with('\r')) bytes.pop_back();
  const bool plain = bytes.find(kEsc) != std::string::npos;
  if (auto text = plain ? std::nullopt : PlainNotation(bytes)) bytes = *std::move(text);
  if (auto wire = WireText(bytes)) return *std::move(wire);
  return bytes;
}

Equipment EquipmentOf(Contents& contents) {
  Equipment equipment{"Kommandozeile", {}, contents.settings, {}};
  for (const Content& content : contents.all) {
    if (content.leftOut) continue;
    if (content.item && content.record.typ.empty()) {
      equipment.items.push_back(*content.item);
      continue;
    }
    Equipment one = kelvo::EquipmentOf({content.record}, {});
    for (const std::string& why : one.missing) {
      contents.faults.push_back({content.place, why + HowToNumber(content)});
    }
    std::move(one.items.begin(), one.items.end(), std::back_inserter(equipment.items));
  }
  SortForWriting(equipment.items);
  return equipment;
}

}  // namespace kelvo::cli
