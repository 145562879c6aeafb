// Writes what the fuzzers start from: files, texts and lines as they are, small.

#include <fstream>
#include <string>
#include <vector>

#include "graphics/create_pic.h"
#include "graphics/dib.h"
#include "graphics/wmf.h"
#include "inventory/equip_log.h"
#include "inventory/journal.h"
#include "inventory/journal_text.h"
#include "inventory/readings.h"
#include "keyboards/at_table.h"
#include "keyboards/matrix_table.h"
#include "link/capture_text.h"
#include "project/project_text.h"
#include "tests/drawing_samples.h"
#include "tests/random_macros.h"
#include "tests/random_project.h"

namespace {

void Write(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

// A header of 40 bytes for two by two pixels and enough behind it for every depth.
std::string SmallDib(int bits) {
  std::string dib(40 + 1024 + 16, '\x55');
  dib.replace(0, 40, std::string(40, '\0'));
  dib[0] = 40;
  dib[4] = dib[8] = 2;
  dib[12] = 1;
  dib[14] = static_cast<char>(bits);
  return dib;
}

kelvo::JournalEntry SmallEntry(unsigned start) {
  const kelvo::ItemChange macro{kelvo::ItemChange::Kind::Written, {kelvo::ItemKind::Macro, 7}};
  return {kelvo::JournalTime(std::chrono::seconds(start)),
          {"/dev/ttyS0", 3},
          kelvo::Event::Acknowledged,
          macro,
          "Uhr",
          "\x1b"
          "EWM7,x\x03"};
}

// Records of every kind, a drawing and an entry.
std::string SmallProject(unsigned start) {
  kelvo::Project project = kelvo::RandomProject(start).Next(10);
  project.drawings = {{"Plan.wmf", kelvo::RandomDrawings(start).Next()}};
  project.inventory = {SmallEntry(start)};
  return kelvo::ProjectText(project).value_or("");
}

// An input of one of the parts that a fuzzer has.
std::string Part(int part, const std::string& text) { return static_cast<char>(part) + text; }

std::string WithoutSeal(std::string line) { return line.substr(0, line.rfind('\t')) + '\n'; }

std::string SmallCapture() {
  using kelvo::Direction;
  std::string text = std::string(kelvo::kCaptureHead) + '\n';
  kelvo::CaptureLine line{.characters = "\x1b?V"};
  text += kelvo::CaptureLineText(line);
  line = {line.time + std::chrono::milliseconds(30),
          Direction::FromTerminal,
          "2.10F;",
          std::chrono::microseconds(30'200),
          std::string(kelvo::kCaptureAnswered),
          1};
  return text + kelvo::CaptureLineText(line);
}

void WriteLines(const std::string& folder) {
  Write(folder + "echo", Part(0, std::string("\0\x03\x1b?A\2\x06\x1b?A?A3\1\xff\2\2;\x06", 20)));
  Write(folder + "text", Part(1, "\3\x1b?A\x1b?A?A3;"));
  Write(folder + "talk", Part(2, std::string("\1\2\6?V2.1;\0\0\1\3\1\x06\0\2", 16)));
  Write(folder + "capture", Part(3, SmallCapture()));
}

void WriteTerminals(const std::string& folder) {
  kelvo::RandomMacros macros(1);
  for (int i = 0; i < 12; ++i) {
    const std::string macro = macros.Strokes(6).substr(0, 240);
    const std::string text = i % 2 == 0 ? macro
                                        : "\x1b"
                                          "EWM7," +
                                              macro +
                                              "\x03\x1b"
                                              "EPM7;\x1b?V";
    const auto length = static_cast<char>(text.size());
    Write(folder + "heard" + std::to_string(i),
          Part(0, '\x10' + std::string(1, length) + text + "\2\1\1"));
  }
  Write(folder + "memory", Part(1,
                                "\x20"
                                "KEEP\1"));
  Write(folder + "capture", Part(2, SmallCapture()));
  Write(folder + "options",
        Part(3, "--no-window\n--version\n2.10F\n--fault\nflips:9\n--eeprom-size\n4096"));
  Write(folder + "bus",
        Part(3, "address=0 display=64x48\n# two\naddress=3 fault=drops:500 echo=query"));
  Write(folder + "commands",
        Part(4,
             "status\n@2 key 1 1 press\n@2 key 1 1 release\ntype abc\np1 7\nfault nak\n"
             "echo line\nversion 1.9\npower off\nreset\ncount\ncom2 x\nunplug\nplug"));
}

void WriteStored(const std::string& folder) {
  using namespace kelvo;
  MatrixTable table{.rows = RowsOf(0xC0), .columns = ColumnsOf(3)};
  table.cells[0] = "A";
  table.cells[9] = "&1B";
  Write(folder + "grid", Part(0, CreateTastTab(3, table).Text()));
  Write(folder + "pairs", Part(0, CreateATTab(3, {{65, 66}, {70, 71}}).Text()));
  Write(folder + "told", Part(0, "3,B8,41,42,FF,FF,FF,FF,FF,1B"));
  const Reading reading{JournalTime(), {"/dev/ttyS0", 3}, CommandName::AskVersion, "2.10F"};
  Write(folder + "lines",
        Part(1, WithoutSeal(JournalLine(SmallEntry(1))) + WithoutSeal(ReadingLine(reading))));
  EquipJob job;
  job.equipment.items = {{{ItemKind::Macro, 7},
                          "\x1b"
                          "EWM7,x\x03",
                          "Uhr"}};
  job.targets = {{{"/dev/ttyS0", 3}, "Pumpe", true}};
  std::string run;
  for (const std::string& line : JobLines(job)) run += line + '\n';
  Write(folder + "run", Part(2, run + EntryLine({.what = EquipEntry::What::Begun}) + '\n'));
  RandomMacros macros(2);
  for (int i = 0; i < 8; ++i)
    Write(folder + "macro" + std::to_string(i), Part(3, macros.Strokes(6)));
  Write(folder + "arguments", Part(4, "write\n--prove\n--to\n1,3,7..12\n7=hello.txt"));
  Write(folder + "addresses", Part(4, "0,4,9..17"));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string folder = argv[1];
  kelvo::RandomDrawings drawings(1);
  for (int i = 0; i < 40; ++i) {
    const kelvo::Drawing drawing = drawings.Next();
    const std::string number = std::to_string(i);
    Write(folder + "/wmf/" + number, kelvo::WriteWmf(drawing, 240, 128).bytes);
    kelvo::TerminalTraits traits;
    traits.displayHeight = 128;
    Write(folder + "/pic/" + number, kelvo::CreatePic(drawing, traits).text);
    Write(folder + "/project/" + number, SmallProject(static_cast<unsigned>(i)));
  }
  for (const int bits : {1, 4, 8, 16, 24, 32}) {
    Write(folder + "/dib/" + std::to_string(bits), SmallDib(bits));
  }
  WriteLines(folder + "/line/");
  WriteTerminals(folder + "/terminal/");
  WriteStored(folder + "/stored/");
  return 0;
}
