#pragma once // Gives MyGUI its files.

#include <MyGUI_DataManager.h>
#include <functional>
#include <string>

/// A name is a keyed path, a real path that begins with "/", or a path below the GUI folder.
/// XML comes scaled to the interface's size class.
class GuiDataManager : public MyGUI::DataManager
{
public:
    /// The resolver turns a keyed path into a real one; the root is a keyed path without a slash at
    /// its end.
    GuiDataManager(std::function<std::string(const std::string&)> fnResolve, std::string sRoot);

    void setScale(float fScale) { m_fScale = fScale; }

    /// The real path of a name, whether the file is there or not.
    [[nodiscard]] std::string realPath(const std::string& sName) const;

    MyGUI::IDataStream* getData(const std::string& sName) const override;
    void freeData(MyGUI::IDataStream* pData) override;
    bool isDataExist(const std::string& sName) const override;
    const MyGUI::VectorString& getDataListNames(const std::string& sPattern) const override;
    const std::string& getDataPath(const std::string& sName) const override;

private:
    std::function<std::string(const std::string&)> m_fnResolve;
    std::string m_sRoot;
    float m_fScale = 1.0f;
    mutable MyGUI::VectorString m_vecNames;
    mutable std::string m_sPath;
};
