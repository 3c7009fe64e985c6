#include "MyGuiCommon/GuiPixels.h"

#include "MyGuiCommon/GuiPicture.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Resources/Picture.h"
#include "MyGuiCommon/GuiDataManager.h"

#include <MyGUI_RenderManager.h>
#include <cmath>
#include <filesystem>
#include <map>

namespace
{

/// When the file of each thumbnail had been written last, by the texture's name.
std::map<std::string, std::filesystem::file_time_type> s_mapWritten;

/// A writable texture of that name and size; null when the GUI has none.
MyGUI::ITexture* writable(const std::string& sName, int iWidth, int iHeight)
{
    MyGUI::RenderManager& manager = MyGUI::RenderManager::getInstance();
    MyGUI::ITexture* pTexture = manager.getTexture(sName);
    if (!pTexture)
        pTexture = manager.createTexture(sName);
    if (pTexture->getWidth() != iWidth || pTexture->getHeight() != iHeight)
        pTexture->createManual(iWidth, iHeight, MyGUI::TextureUsage::Dynamic | MyGUI::TextureUsage::Write,
                               MyGUI::PixelFormat::R8G8B8A8);
    return pTexture;
}

/// The middle of a picture in the shape of the thumbnail.
resource::Picture middle(const resource::Picture& picture, int iWidth, int iHeight, float fPart)
{
    resource::Picture part;
    const float fScale = std::min(static_cast<float>(picture.iWidth) / static_cast<float>(iWidth),
                                  static_cast<float>(picture.iHeight) / static_cast<float>(iHeight)) *
                         fPart;
    part.iWidth = std::max(static_cast<int>(static_cast<float>(iWidth) * fScale), 1);
    part.iHeight = std::max(static_cast<int>(static_cast<float>(iHeight) * fScale), 1);
    const int iLeft = (picture.iWidth - part.iWidth) / 2;
    const int iTop = (picture.iHeight - part.iHeight) / 2;
    for (int iY = 0; iY < part.iHeight; ++iY)
    {
        const auto itRow =
            picture.vecPixels.begin() + (ptrdiff_t{iTop + iY} * picture.iWidth + iLeft) * ptrdiff_t{4};
        part.vecPixels.insert(part.vecPixels.end(), itRow, itRow + ptrdiff_t{part.iWidth} * 4);
    }
    return part;
}

} // namespace

void GuiPixels::fill(const std::string& sName, int iWidth, int iHeight,
                     const std::function<Colour(float x, float y)>& fnColour)
{
    MyGUI::ITexture* pTexture = writable(sName, iWidth, iHeight);
    auto* pOut = static_cast<uint8_t*>(pTexture->lock(MyGUI::TextureUsage::Write));
    for (int iY = 0; iY < iHeight; ++iY)
        for (int iX = 0; iX < iWidth; ++iX, pOut += 4)
        {
            const Colour colour = fnColour((static_cast<float>(iX) + 0.5f) / static_cast<float>(iWidth),
                                           (static_cast<float>(iY) + 0.5f) / static_cast<float>(iHeight));
            constexpr std::array<size_t, 4> s_arrOrder{2, 1, 0, 3}; // blue first
            for (size_t i = 0; i < 4; ++i)
                pOut[i] =
                    static_cast<uint8_t>(std::lround(std::clamp(colour[s_arrOrder[i]], 0.0f, 1.0f) * 255.0f));
        }
    pTexture->unlock();
}

std::string GuiPixels::thumbnail(const std::string& sPath, int iWidth, int iHeight, float fPart, bool bClear)
{
    const std::string sName =
        UTILS::concat(bClear ? "clear " : "", "thumbnail ", iWidth, "x", iHeight, " ", fPart, " ", sPath);
    if (iWidth <= 0 || iHeight <= 0)
        return sName;
    const auto& data = static_cast<const GuiDataManager&>(MyGUI::DataManager::getInstance());
    const std::string sRealPath = data.realPath(sPath);
    std::error_code error;
    const auto written = std::filesystem::last_write_time(sRealPath, error);
    const auto [it, bFirst] = s_mapWritten.try_emplace(sName, written);
    if (!bFirst && it->second == written && MyGUI::RenderManager::getInstance().getTexture(sName))
        return sName;
    it->second = written;
    auto picture = resource::loadPicture(sRealPath);
    if (picture && bClear)
        bleedColours(*picture); // clear pixels are averaged in
    if (!picture)
    {
        QM_LOG_ERROR("Failed to load picture '", sPath, "'");
        fill(sName, 1, 1, [](float, float) { return Colour{}; });
        return sName;
    }
    const resource::Picture small =
        resource::scalePicture(middle(*picture, iWidth, iHeight, fPart), iWidth, iHeight);
    fill(sName, iWidth, iHeight,
         [&](float x, float y)
         {
             const auto uX = static_cast<size_t>(x * static_cast<float>(iWidth));
             const auto uY = static_cast<size_t>(y * static_cast<float>(iHeight));
             const std::byte* pPixel = &small.vecPixels[(uY * static_cast<size_t>(iWidth) + uX) * 4];
             const auto channel = [&](size_t i)
             { return static_cast<float>(std::to_integer<int>(pPixel[i])) / 255.0f; };
             return Colour{channel(0), channel(1), channel(2), bClear ? channel(3) : 1.0f};
         });
    return sName;
}
