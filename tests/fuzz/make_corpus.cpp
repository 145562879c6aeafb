// Writes what the fuzzers start from: metafiles, commands and bitmaps of random drawings.

#include <fstream>
#include <string>

#include "graphics/create_pic.h"
#include "graphics/dib.h"
#include "graphics/wmf.h"
#include "inventory/journal.h"
#include "project/project_text.h"
#include "tests/drawing_samples.h"
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

// Records of every kind, a drawing and an entry.
std::string SmallProject(unsigned start) {
  kelvo::Project project = kelvo::RandomProject(start).Next(10);
  project.drawings = {{"Plan.wmf", kelvo::RandomDrawings(start).Next()}};
  const kelvo::ItemChange macro{kelvo::ItemChange::Kind::Written, {kelvo::ItemKind::Macro, 7}};
  project.inventory = {{kelvo::JournalTime(std::chrono::seconds(start)),
                        {"/dev/ttyS0", 3},
                        kelvo::Event::Acknowledged,
                        macro,
                        "Uhr",
                        "\x1b"
                        "EWM7,x\x03"}};
  return kelvo::ProjectText(project).value_or("");
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
  return 0;
}
