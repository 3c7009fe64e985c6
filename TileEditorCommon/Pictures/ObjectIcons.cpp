#include "TileEditorCommon/Pictures/ObjectIcons.h"

#include <algorithm>

namespace tilebuilder
{

void ObjectIcons::request(ObjectIcon icon)
{
    const bool bWaits = std::any_of(m_queue.begin(), m_queue.end(),
                                    [&](const ObjectIcon& other) { return other.uuid == icon.uuid; });
    if (!bWaits && icon.pRenderable && !icon.vecPaths.empty())
        m_queue.push_back(std::move(icon));
}

void ObjectIcons::update(int iAtMost)
{
    for (int i = 0; i < iAtMost && !m_queue.empty(); ++i)
    {
        const ObjectIcon& next = m_queue.front();
        if (!m_generator.prepareObject(next.pRenderable))
            return;
        const ObjectIcon icon = std::move(m_queue.front());
        m_queue.pop_front();
        m_fnDone(icon.uuid, m_generator.renderObject(icon.vecPaths, icon.pRenderable, icon.vecColours));
    }
}

} // namespace tilebuilder
