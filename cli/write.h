#pragma once

#include <string>

#include "cli/table.h"
#include "inventory/equip_progress.h"

namespace kelvo::cli {

/// Where a run that writes at this device keeps how far it is.
std::string WriteLogPath(const std::string& dataFolder, const std::string& device);

/// A line for each Terminal with what it holds of it, and why not all. `prove`: what no checksum
/// has proven is not done.
Table WriteTable(const EquipJob& job, const EquipProgress& progress, bool prove);

}  // namespace kelvo::cli
