#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/bench.h"
#include "graphics/create_bitmap.h"
#include "graphics/picture.h"
#include "inventory/compare.h"
#include "inventory/equipment.h"

// What the files and stored texts hold that were named on the command line.

namespace kelvo::cli {

struct Content {
  std::string place;           ///< where it comes from, for people; UTF-8
  StoredRecord record{};       ///< what becomes an item when it is written; without `item` alone
  std::optional<Item> item{};  ///< whole by itself
  Picture picture{};           ///< what a bitmap was made from
  /// A picture of a project without a number: nobody has asked to write it.
  bool leftOut = false;
  bool ofProject = false;
  bool drawing = false;  ///< goes to the Terminal once, so that it may be of any length
};

/// Something that cannot be used.
struct Fault {
  std::string place;
  std::string reason;  ///< German, UTF-8
};

struct Contents {
  std::vector<Content> all;
  std::string settings;  ///< commands that set what the configuration keeps
  std::vector<Fault> faults;
};

/// Reads what was asked for. Throws std::runtime_error for a file that cannot be read.
Contents ContentsOf(Bench& bench);

/// What a text in a file is on the wire: as it stands, without the end of its last line; UTF-8
/// becomes the Terminal's characters. Without an ESC "\\e" and "\\xHH" stand for characters that
/// cannot be seen.
std::string WireOfFile(std::string bytes);

/// What is written, in its order; what cannot be becomes a fault. Pictures of a project that
/// have no number are left out.
Equipment EquipmentOf(Contents& contents);

}  // namespace kelvo::cli
