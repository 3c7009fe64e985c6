#pragma once // What the search boxes of the windows share. No GUI.

#include "TileEditorCommon/Contracts/EditorActionsI.h"

#include <string>
#include <string_view>
#include <vector>

namespace tilebuilder
{

/// Lowers the letters A to Z; other characters stay, as they do in search words.
[[nodiscard]] std::string lowered(std::string_view sText);

/// The words of a search text in lower case, split at each blank.
[[nodiscard]] std::vector<std::string> searchWords(std::string_view sText);

/// Places of the files whose lower-cased name holds every word, in their order.
[[nodiscard]] std::vector<size_t> filterTiles(const std::vector<TileFile>& vecFiles,
                                              const std::vector<std::string>& vecWords);

} // namespace tilebuilder
