#pragma once

#include <array>
#include <random>
#include <string>

namespace kelvo {

/// Macro texts and lines as an operator may write them, and as nobody would.
class RandomMacros {
 public:
  explicit RandomMacros(unsigned seed) : random_(seed) {}

  int Number(int from, int to) { return std::uniform_int_distribution(from, to)(random_); }
  bool Chance(int percent) { return Number(1, 100) <= percent; }

  /// Something that is drawn or printed, or sets how.
  std::string Stroke() {
    static constexpr std::array kPoint = {"GP", "GL", "GR", "GfR", "GE", "GfE", "TP"};
    static constexpr std::array kStyle = {"GF", "GA", "TF", "TA", "TM", "GM", "!C"};
    static constexpr std::array kPlain = {"GC", "GH", "TH"};
    switch (Number(0, 7)) {
      case 0:
      case 1:
      case 2:
        return Command(kPoint[Any(kPoint.size())]) + Pair(-20, 260) + ";";
      case 3:
        return Command(kStyle[Any(kStyle.size())]) + std::to_string(Number(-1, 10)) + ";";
      case 4:
        return Command(Chance(50) ? "GZ" : "TZ") + Pair(0, 4) + ";";
      case 5:
        return Command(kPlain[Any(kPlain.size())]);
      case 6:
        return Chance(50) ? Command("GT") + Words() + "\x04" : Words();
      default:
        return Chance(50) ? Command("GB") + Pair(-5, 200) + "," + Pair(-9, 4) + ",F0A5C3FF0118;"
                          : Command("!c") + Pair(0, 7) + ";";
    }
  }
  std::string Strokes(int most) {
    std::string text;
    for (int i = Number(1, most); i > 0; --i) text += Stroke();
    return text;
  }
  static std::string Call(int number) { return Command("ECM") + std::to_string(number) + ";"; }
  static std::string Command(const std::string& letters) { return "\x1B" + letters; }

 private:
  std::size_t Any(std::size_t count) {
    return static_cast<std::size_t>(Number(0, static_cast<int>(count) - 1));
  }
  std::string Pair(int from, int to) {
    return std::to_string(Number(from, to)) + "," + std::to_string(Number(from, to));
  }
  std::string Words() {
    static constexpr std::array kWords = {"Halt", "12,5 bar\r\n", "\b\b", "Ventil \xE4uf", "~"};
    return kWords[Any(kWords.size())];
  }

  std::mt19937 random_;
};

}  // namespace kelvo
