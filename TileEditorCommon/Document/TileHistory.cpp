// The history of a document.

#include "TileEditorCommon/Document/Tile.h"

namespace tilebuilder
{

uint64_t Tile::stateMemory() const
{
    uint64_t uBytes = 0;
    for (const TileState& state : m_states)
        uBytes += state.size;
    return uBytes;
}

bool Tile::pushState(bool reset)
{
    TileState state = write(tile::WriteUndo);
    if (!state.data)
        return false;
    if (!reset && !m_states.empty())
        if (m_stateIndex >= m_states.size() || m_states[m_stateIndex].hash == state.hash)
            return false;

    uint64_t uTotal = state.size + stateMemory() + m_services.host.cachedUndoMemory();
    while (uTotal >= s_uStateMemoryLimit)
    {
        const uint64_t uFreed = m_services.host.evictOldestCachedTile();
        if (uFreed == 0)
            break;
        uTotal -= std::min(uFreed, uTotal);
    }
    while (uTotal >= s_uStateMemoryLimit && !m_states.empty())
    {
        uTotal -= m_states.front().size;
        m_states.erase(m_states.begin());
        m_stateIndex -= m_stateIndex > 0;
    }

    if (reset)
        m_states.clear();
    // The redo branch goes; without any state the new one is the first.
    m_stateIndex = m_states.empty() ? 0 : m_stateIndex + 1;
    m_states.resize(m_stateIndex);
    m_states.push_back(std::move(state));
    m_services.host.markInterfaceDirty(0);
    return true;
}

bool Tile::restoreState(bool bClearSelection, bool bKeepIds)
{
    if (m_stateIndex >= m_states.size())
        return false;
    const bool bRead =
        read(m_states[m_stateIndex].bytes(), m_directory, m_name, true, bClearSelection, bKeepIds);
    m_services.host.skipPendingChanges();
    m_services.host.markInterfaceDirty(0);
    return bRead;
}

void Tile::step(int64_t iBy)
{
    m_stateIndex = static_cast<uint64_t>(static_cast<int64_t>(m_stateIndex) + iBy);
    restoreState(true, false);
}

void Tile::undo()
{
    if (!m_states.empty() && m_stateIndex > 0)
        step(-1);
}

void Tile::redo()
{
    if (!m_states.empty() && m_stateIndex + 1 < m_states.size())
        step(1);
}

void Tile::markSaved()
{
    for (size_t i = 0; i < m_states.size(); ++i)
        m_states[i].saved = i == m_stateIndex;
}

bool Tile::isUnsaved() const
{
    return m_states.size() >= 2 && m_stateIndex < m_states.size() && !m_states[m_stateIndex].saved;
}

} // namespace tilebuilder
