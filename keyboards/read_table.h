#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "keyboards/at_table.h"
#include "keyboards/matrix_table.h"

// What a Terminal tells when it is asked for its table: taken only when it has the form in which
// tables are written,
//
//   reply = number "," start ("," code)*
//
// with all of its codes in range; a Terminal may tell something else, or the same in another form.

namespace kelvo {

/// A table that was read, as a page shows it.
struct ReadMatrix {
  int number = 0;
  MatrixTable table;
  bool operator==(const ReadMatrix&) const = default;
};
struct ReadAt {
  int number = 0;
  AtPairs pairs;
  bool operator==(const ReadAt&) const = default;
};

/// Nothing for a reply that cannot be shown on the grid so that just this table would be written
/// again. `reply` goes without its end mark.
std::optional<ReadMatrix> MatrixTableOf(std::string_view reply);
/// Nothing for a reply that is no table, or one that changes no key.
std::optional<ReadAt> AtTableOf(std::string_view reply);

}  // namespace kelvo
