#pragma once // The identity of a content item.

#include "KestrelCommon/Core/Uuid.h"

#include <cstdint>

/// fileId is the published file number, 0 while the item hasn't been published.
struct ContentId
{
    uint64_t fileId = 0;
    Uuid localId;

    [[nodiscard]] bool isNil() const { return fileId == 0 && localId.isNil(); }

    /// By a published number that both have, else by the local id.
    [[nodiscard]] bool matches(const ContentId& other) const
    {
        return (fileId != 0 && fileId == other.fileId) || localId == other.localId;
    }

    auto operator<=>(const ContentId&) const = default;
};
