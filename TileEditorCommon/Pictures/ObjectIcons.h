#pragma once // Makes the pictures of objects, a few a frame.

#include "TileEditorCommon/Pictures/IconGenerator.h"

#include "KestrelCommon/Core/Uuid.h"

#include <deque>
#include <functional>
#include <string>
#include <vector>

namespace tilebuilder
{

/// A picture that is wanted.
struct ObjectIcon
{
    Uuid uuid; ///< told back; one picture each at a time
    std::shared_ptr<const resource::Renderable> pRenderable;
    std::vector<uint32_t> vecColours;  ///< in the order of its slots
    std::vector<std::string> vecPaths; ///< keyed; the first that can be written is taken
};

/// Main thread only. The generator must outlive it.
class ObjectIcons
{
public:
    /// uuid, and the keyed path where its picture lies now; empty when it could not be made.
    using Done = std::function<void(const Uuid& uuid, const std::string& sPath)>;

    ObjectIcons(IconGenerator& generator, Done fnDone) : m_generator(generator), m_fnDone(std::move(fnDone))
    {
    }

    /// Another one for the same uuid is dropped while the first waits.
    void request(ObjectIcon icon);
    [[nodiscard]] size_t waiting() const { return m_queue.size(); }

    /// Once a frame: makes at most so many. Waits in no way for textures: an object whose textures are on
    /// their way stays in the queue.
    void update(int iAtMost = 2);

private:
    IconGenerator& m_generator;
    Done m_fnDone;
    std::deque<ObjectIcon> m_queue;
};

} // namespace tilebuilder
