#include "TileEditorCommon/Params/ConnectionsParam.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Data/LuaBlob.h"
#include "TileEditorCommon/Contracts/PropertyPanelI.h"

namespace tilebuilder
{

namespace
{

/// How the conditions of types 0 and 1 are stored.
constexpr ConnectionCondition s_arrPresets[] = {{1, 1, -1.0f}, {1, 4, -1.0f}};

/// Connections to known ids alone, or all.
bool isWritten(const Connection& connection, const ConnectionLookupI* pLookup)
{
    return !pLookup || pLookup->hasConnection(connection.iId);
}

void writeCondition(LuaBlobWriter& stream, const ConnectionCondition& condition)
{
    const bool bPreset = condition.variable == 0 || condition.variable == 1;
    const ConnectionCondition& stored = bPreset ? s_arrPresets[condition.variable] : condition;
    stream.table(3);
    stream.string("variable");
    stream.int8(static_cast<int8_t>(stored.variable));
    stream.string("condition");
    stream.int8(static_cast<int8_t>(stored.condition));
    stream.string("value");
    stream.number(stored.value);
}

void writeConnection(LuaBlobWriter& stream, const Connection& connection)
{
    const bool bCell = connection.cell != std::array<int32_t, 2>{0, 0};
    const bool bActions = !connection.vecActions.empty();
    const bool bConditions = !connection.vecConditions.empty();
    if (!bCell && !bActions && !bConditions)
        return stream.int32(connection.iId);
    stream.table(1 + bCell + bActions + bConditions);
    stream.string("id");
    stream.int16(static_cast<int16_t>(connection.iId));
    if (bCell)
    {
        stream.string("cell");
        stream.array(2);
        for (const int32_t iOffset : connection.cell)
            stream.int16(static_cast<int16_t>(iOffset));
    }
    if (bActions)
    {
        stream.string("actions");
        stream.array(static_cast<uint32_t>(connection.vecActions.size()));
        for (const uint32_t uAction : connection.vecActions)
        {
            stream.table(1);
            stream.string("name");
            stream.int8(static_cast<int8_t>(uAction));
        }
    }
    if (bConditions)
    {
        stream.string("conditions");
        stream.array(static_cast<uint32_t>(connection.vecConditions.size()));
        for (const ConnectionCondition& condition : connection.vecConditions)
            writeCondition(stream, condition);
    }
}

/// Reads a key that must be the given one.
void expectKey(LuaBlobReader& stream, const char* pKey)
{
    const std::string_view sKey = stream.string();
    QM_ASSERT_TEXT(sKey == pKey, pKey);
}

uint32_t readAction(LuaBlobReader& stream)
{
    const LuaTableHeader action = stream.table();
    QM_ASSERT(!action.bArray && action.uCount == 1);
    expectKey(stream, "name");
    return static_cast<uint8_t>(stream.int8());
}

ConnectionCondition readCondition(LuaBlobReader& stream)
{
    const LuaTableHeader table = stream.table();
    QM_ASSERT(!table.bArray && table.uCount == 3);
    ConnectionCondition condition;
    expectKey(stream, "variable");
    condition.variable = stream.int8();
    expectKey(stream, "condition");
    condition.condition = stream.int8();
    expectKey(stream, "value");
    condition.value = stream.number();
    for (int32_t i = 0; i < 2; ++i)
        if (condition == s_arrPresets[i])
        {
            condition.variable = i;
            break;
        }
    return condition;
}

/// Reads an array's items up to its end or the end of the stream.
template <class T, class Read>
std::vector<T> readList(LuaBlobReader& stream, Read read)
{
    const LuaTableHeader list = stream.table();
    QM_ASSERT(list.bArray);
    std::vector<T> vecItems;
    for (uint32_t i = 0; i < list.uCount && !stream.isCut(); ++i)
        vecItems.push_back(read(stream));
    return vecItems;
}

} // namespace

ConnectionsParam::ConnectionsParam() : IParam(ParamType::Connections) {}

void ConnectionsParam::display(PropertyPanelI& widgets, const ParamContext& context)
{
    widgets.button("Connect", context.onConnect);
}

std::optional<size_t> ConnectionsParam::find(int32_t iTarget) const
{
    for (size_t i = 0; i < vecConnections.size(); ++i)
        if (vecConnections[i].iId == iTarget)
            return i;
    return std::nullopt;
}

void ConnectionsParam::add(int32_t iTarget)
{
    vecConnections.emplace_back().iId = iTarget;
}

void ConnectionsParam::removeAt(size_t uIndex)
{
    if (!QM_ASSERT(uIndex < vecConnections.size()))
        return;
    if (uIndex + 1 < vecConnections.size())
        vecConnections[uIndex] = std::move(vecConnections.back());
    vecConnections.pop_back();
}

void ConnectionsParam::serialize(LuaBlobWriter& stream, const ConnectionLookupI* pOnlyExisting)
{
    stream.table(ccount ? 3 : 2);
    stream.string("id");
    stream.int32(iId);
    if (ccount)
    {
        stream.string("ccount");
        stream.int8(static_cast<int8_t>(ccount));
    }
    stream.string("otherIds");
    const auto uCount = std::ranges::count_if(vecConnections, [pOnlyExisting](const Connection& connection)
                                              { return isWritten(connection, pOnlyExisting); });
    stream.array(static_cast<uint32_t>(uCount));
    for (const Connection& connection : vecConnections)
        if (isWritten(connection, pOnlyExisting))
            writeConnection(stream, connection);
}

void ConnectionsParam::deserialize(LuaBlobReader& stream)
{
    const LuaTableHeader table = stream.tableBody();
    QM_ASSERT(!table.bArray);
    for (uint32_t i = 0; i < table.uCount && !stream.isCut(); ++i)
    {
        const std::string_view sKey = stream.string();
        if (sKey == "id")
            iId = stream.int32();
        else if (sKey == "v" || sKey == "version" || sKey == "ccount")
            static_cast<void>(stream.int8());
        else if (sKey == "otherIds")
            readOtherIds(stream);
        else
        {
            QM_ASSERT_TEXT(false, "Key not implemented!");
            stream.skip();
        }
    }
}

void ConnectionsParam::readOtherIds(LuaBlobReader& stream)
{
    vecConnections = readList<Connection>(stream, &ConnectionsParam::readConnection);
}

Connection ConnectionsParam::readConnection(LuaBlobReader& stream)
{
    Connection connection;
    const LuaSaveDataType eType = stream.peek();
    if (eType == LuaSaveDataType::Int32)
    {
        connection.iId = stream.int32();
        return connection;
    }
    if (!QM_ASSERT_TEXT(eType == LuaSaveDataType::Table, "Invalid path!"))
    {
        stream.skip();
        return connection;
    }
    const LuaTableHeader table = stream.table();
    expectKey(stream, "id");
    // Cut to 16 bits when it was written; the node adds the upper half again.
    connection.iId = static_cast<uint16_t>(stream.int16());
    for (uint32_t i = 1; i < table.uCount && !stream.isCut(); ++i)
    {
        const std::string_view sKey = stream.string();
        if (sKey == "cell")
        {
            const auto vecCell =
                readList<int32_t>(stream, [](LuaBlobReader& in) -> int32_t { return in.int16(); });
            if (QM_ASSERT(vecCell.size() == 2))
                connection.cell = {vecCell[0], vecCell[1]};
        }
        else if (sKey == "actions")
            connection.vecActions = readList<uint32_t>(stream, &readAction);
        else if (sKey == "conditions")
            connection.vecConditions = readList<ConnectionCondition>(stream, &readCondition);
        else
        {
            QM_ASSERT_TEXT(false, "Key not implemented!");
            stream.skip();
        }
    }
    return connection;
}

} // namespace tilebuilder
