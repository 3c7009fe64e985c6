#pragma once // The descriptions of parameters, and the blobs of their values.

#include "TileEditorCommon/Params/IParam.h"

class BitStream;

namespace tilebuilder
{

/// What a list of node kinds says of one parameter.
struct ParamDesc
{
    std::string strName;
    ParamType eType = ParamType::None;
    Json::Value jsonDefault; ///< null: none
};

/// The descriptions of an array. Faults go to the log and leave out that entry, or its default.
[[nodiscard]] std::vector<ParamDesc> readParams(const Json::Value& json);

/// Header and one table with an entry a parameter. With a lookup, connections to ids that it
/// doesn't know are left out.
void writeBlob(BitStream& stream, const std::vector<ParamPtr>& vecParams,
               const ConnectionLookupI* pOnlyExisting);

/// The parameters of a blob; none, with a line in the log, when one can't be read.
[[nodiscard]] std::vector<ParamPtr> readBlob(BitStream& stream);

} // namespace tilebuilder
