#include "MyGuiCommon/GuiDataManager.h"

#include "MyGuiCommon/GuiXmlScale.h"

#include <MyGUI_DataMemoryStream.h>
#include <fstream>
#include <iterator>

namespace
{

/// A stream over bytes that it owns.
class GuiDataStream : public MyGUI::DataMemoryStream
{
public:
    explicit GuiDataStream(std::string sBytes) : m_sBytes(std::move(sBytes))
    {
        mData = reinterpret_cast<unsigned char*>(m_sBytes.data());
        mSize = m_sBytes.size();
    }

private:
    std::string m_sBytes;
};

bool isXml(const std::string& sName)
{
    return sName.ends_with(".xml") || sName.ends_with(".layout");
}

} // namespace

GuiDataManager::GuiDataManager(std::function<std::string(const std::string&)> fnResolve, std::string sRoot)
    : m_fnResolve(std::move(fnResolve)),
      m_sRoot(std::move(sRoot))
{
}

std::string GuiDataManager::realPath(const std::string& sName) const
{
    if (sName.starts_with('/'))
        return sName;
    return m_fnResolve(sName.starts_with('$') ? sName : m_sRoot + "/" + sName);
}

MyGUI::IDataStream* GuiDataManager::getData(const std::string& sName) const
{
    std::ifstream in(realPath(sName), std::ios::binary);
    if (!in)
        return nullptr;
    std::string sBytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    if (isXml(sName))
        sBytes = scaleGuiXml(sBytes, m_fScale);
    return new GuiDataStream(std::move(sBytes));
}

void GuiDataManager::freeData(MyGUI::IDataStream* pData)
{
    delete pData;
}

bool GuiDataManager::isDataExist(const std::string& sName) const
{
    std::error_code error;
    return std::filesystem::is_regular_file(realPath(sName), error);
}

const MyGUI::VectorString& GuiDataManager::getDataListNames(const std::string& sPattern) const
{
    m_vecNames.clear();
    if (isDataExist(sPattern))
        m_vecNames.push_back(sPattern);
    return m_vecNames;
}

const std::string& GuiDataManager::getDataPath(const std::string& sName) const
{
    m_sPath = isDataExist(sName) ? sName : std::string();
    return m_sPath;
}
