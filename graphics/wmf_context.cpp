#include "graphics/wmf_context.h"

namespace kelvo::wmf {

void ThrowDamaged() { throw BadFile("Die Datei ist beschädigt oder unvollständig."); }

// The usual weights of the three colours in brightness.
bool IsDark(const U_COLORREF& colour) {
  return 299 * colour.Red + 587 * colour.Green + 114 * colour.Blue < 128 * 1000;
}

void ToolTable::Create(const Tool& tool) {
  if (tools_.size() >= limit_) throw BadFile("Die Datei legt zu viele Stifte und Schriften an.");
  auto number = static_cast<std::uint16_t>(tools_.size());
  if (!freed_.empty()) {
    number = *freed_.begin();
    freed_.erase(freed_.begin());
  }
  tools_[number] = tool;
}

void ToolTable::Delete(std::uint16_t number) {
  if (tools_.erase(number) != 0) freed_.insert(number);
}

const Tool* ToolTable::Find(std::uint16_t number) const {
  const auto found = tools_.find(number);
  return found == tools_.end() ? nullptr : &found->second;
}

}  // namespace kelvo::wmf
