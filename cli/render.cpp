#include "base/val.h"
#include "cli/content.h"
#include "cli/files.h"
#include "cli/verbs.h"
#include "graphics/create_bitmap.h"
#include "graphics/png.h"
#include "inventory/stored_records.h"
#include "twin/preview.h"

namespace kelvo::cli {
namespace {

/// The text that shows something; nothing for a table.
std::optional<std::string> ShownText(const Content& content) {
  if (!content.item) {
    const auto kind = KindOfRecord(content.record.typ);
    const bool text = !kind || *kind == ItemKind::Macro;
    return text ? std::optional(content.record.wire) : std::nullopt;
  }
  if (content.item->key.kind != ItemKind::Macro) return std::nullopt;
  return std::string(ItemContent(*content.item));
}

// A text may run macros of the database.
std::optional<std::string> StoredMacro(Bench& bench, int number) {
  ProgramData* const data = bench.DataIfThere();
  if (data == nullptr) return std::nullopt;
  for (const StoredRecord& record : StoredRecords(data->database)) {
    if (record.typ == "Makro" && record.number == number) return record.wire;
  }
  return std::nullopt;
}

void TellDoubts(Bench& bench, const PreviewResult& result) {
  const auto say = [&bench](bool is, const char* text) {
    if (is) bench.Operator().Say(text);
  };
  say(result.restarts,
      "Der Text startet das Terminal neu; was dahinter steht, wird nicht erreicht.");
  say(result.neverEnds, "Makros rufen einander im Kreis auf.");
  say(result.handsOver,
      "Der Text wählt ein anderes Terminal; was dahinter steht, hört dieses nicht.");
  for (const int number : result.unknown) {
    bench.Operator().Say("Der Text führt Makro " + std::to_string(number) +
                         " aus, das hier nicht bekannt ist.");
  }
}

PixelMap PictureOf(Bench& bench, const Content& content) {
  if (content.picture.Width() > 0) {
    DrawingObject object;
    object.kind = Kind::Picture;
    object.picture = content.picture;
    const int width = content.picture.Width();
    const int height = content.picture.Height();
    return RenderBitmap(object, width, height, BlackThreshold(bench), {0, 0, width, height});
  }
  const auto text = ShownText(content);
  if (!text) throw WrongRequest(content.place + " ist nichts, das etwas anzeigt.");
  const DisplaySizeChoice display = DisplayOf(bench);
  PreviewStart start;
  start.width = display.width;
  start.height = display.height;
  start.makro = [&bench](int number) { return StoredMacro(bench, number); };
  const PreviewResult result = Preview(bench.Fonts()).Run(*text, start);
  TellDoubts(bench, result);
  return result.withCursor;
}

}  // namespace

Status RunRender(Bench& bench) {
  const Contents contents = ContentsOf(bench);
  for (const Fault& fault : contents.faults) {
    bench.Operator().Say(fault.place + ": " + fault.reason);
  }
  if (contents.all.empty()) return SomethingFailed;
  if (contents.all.size() > 1) {
    throw WrongRequest("Die Datei enthält mehrere Texte; --record nennt den einen.");
  }
  const std::string png = PngOf(PictureOf(bench, contents.all.front()), bench.Asked().scale);
  if (bench.Asked().png == kStandardOutput) {
    bench.World().out << png << std::flush;
  } else {
    WriteWhole(bench.Asked().png, png, bench.DataPath());
  }
  return contents.faults.empty() ? AllWell : SomethingFailed;
}

}  // namespace kelvo::cli
