#pragma once

#include <optional>
#include <string>

#include "base/operator.h"
#include "inventory/write_run.h"
#include "link/commands.h"

namespace kelvo {

/// A keyboard table as it is written with a proof. Nothing when its number is none from 0 to 255,
/// which has been said then.
std::optional<WriteOrder> TableOrder(ItemKind kind, const Command& table, std::string name,
                                     Operator& person, WriteFrame frame);

}  // namespace kelvo
