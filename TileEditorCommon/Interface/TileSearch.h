#pragma once // The search of the open window. No GUI.

#include "TileEditorCommon/Contracts/EditorActionsI.h"

#include <string>
#include <string_view>
#include <vector>

namespace tilebuilder
{

/// The words of a search text in lower case, split at each blank.
[[nodiscard]] std::vector<std::string> searchWords(std::string_view sText);

/// Places of the files whose lower-cased name holds every word, in their order.
[[nodiscard]] std::vector<size_t> filterTiles(const std::vector<TileFile>& vecFiles,
                                              const std::vector<std::string>& vecWords);

} // namespace tilebuilder
