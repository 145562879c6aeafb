#pragma once

#include <string>
#include <vector>

#include "twin/preview.h"

namespace kelvo {

/// What keeps a preview from being the picture that the Terminal will show, or follows it: German
/// sentences, UTF-8.
std::vector<std::string> PreviewRemarks(const PreviewResult& result);

}  // namespace kelvo
