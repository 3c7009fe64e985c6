#include "KestrelCommon/Resources/Renderable.h"

#include "KestrelCommon/Core/Console.h"

#include <algorithm>
#include <json/json.h>

namespace resource
{

namespace
{

std::string textOf(const Json::Value& jObject, const char* pKey)
{
    const Json::Value& jText = jObject.isObject() ? jObject[pKey] : Json::Value::nullSingleton();
    return jText.isString() ? jText.asString() : std::string();
}

} // namespace

std::optional<RenderableDesc> readRenderable(const Json::Value& jRenderable)
{
    RenderableDesc desc;
    desc.sMesh = textOf(jRenderable, "mesh");
    if (desc.sMesh.empty())
        return std::nullopt;
    const Json::Value& jMaterials = jRenderable["materials"];
    if (jMaterials.isObject())
        for (const std::string& sName : jMaterials.getMemberNames())
        {
            const Json::Value& jMaterial = jMaterials[sName];
            desc.mapMaterials[sName] = {textOf(jMaterial, "diffuse"), textOf(jMaterial, "normal"),
                                        textOf(jMaterial, "asg"), textOf(jMaterial, "colorSlot")};
        }
    return desc;
}

std::optional<RenderableDesc> parseRenderable(std::string_view sText, std::string_view sName)
{
    Json::CharReaderBuilder builder;
    builder["collectComments"] = false;
    builder["stackLimit"] = 200; // nesting; deeper input throws
    const std::unique_ptr<Json::CharReader> pReader(builder.newCharReader());
    Json::Value jRoot;
    std::string sError;
    bool bParsed = false;
    try
    {
        bParsed = pReader->parse(sText.data(), sText.data() + sText.size(), &jRoot, &sError);
    }
    catch (const Json::Exception& exception)
    {
        sError = exception.what();
    }
    if (!bParsed)
    {
        QM_LOG_ERROR("Failed to parse file '", sName, "':\n", sError);
        return std::nullopt;
    }
    auto desc = readRenderable(jRoot);
    if (!desc)
        QM_LOG_ERROR("The renderable '", sName, "' names no mesh");
    return desc;
}

const Model& ModelFile::model() const
{
    std::call_once(m_loaded,
                   [this]
                   {
                       std::string sError;
                       if (auto model = loadModel(m_fnResolve(m_sPath), sError))
                       {
                           m_model = std::move(*model);
                           return;
                       }
                       QM_LOG_ERROR("Failed to load mesh \"", m_sPath, "\": ", sError);
                       m_model = standInModel();
                   });
    return m_model;
}

Renderable::Renderable(RenderableDesc desc, std::shared_ptr<const ModelFile> pModel, bool bWireframe)
    : m_desc(std::move(desc)),
      m_pModel(std::move(pModel)),
      m_bWireframe(bWireframe)
{
    for (const auto& [sName, material] : m_desc.mapMaterials)
        if (!material.sColorSlot.empty())
            m_vecColorSlots.push_back(material.sColorSlot);
    std::sort(m_vecColorSlots.begin(), m_vecColorSlots.end());
    m_vecColorSlots.erase(std::unique(m_vecColorSlots.begin(), m_vecColorSlots.end()), m_vecColorSlots.end());
}

int Renderable::colorSlotOf(std::string_view sMaterial) const
{
    const std::string& sSlot = material(sMaterial).sColorSlot;
    const auto it = std::lower_bound(m_vecColorSlots.begin(), m_vecColorSlots.end(), sSlot);
    return sSlot.empty() ? -1 : static_cast<int>(it - m_vecColorSlots.begin());
}

const RenderableMaterial& Renderable::material(std::string_view sName) const
{
    static const RenderableMaterial s_plain;
    const auto it = m_desc.mapMaterials.find(sName);
    return it == m_desc.mapMaterials.end() ? s_plain : it->second;
}

} // namespace resource
