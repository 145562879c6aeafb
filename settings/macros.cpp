#include "settings/macros.h"

#include <cmath>

#include "base/val.h"
#include "link/control_characters.h"

namespace kelvo {
namespace {

bool HasNumber(std::string_view text) {
  const std::size_t digit = text.find_first_of("0123456789");
  return digit != std::string_view::npos &&
         text.substr(0, digit).find_first_not_of(" +-.") == std::string_view::npos;
}

}  // namespace

std::string MakroSource(int index) {
  for (const MakroTyp& typ : kMakroTypen) {
    if (typ.index == index) return std::string("select * from Makro where typ = '") + typ.typ + "'";
  }
  return "Makro";
}

std::optional<int> MakroNumber(std::string_view text) {
  const double number = Val(text);
  if (!HasNumber(text) || number < 0 || number > 255 || number != std::floor(number)) return {};
  return static_cast<int>(number);
}

std::optional<std::string> AnyNumber(std::string_view text) {
  if (!HasNumber(text)) return {};
  return NumberText(Val(text));
}

std::size_t EtxPosition(std::string_view text) {
  const std::size_t position = text.find(kEtx);
  return position == std::string_view::npos ? 0 : position + 1;
}

}  // namespace kelvo
