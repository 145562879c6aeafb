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
constexpr char kSourceTag = 'S';
constexpr char kSourceDataTag = 'D';
constexpr char kPreparationTag = 'P';
constexpr char kFormatVersion = 1;

constexpr std::size_t kSourcePartBytes = 32000;  ///< of a source in one comment

constexpr unsigned kCommentEscape = 15;        ///< MFCOMMENT
constexpr std::size_t kRecordHeaderBytes = 6;  ///< size in words (32 bit) and type

}  // namespace kelvo::wmf
