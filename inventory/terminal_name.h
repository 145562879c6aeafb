#pragma once

#include <string>

namespace kelvo {

/// "Halle 1 Tor, Adresse 7", without a name "Adresse 7". UTF-8.
inline std::string TerminalName(const std::string& name, int address) {
  std::string text = name;
  if (!text.empty()) text += ", ";
  text += "Adresse ";
  text += std::to_string(address);
  return text;
}

}  // namespace kelvo
