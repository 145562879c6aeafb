// Makes the Terminal's ten font files from the console's bitmap fonts.
//
//   make_fonts CONSOLE-FONT-FOLDER OUTPUT-FOLDER
//
// The console has no 8 x 10 font, no light one of 8 x 8 and no 4 x 6 digits; those are made here.
// Thin strokes are not had from the bold letters of 8 x 8: their serifs would break the stems, and
// "b" and "h", "B" and "8" look the same on a small display. The light letters come from the
// console's light font of 6 x 12.

#include <zlib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <map>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

// A row's leftmost pixel is bit width - 1.
using Rows = std::vector<std::uint32_t>;

struct Font {
  int width = 0;
  int height = 0;
  std::array<Rows, 256> glyphs;  // in Latin-1 order
};

// ---- Reading a console font (PSF version 1 or 2 with its Unicode table) ----

struct ConsoleFont {
  int width = 0;
  int height = 0;
  std::vector<Rows> glyphs;
  std::map<std::uint32_t, std::size_t> glyphOf;  // Unicode to glyph
};

std::string ReadCompressed(const std::string& path) {
  gzFile file = gzopen(path.c_str(), "rb");
  if (file == nullptr) throw std::runtime_error("cannot open " + path);
  std::string bytes;
  std::array<char, 4096> block{};
  int count = 0;
  while ((count = gzread(file, block.data(), block.size())) > 0) {
    bytes.append(block.data(), static_cast<std::size_t>(count));
  }
  gzclose(file);
  if (count < 0) throw std::runtime_error("cannot read " + path);
  return bytes;
}

std::uint32_t Number(const std::string& bytes, std::size_t at, std::size_t length) {
  std::uint32_t number = 0;
  for (std::size_t i = length; i > 0; --i) {
    number = number << 8 | static_cast<unsigned char>(bytes.at(at + i - 1));
  }
  return number;
}

struct Layout {
  std::size_t header = 0;
  std::size_t count = 0;
  std::size_t glyphBytes = 0;
  int width = 0;
  int height = 0;
  bool wide = false;  // version 2: the table is UTF-8
};

Layout ReadLayout(const std::string& bytes) {
  if (Number(bytes, 0, 2) == 0x0436) {
    const auto height = static_cast<int>(Number(bytes, 3, 1));
    const bool twice = (Number(bytes, 2, 1) & 1U) != 0;
    return {4, twice ? 512U : 256U, Number(bytes, 3, 1), 8, height, false};
  }
  if (Number(bytes, 0, 4) == 0x864ab572) {
    return {Number(bytes, 8, 4),
            Number(bytes, 16, 4),
            Number(bytes, 20, 4),
            static_cast<int>(Number(bytes, 28, 4)),
            static_cast<int>(Number(bytes, 24, 4)),
            true};
  }
  throw std::runtime_error("not a console font");
}

Rows ReadGlyph(const std::string& bytes, const Layout& layout, std::size_t glyph) {
  const auto rowBytes = static_cast<std::size_t>((layout.width + 7) / 8);
  Rows rows;
  for (std::size_t y = 0; y < static_cast<std::size_t>(layout.height); ++y) {
    std::uint32_t row = 0;
    for (std::size_t i = 0; i < rowBytes; ++i) {
      const std::size_t at = layout.header + glyph * layout.glyphBytes + y * rowBytes + i;
      row = row << 8 | Number(bytes, at, 1);
    }
    rows.push_back(row >> (rowBytes * 8 - static_cast<std::size_t>(layout.width)));
  }
  return rows;
}

// Version 1: 16-bit code points, 0xffff ends a glyph, 0xfffe starts sequences.
void ReadTable1(const std::string& bytes, std::size_t at, ConsoleFont& font) {
  bool sequence = false;
  for (std::size_t glyph = 0; glyph < font.glyphs.size() && at + 1 < bytes.size(); at += 2) {
    const std::uint32_t code = Number(bytes, at, 2);
    if (code == 0xffff) {
      ++glyph;
      sequence = false;
    } else if (code == 0xfffe) {
      sequence = true;
    } else if (!sequence) {
      font.glyphOf.emplace(code, glyph);
    }
  }
}

// Version 2: UTF-8, 0xff ends a glyph, 0xfe starts sequences. Only what Latin-1 needs, one and two
// bytes long, is kept.
void ReadTable2(const std::string& bytes, std::size_t at, ConsoleFont& font) {
  bool sequence = false;
  for (std::size_t glyph = 0; glyph < font.glyphs.size() && at < bytes.size(); ++at) {
    const std::uint32_t byte = Number(bytes, at, 1);
    if (byte == 0xff) {
      ++glyph;
      sequence = false;
    } else if (byte == 0xfe) {
      sequence = true;
    } else if (!sequence && byte < 0x80) {
      font.glyphOf.emplace(byte, glyph);
    } else if (!sequence && (byte & 0xe0U) == 0xc0 && at + 1 < bytes.size()) {
      font.glyphOf.emplace((byte & 0x1fU) << 6 | (Number(bytes, at + 1, 1) & 0x3fU), glyph);
    }
  }
}

ConsoleFont ReadConsoleFont(const std::string& path) {
  const std::string bytes = ReadCompressed(path);
  const Layout layout = ReadLayout(bytes);
  ConsoleFont font{layout.width, layout.height, {}, {}};
  for (std::size_t i = 0; i < layout.count; ++i) {
    font.glyphs.push_back(ReadGlyph(bytes, layout, i));
  }
  const std::size_t table = layout.header + layout.count * layout.glyphBytes;
  layout.wide ? ReadTable2(bytes, table, font) : ReadTable1(bytes, table, font);
  return font;
}

// ---- Making the Terminal's fonts ----

bool IsControl(int code) { return code < 32 || (code >= 127 && code < 160); }

// Control codes are blank; a character that the console lacks is an open box.
Font TakeLatin1(const ConsoleFont& console) {
  Font font{console.width, console.height, {}};
  const auto height = static_cast<std::size_t>(console.height);
  const std::uint32_t side = 1U << (console.width - 2) | 2U;
  Rows box(height, side);
  box.front() = box.back() = 0;
  box[1] = box[height - 2] = (1U << (console.width - 1)) - 2;
  for (int code = 0; code < 256; ++code) {
    const auto found = console.glyphOf.find(static_cast<std::uint32_t>(code));
    Rows& glyph = font.glyphs[static_cast<std::size_t>(code)];
    if (IsControl(code) || code == 160) {
      glyph.assign(height, 0);
    } else {
      glyph = found != console.glyphOf.end() ? console.glyphs[found->second] : box;
    }
  }
  return font;
}

int LongestRun(std::uint32_t row) {
  int longest = 0;
  for (; row != 0; row &= row << 1) ++longest;
  return longest;
}

// An 8 x 8 letter becomes 8 x 10 by repeating two of the rows between the top of the small letters
// and the base line, so that all letters keep common lines. The rows with the shortest strokes are
// taken: stems grow, bars do not get thicker.
Rows Stretch(const Rows& glyph) {
  std::array<std::size_t, 4> candidates{3, 5, 4, 2};
  std::stable_sort(candidates.begin(), candidates.end(), [&](std::size_t a, std::size_t b) {
    return LongestRun(glyph[a]) < LongestRun(glyph[b]);
  });
  Rows stretched;
  for (std::size_t y = 0; y < glyph.size(); ++y) {
    stretched.push_back(glyph[y]);
    if (y == candidates[0] || y == candidates[1]) stretched.push_back(glyph[y]);
  }
  return stretched;
}

Font Stretched(const Font& source) {
  Font font{source.width, source.height + 2, {}};
  std::transform(source.glyphs.begin(), source.glyphs.end(), font.glyphs.begin(), Stretch);
  return font;
}

// In the console's font of 6 x 12 capital letters stand on rows 2 to 9, accents above, tails below.
constexpr std::size_t kBaseLine = 9;

void TakeOut(Rows& rows, std::size_t y) {
  rows.erase(rows.begin() + static_cast<Rows::difference_type>(y));
}

// The row above the base line that is most like a neighbour: a piece of stems. Of equals the one in
// the middle of the small letters, so that all letters keep common lines.
std::size_t SpareRow(const Rows& rows, std::size_t base) {
  const auto difference = [&](std::size_t y) {
    return std::min(std::popcount(rows[y] ^ rows[y - 1]), std::popcount(rows[y] ^ rows[y + 1]));
  };
  std::size_t spare = base - 2;
  for (const std::size_t above : {3U, 1U, 4U, 5U, 6U}) {
    if (base > above && difference(base - above) < difference(spare)) spare = base - above;
  }
  return spare;
}

// A letter of 6 x 12 with fewer rows: blank ones above it go first, or one of an accent's two.
Rows Squeezed(Rows rows, std::size_t height) {
  if (height == 8 && (rows[10] == 0 || rows[11] == 0)) TakeOut(rows, rows[11] == 0 ? 11 : 10);
  std::size_t base = kBaseLine - 1;
  const bool accent = rows[0] != 0;
  TakeOut(rows, accent && rows[1] == 0 ? 1 : 0);
  if (!accent && (rows[0] == 0 || rows[0] == rows[1])) {
    TakeOut(rows, 0);
    --base;
  }
  for (; rows.size() > height; --base) TakeOut(rows, SpareRow(rows, base));
  return rows;
}

Font Light(const Font& source, int height) {
  Font font{8, height, {}};
  for (std::size_t code = 0; code < font.glyphs.size(); ++code) {
    Rows& glyph = font.glyphs[code];
    glyph = Squeezed(source.glyphs[code], static_cast<std::size_t>(height));
    for (std::uint32_t& row : glyph) row <<= 1;
  }
  // The source's sharp s is closed at its foot; so small it is taken for a B.
  Rows sharp{0x30, 0x48, 0x48, 0x50, 0x48, 0x44, 0x58};
  if (height == 10) sharp.insert(sharp.end() - 1, 0x44);
  sharp.resize(static_cast<std::size_t>(height), 0);
  font.glyphs[0xDF] = sharp;
  return font;
}

// The small digits: three columns and five rows of a 4 x 6 cell.
Font SmallDigits() {
  constexpr std::array<std::pair<char, std::string_view>, 15> kPictures{{
      {'0', "### #.# #.# #.# ###"},
      {'1', ".#. ##. .#. .#. ###"},
      {'2', "### ..# ### #.. ###"},
      {'3', "### ..# .## ..# ###"},
      {'4', "#.# #.# ### ..# ..#"},
      {'5', "### #.. ### ..# ###"},
      {'6', "### #.. ### #.# ###"},
      {'7', "### ..# .#. .#. .#."},
      {'8', "### #.# ### #.# ###"},
      {'9', "### #.# ### ..# ###"},
      {'.', "... ... ... ... .#."},
      {',', "... ... ... .#. #.."},
      {'-', "... ... ### ... ..."},
      {'+', "... .#. ### .#. ..."},
      {':', "... .#. ... .#. ..."},
  }};
  Font font{4, 6, {}};
  font.glyphs.fill(Rows(6, 0));
  for (const auto& [character, picture] : kPictures) {
    Rows& glyph = font.glyphs[static_cast<unsigned char>(character)];
    for (std::size_t y = 0; y < 5; ++y) {
      for (std::size_t x = 0; x < 3; ++x) {
        if (picture[y * 4 + x] == '#') glyph[y] |= 1U << (3 - x);
      }
    }
  }
  return font;
}

void Write(const Font& font, const std::string& path) {
  std::string bytes = "KFNT\1";
  bytes += static_cast<char>(font.width);
  bytes += static_cast<char>(font.height);
  const int rowBytes = (font.width + 7) / 8;
  for (const Rows& glyph : font.glyphs) {
    for (const std::uint32_t row : glyph) {
      const std::uint32_t padded = row << (rowBytes * 8 - font.width);
      for (int i = rowBytes - 1; i >= 0; --i) bytes += static_cast<char>(padded >> (8 * i) & 0xffU);
    }
  }
  std::ofstream file(path, std::ios::binary);
  if (!file.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush()) {
    throw std::runtime_error("cannot write " + path);
  }
}

void MakeFonts(const std::string& consoleFolder, const std::string& outputFolder) {
  const auto console = [&](const std::string& name) {
    return TakeLatin1(ReadConsoleFont(consoleFolder + "/Lat15-" + name + ".psf.gz"));
  };
  const Font smallBold = console("VGA8");
  const Font smallLight = console("Terminus12x6");
  const std::array<Font, 10> fonts{
      Light(smallLight, 8),
      Light(smallLight, 10),
      console("Terminus14"),
      console("Terminus16"),
      SmallDigits(),
      smallBold,
      Stretched(smallBold),
      console("TerminusBold14"),
      console("TerminusBold16"),
      console("TerminusBold32x16"),
  };
  for (std::size_t i = 0; i < fonts.size(); ++i) {
    Write(fonts[i], outputFolder + "/Font" + std::to_string(i) + ".Fnt");
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: make_fonts CONSOLE-FONT-FOLDER OUTPUT-FOLDER\n");
    return 2;
  }
  try {
    MakeFonts(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_fonts: %s\n", error.what());
    return 1;
  }
  return 0;
}
