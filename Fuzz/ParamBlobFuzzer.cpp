// The parameter blob of a node; what was read is written and read again.

#include "Fuzz/Seeds.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/LuaBlob.h"
#include "TileEditorCommon/Params/ConnectionsParam.h"
#include "TileEditorCommon/Params/EffectParam.h"
#include "TileEditorCommon/Params/ParamDesc.h"
#include "TileEditorCommon/Params/TrackParam.h"

#include <cstdlib>

using namespace tilebuilder;

extern "C" int LLVMFuzzerInitialize(int* pArguments, char*** pppArguments)
{
    static EffectCatalogue s_catalogue;
    std::string sError;
    const auto jEffects =
        parseJson(R"({"effectSetList": [{"name": "S", "effects": [{"name": "Lamp", "values": [
        {"name": "Range", "kind": "float", "default": 1}, {"name": "Color", "kind": "color", "default": [1, 1, 1, 1]}]}]}]})",
                  sError);
    s_catalogue.read(*jEffects, "sets");

    const auto pConnections = std::make_shared<ConnectionsParam>();
    pConnections->strName = "connections";
    pConnections->add(1);
    pConnections->add(70000);
    pConnections->vecConnections[0] = {2, {0, 1}, {{0, 0, -1.0f}, {2, 3, 4.0f}}, {1, -1}};
    const auto pEffect = std::make_shared<EffectParam>();
    pEffect->strName = "effect";
    pEffect->setEffect({0, 0});
    pEffect->m_pEffect->set("Range", {EffectValueKind::Float, 4.0f});
    pEffect->m_pEffect->set("Color", {EffectValueKind::Color, std::array<float, 4>{}});
    pEffect->fTimeOfDayEnd = 0.5f;
    pEffect->bAutoPlay = false;
    const auto pTrack =
        createParam("track", ParamType::Track, *parseJson(R"({"fov": 4, "track": [[1, 2, 3]]})", sError));
    const auto seed = [](const std::vector<ParamPtr>& vecParams)
    {
        BitStream stream;
        writeBlob(stream, vecParams, nullptr);
        return fuzz::text(stream.bytes());
    };
    fuzz::writeSeeds(*pArguments, *pppArguments,
                     {seed({pConnections, pEffect, pTrack}),
                      seed({createParam("s", ParamType::String, "text"), pEffect}), seed({})});
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t uSize)
{
    BitStream stream(pData, uSize, false);
    const auto vecParams = readBlob(stream);
    if (vecParams.empty())
        return 0;
    BitStream first;
    writeBlob(first, vecParams, nullptr);
    BitStream copy(first.bytes().data(), first.bytes().size(), true);
    const auto vecAgain = readBlob(copy);
    BitStream second;
    writeBlob(second, vecAgain, nullptr);
    // A preset may be taken for one on the second read, but the shape stays.
    if (vecAgain.size() != vecParams.size() || second.bitsUsed() != first.bitsUsed())
        std::abort();
    return 0;
}
