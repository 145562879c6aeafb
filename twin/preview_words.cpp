#include "twin/preview_words.h"

namespace kelvo {
namespace {

std::string Listed(const std::vector<int>& numbers) {
  std::string text;
  for (const int number : numbers) text += (text.empty() ? "" : ", ") + std::to_string(number);
  return text;
}

}  // namespace

std::vector<std::string> PreviewRemarks(const PreviewResult& result) {
  std::vector<std::string> remarks;
  if (result.CalledUnknown()) {
    remarks.push_back("Nicht bekannt ist Makro " + Listed(result.unknown) +
                      "; was es zeichnet, fehlt.");
  }
  if (result.neverEnds) remarks.emplace_back("Die Makros rufen einander endlos auf.");
  if (result.restarts) remarks.emplace_back("Das Terminal startet neu.");
  if (result.handsOver) remarks.emplace_back("Danach hört ein anderes Terminal zu.");
  return remarks;
}

}  // namespace kelvo
