#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace kelvo::fuzz {

/// What is promised for every input.
inline void Promise(bool kept) {
  if (!kept) std::abort();
}

/// The bytes of an input, taken from the front.
class Input {
 public:
  Input(const std::uint8_t* data, std::size_t size)
      : rest_(reinterpret_cast<const char*>(data), size) {}

  bool Empty() const { return rest_.empty(); }
  /// 0 to `most`; 0 when nothing is left.
  int Number(int most) {
    const std::string_view byte = Text(1);
    return byte.empty() ? 0 : static_cast<unsigned char>(byte.front()) % (most + 1);
  }
  std::string_view Text(std::size_t length) {
    const std::string_view text = rest_.substr(0, length);
    rest_.remove_prefix(text.size());
    return text;
  }
  std::string_view Rest() { return Text(rest_.size()); }
  /// The rest, parted at its line ends.
  std::vector<std::string> Lines() {
    std::vector<std::string> lines;
    while (!Empty()) {
      lines.emplace_back(Text(std::min(rest_.find('\n'), rest_.size())));
      Text(1);
    }
    return lines;
  }

 private:
  std::string_view rest_;
};

}  // namespace kelvo::fuzz
