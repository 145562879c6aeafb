#pragma once

#include <cstddef>
#include <string_view>

// What writer and reader of metafiles must agree on; wmf.h tells the format.

namespace kelvo::wmf {

constexpr std::string_view kCommentMark = "KELVO";
constexpr char kDrawingTag = 'M';
constexpr char kGroupTag = 'G';
constexpr char kGroupEndTag = 'E';
constexpr char kTextTag = 'T';
constexpr char kFormatVersion = 1;

constexpr unsigned kCommentEscape = 15;        ///< MFCOMMENT
constexpr std::size_t kRecordHeaderBytes = 6;  ///< size in words (32 bit) and type

}  // namespace kelvo::wmf
