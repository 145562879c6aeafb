#pragma once

#include "cli/bench.h"

// The commands. Each prints its result and returns how the program ends; what cannot be meant so is
// thrown as WrongRequest, what fails as a whole as std::runtime_error (German, UTF-8).

namespace kelvo::cli {

Status RunCheck(Bench& bench);
Status RunScan(Bench& bench);
Status RunInfo(Bench& bench);
Status RunWrite(Bench& bench);
Status RunRender(Bench& bench);
Status RunCompare(Bench& bench);
Status RunExport(Bench& bench);
Status RunImport(Bench& bench);

}  // namespace kelvo::cli
