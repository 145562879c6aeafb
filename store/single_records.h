#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "store/statement.h"

namespace kelvo {

/// A field of a table of one record (`Optionen`, `Default`): what it holds as delivered, and within
/// what it is used, whatever is stored.
struct SingleField {
  const char* field;
  Value delivered;
  double lowest;
  double highest;
};

/// The fields of a table of one record; empty for every other table.
const std::vector<SingleField>& SingleFields(const std::string& table);
/// One of them; nullptr for every other.
const SingleField* FindSingleField(const std::string& table, const std::string& field);

/// What the fields of such a table hold as delivered. It holds where a database of another version
/// has no such field, has lost the record, or holds nothing that can be used.
std::map<std::string, Value> DeliveredRecord(const std::string& table);

/// A value as a finite number: a text counts as far as it is one at its front. Nothing for NULL and
/// what is none.
std::optional<double> NumberIn(const Value& value);

}  // namespace kelvo
