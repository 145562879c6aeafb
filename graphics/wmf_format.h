#pragma once

#include <cstddef>
#include <string_view>

// What writer and reader of metafiles must agree on; wmf.h tells the format.

namespace kelvo::wmf {

constexpr std::string_view CommentMark = "KELVO";
constexpr char DrawingTag = 'M';
constexpr char GroupTag = 'G';
constexpr char GroupEndTag = 'E';
constexpr char TextTag = 'T';
constexpr char FormatVersion = 1;

constexpr unsigned CommentEscape = 15;        ///< MFCOMMENT
constexpr std::size_t RecordHeaderBytes = 6;  ///< size in words (32 bit) and type

}  // namespace kelvo::wmf
