#pragma once

#include <uwmf.h>

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace kelvo {

/// Metafiles as other programs write them.
class Foreign {
 public:
  Foreign() {
    U_PAIRF size{1, 1};
    char* header = U_WMRHEADER_set(&size, 96);
    bytes_.assign(header, U_SIZE_WMRPLACEABLE + U_SIZE_WMRHEADER);
    std::free(header);
  }
  Foreign& Add(char* record) {
    std::uint32_t words = 0;
    std::memcpy(&words, record, 4);
    bytes_.append(record, 2 * std::size_t{words});
    std::free(record);
    return *this;
  }
  Foreign& Window(std::int16_t x, std::int16_t y, std::int16_t width, std::int16_t height) {
    return Add(U_WMRSETWINDOWORG_set({x, y})).Add(U_WMRSETWINDOWEXT_set({width, height}));
  }
  Foreign& Brush(U_COLORREF colour, std::uint16_t style = U_BS_SOLID) {
    Add(U_WMRCREATEBRUSHINDIRECT_set(U_WLOGBRUSH_set(style, colour, 0)));
    return Add(U_WMRSELECTOBJECT_set(tools_++));
  }
  Foreign& Pen(U_COLORREF colour, std::uint16_t style = U_PS_SOLID) {
    Add(U_WMRCREATEPENINDIRECT_set(U_PEN_set(style, 1, colour)));
    return Add(U_WMRSELECTOBJECT_set(tools_++));
  }
  std::string Bytes() { return Foreign(*this).Add(U_WMREOF_set()).bytes_; }

 private:
  std::string bytes_;
  std::uint16_t tools_ = 0;
};

inline constexpr U_COLORREF kDark{0, 0, 0, 0};
inline constexpr U_COLORREF kLight{255, 255, 255, 0};

}  // namespace kelvo
