#pragma once // The links of a node to other nodes.

#include "TileEditorCommon/Params/IParam.h"

#include <array>
#include <optional>

namespace tilebuilder
{

/// When a connection may be used. Types 0 and 1 are presets, of which only the type counts.
struct ConnectionCondition
{
    int32_t variable = 0;
    int32_t condition = 0;
    float value = -1.0f;

    bool operator==(const ConnectionCondition&) const = default;
};

struct Connection
{
    int32_t iId = 0;                  ///< of the node pointed to
    std::vector<uint32_t> vecActions; ///< numbers of the action table
    std::vector<ConnectionCondition> vecConditions;
    std::array<int32_t, 2> cell{0, 0}; ///< cells from this node's to the target's

    bool operator==(const Connection&) const = default;
};

class ConnectionsParam : public IParam
{
public:
    ConnectionsParam();

    void display(PropertyPanelI& widgets, const ParamContext& context) override;
    [[nodiscard]] std::shared_ptr<IParam> getCloneArgs() const override
    {
        return std::make_shared<ConnectionsParam>(*this);
    }
    void serialize(LuaBlobWriter& stream, const ConnectionLookupI* pOnlyExisting) override;
    void deserialize(LuaBlobReader& stream) override;

    /// The place of the connection to an id.
    [[nodiscard]] std::optional<size_t> find(int32_t iTarget) const;
    void add(int32_t iTarget);
    /// The last connection moves into the hole.
    void removeAt(size_t uIndex);

    int32_t iId = -1;   ///< this node's; -1 until a node owns it
    uint8_t ccount = 0; ///< connections that arrive from other cells; not kept over a load
    std::vector<Connection> vecConnections; ///< in no order

private:
    void readOtherIds(LuaBlobReader& stream);
    static Connection readConnection(LuaBlobReader& stream);
};

} // namespace tilebuilder
