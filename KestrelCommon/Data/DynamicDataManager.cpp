#include "KestrelCommon/Data/DynamicDataManager.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/FrameClock.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Data/DynamicDataHandlers.h"
#include "KestrelCommon/Data/DynamicDataReader.h"
#include "KestrelCommon/Data/DynamicDataResource.h"
#include "KestrelCommon/Data/DynamicTemplateBuilder.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/JsonText.h"
#include "KestrelCommon/Io/SafeFile.h"
#include "KestrelCommon/Services/DirectoryManager.h"

#include <json/value.h>

using namespace DynamicData;

DynamicDataManager* DynamicDataManager::ms_pInstance = nullptr;

DynamicDataManager::DynamicDataManager(std::string_view sListPath, Clock fnClock)
    : m_fnClock(fnClock ? std::move(fnClock)
                        : [] { return static_cast<uint64_t>(FrameClock::seconds() * 1000.0); })
{
    QM_ASSERT(!ms_pInstance);
    ms_pInstance = this;
    addHandlers();
    for (const char* pName : {"null", "object", "array", "string", "float", "double", "uint", "int", "bool",
                              "hash", "uuid", "vec2", "vec3", "vec4", "color"})
        addName(pName);
    readTemplateList(sListPath);
}

DynamicDataManager::~DynamicDataManager()
{
    for (const auto& pWeak : m_vecResources)
        if (const auto pResource = pWeak.lock())
        {
            QM_LOG_ERROR("DynamicDataResource still in use, path =", pResource->path());
            pResource->m_pManager = nullptr;
            pResource->m_pTemplate = nullptr;
        }
    ms_pInstance = nullptr;
}

void DynamicDataManager::addHandlers()
{
    m_vecHandlers = makeDynamicDataHandlers(*this);
    for (const auto& pHandler : m_vecHandlers)
    {
        std::vector<std::string> vecNames;
        std::vector<Tag> vecTags;
        pHandler->getTypeNames(vecNames);
        pHandler->getValueTags(vecTags);
        for (const std::string& sName : vecNames)
            m_mapHandlersByType.try_emplace(keyHash(sName), pHandler.get());
        for (const Tag eTag : vecTags)
            if (auto& pOfTag = m_arrHandlersByTag[static_cast<size_t>(eTag)]; !pOfTag)
                pOfTag = pHandler.get();
    }
}

// Templates

void DynamicDataManager::addTemplate(std::string_view sPath, Json::Value jSource)
{
    auto pNew = std::make_unique<DynamicTemplate>(std::string(sPath));
    DynamicTemplateBuilder(*this, *pNew).setSource(std::move(jSource));
    for (auto& pTemplate : m_vecTemplates)
        if (pTemplate->name() == pNew->name())
        {
            pTemplate = std::move(pNew);
            return;
        }
    m_vecTemplates.push_back(std::move(pNew));
}

void DynamicDataManager::readTemplateList(std::string_view sListPath)
{
    const auto jList = readJsonFile(sListPath);
    if (!jList)
        return;
    const Json::Value& jPaths = jsonMember(*jList, "template_list");
    for (Json::ArrayIndex i = 0; jPaths.isArray() && i < jPaths.size(); ++i)
        if (const Json::Value& jPath = jPaths[i]; jPath.isString())
            if (auto jSource = readJsonFile(jPath.asString()))
                addTemplate(jPath.asString(), std::move(*jSource));
    // All sources first: one template may take in another that comes later.
    for (const auto& pTemplate : m_vecTemplates)
        DynamicTemplateBuilder(*this, *pTemplate).build();
}

DynamicTemplate* DynamicDataManager::getTemplate(std::string_view sName) const
{
    for (const auto& pTemplate : m_vecTemplates)
        if (pTemplate->name() == sName)
            return pTemplate.get();
    return nullptr;
}

DynamicTemplate* DynamicDataManager::getTemplateForFile(std::string_view sPath) const
{
    for (const auto& pTemplate : m_vecTemplates)
        if (pTemplate->matches(sPath))
            return pTemplate.get();
    return nullptr;
}

bool DynamicDataManager::reload(DynamicTemplate& dynamicTemplate)
{
    auto jSource = readJsonFile(dynamicTemplate.path());
    if (!jSource)
        return false;
    DynamicTemplateBuilder(*this, dynamicTemplate).setSource(std::move(*jSource));
    // Others may have taken it in.
    for (const auto& pTemplate : m_vecTemplates)
        DynamicTemplateBuilder(*this, *pTemplate).build();
    const auto vecResources = m_vecResources;
    for (const auto& pWeak : vecResources)
        if (const auto pResource = pWeak.lock(); pResource && pResource->getTemplate() == &dynamicTemplate)
        {
            pResource->snapshot(false);
            pResource->restore();
        }
    return true;
}

namespace
{

/// Whether a path has a key that is known and stays in the key's folder.
bool resolves(std::string_view sPath)
{
    return sPath.starts_with('$') && DirectoryManager::ms_pInstance->isValidKeyedPath(sPath);
}

} // namespace

// Trees

Value DynamicDataManager::newObject(const DynamicTemplate& dynamicTemplate) const
{
    return dynamicTemplate.root().clone();
}

bool DynamicDataManager::read(Value& value, const Json::Value& json, const DynamicTemplate* pTemplate,
                              DynamicDataErrors* errors)
{
    return DynamicDataReader(*this, pTemplate, errors).readRoot(json, value);
}

void DynamicDataManager::write(const DynamicTemplate* pTemplate, const Value& value, Json::Value& json) const
{
    if (const Object* pObject = value.object())
    {
        json = Json::Value(Json::objectValue);
        for (size_t i = 0; i < pObject->size(); ++i)
        {
            const std::string_view sKey = name(pObject->keyAt(i));
            write(pTemplate, pObject->at(i), *json.demand(sKey.data(), sKey.data() + sKey.size()));
        }
    }
    else if (const Array* pArray = value.array())
    {
        json = Json::Value(Json::arrayValue);
        json.resize(static_cast<Json::ArrayIndex>(pArray->size()));
        for (size_t i = 0; i < pArray->size(); ++i)
            write(pTemplate, pArray->at(i), json[static_cast<Json::ArrayIndex>(i)]);
    }
    else if (value.tag() == Tag::Int64)
        json = Json::Value(Json::Int64{value.asInt64()});
    else if (const TypeHandlerI* pHandler = handlerOfTag(value.tag()))
        pHandler->write(value, json);
}

// Files

std::shared_ptr<DynamicDataResource> DynamicDataManager::load(std::string_view sPath,
                                                              DynamicDataErrors* errors)
{
    if (!resolves(sPath))
    {
        QM_LOG_ERROR("Failed to load data resrouce, path is not valid '", sPath, "'");
        return nullptr;
    }
    auto& pWeak = m_mapResources[fnv1a64(sPath)];
    if (auto pOpen = pWeak.lock())
        return pOpen;
    const auto jRoot = readJsonFile(sPath);
    if (!jRoot)
        return nullptr;
    if (!jRoot->isObject())
    {
        QM_LOG_ERROR("Failed to load data resrouce, json root needs to be object '", sPath, "'");
        return nullptr;
    }
    const DynamicTemplate* pTemplate = getTemplateForFile(sPath);
    Value tree;
    read(tree, *jRoot, pTemplate, errors);
    auto pResource =
        std::make_shared<DynamicDataResource>(*this, pTemplate, std::string(sPath), std::move(tree));
    pWeak = pResource;
    m_vecResources.push_back(pResource);
    return pResource;
}

std::shared_ptr<DynamicDataResource> DynamicDataManager::create(const DynamicTemplate& dynamicTemplate)
{
    auto pResource = std::make_shared<DynamicDataResource>(*this, &dynamicTemplate, std::string(),
                                                           newObject(dynamicTemplate));
    m_vecResources.push_back(pResource);
    return pResource;
}

bool DynamicDataManager::save(DynamicDataResource& resource)
{
    return saveTo(resource, resource.path(), false);
}

bool DynamicDataManager::saveAs(DynamicDataResource& resource, std::string_view sPath)
{
    return saveTo(resource, sPath, sPath != resource.path());
}

bool DynamicDataManager::saveTo(DynamicDataResource& resource, std::string_view sPath, bool bEvenUnchanged)
{
    if (!bEvenUnchanged && !resource.path().empty() && !resource.isUnsaved())
        return true;
    if (!resolves(sPath))
    {
        QM_LOG_ERROR("Failed to save data resource at non valid path: '", sPath, "'");
        return false;
    }
    Json::Value jTree;
    write(resource.getTemplate(), resource.tree(), jTree);
    if (!writeFileSafely(DirectoryManager::ms_pInstance->resolvePath(sPath),
                         writeJsonText(jTree, JsonStyle::Indented)))
    {
        QM_LOG_ERROR("Failed to write data resource '", sPath, "'");
        return false;
    }
    const auto iterResource = std::ranges::find_if(m_vecResources, [&resource](const auto& pWeak)
                                                   { return pWeak.lock().get() == &resource; });
    if (iterResource != m_vecResources.end())
    {
        const auto iterOld = m_mapResources.find(fnv1a64(resource.path()));
        if (iterOld != m_mapResources.end() && iterOld->second.lock().get() == &resource)
            m_mapResources.erase(iterOld);
        m_mapResources[fnv1a64(sPath)] = *iterResource;
    }
    resource.m_sPath = sPath;
    resource.markSaved();
    return true;
}

void DynamicDataManager::update()
{
    m_setExisting.clear();
    if (m_vecResources.empty())
        return;
    std::erase_if(m_vecResources, [](const auto& pWeak) { return pWeak.expired(); });
    const uint64_t uNow = now();
    const auto vecResources = m_vecResources; // callbacks may open files
    for (const auto& pWeak : vecResources)
        if (const auto pResource = pWeak.lock())
            pResource->update(uNow);
}

// Names and handlers

KeyHash DynamicDataManager::addName(std::string_view sName)
{
    const KeyHash uHash = keyHash(sName);
    if (!m_mapNames.contains(uHash))
        m_mapNames.emplace(uHash, sName);
    return uHash;
}

std::string_view DynamicDataManager::name(KeyHash uHash) const
{
    const auto iterName = m_mapNames.find(uHash);
    return iterName == m_mapNames.end() ? std::string_view() : iterName->second;
}

const DynamicDataManager::TypeHandlerI* DynamicDataManager::handlerOfType(std::string_view sType) const
{
    const auto iterHandler = m_mapHandlersByType.find(keyHash(sType));
    return iterHandler == m_mapHandlersByType.end() ? nullptr : iterHandler->second;
}

const DynamicDataManager::TypeHandlerI* DynamicDataManager::handlerOfTag(Tag eTag) const
{
    return m_arrHandlersByTag[static_cast<size_t>(eTag)];
}

bool DynamicDataManager::pathExists(std::string_view sPath)
{
    const uint64_t uHash = fnv1a64(sPath);
    if (m_setExisting.contains(uHash))
        return true;
    const DirectoryManager* pDirectories = DirectoryManager::ms_pInstance;
    if (!pDirectories || pDirectories->getKey(sPath).empty() || !pDirectories->exists(sPath))
        return false;
    m_setExisting.insert(uHash);
    return true;
}
