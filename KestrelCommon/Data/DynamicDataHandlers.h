#pragma once // The thirteen kinds of plain values.

#include "KestrelCommon/Data/DynamicDataManager.h"

/// All handlers, in the order of their tags. The manager outlives them; paths are looked up in it.
[[nodiscard]] std::vector<std::unique_ptr<DynamicDataManager::TypeHandlerI>>
makeDynamicDataHandlers(DynamicDataManager& manager);
