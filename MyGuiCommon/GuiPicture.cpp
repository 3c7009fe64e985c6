#include "MyGuiCommon/GuiPicture.h"

#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Resources/Picture.h"

namespace
{

constexpr int s_iBleedPixels = 4;

/// Gives each clear pixel that has a coloured neighbour the mean of those neighbours' colours.
void bleedOnce(GuiPicture& picture, std::vector<uint8_t>& vecKnown)
{
    const std::vector<uint8_t> vecBefore = vecKnown;
    const auto at = [&](int iX, int iY)
    { return static_cast<size_t>(iY) * static_cast<size_t>(picture.iWidth) + static_cast<size_t>(iX); };
    for (int iY = 0; iY < picture.iHeight; ++iY)
        for (int iX = 0; iX < picture.iWidth; ++iX)
        {
            if (vecBefore[at(iX, iY)])
                continue;
            int arrSum[3] = {};
            int iCount = 0;
            for (int iV = std::max(iY - 1, 0); iV <= std::min(iY + 1, picture.iHeight - 1); ++iV)
                for (int iU = std::max(iX - 1, 0); iU <= std::min(iX + 1, picture.iWidth - 1); ++iU)
                {
                    if (!vecBefore[at(iU, iV)])
                        continue;
                    for (size_t c = 0; c < 3; ++c)
                        arrSum[c] += picture.vecPixels[at(iU, iV) * 4 + c];
                    ++iCount;
                }
            if (iCount == 0)
                continue;
            for (size_t c = 0; c < 3; ++c)
                picture.vecPixels[at(iX, iY) * 4 + c] = static_cast<uint8_t>(arrSum[c] / iCount);
            vecKnown[at(iX, iY)] = 1;
        }
}

void bleedColours(GuiPicture& picture)
{
    std::vector<uint8_t> vecKnown(picture.vecPixels.size() / 4);
    for (size_t i = 0; i < vecKnown.size(); ++i)
        vecKnown[i] = picture.vecPixels[i * 4 + 3] > 0;
    for (int i = 0; i < s_iBleedPixels; ++i)
        bleedOnce(picture, vecKnown);
}

} // namespace

std::optional<GuiPicture> loadGuiPicture(const std::string& sRealPath)
{
    const auto loaded = resource::loadPicture(sRealPath);
    if (!loaded)
    {
        QM_LOG_ERROR("Failed to load picture '", sRealPath, "'");
        return std::nullopt;
    }
    GuiPicture picture{loaded->iWidth, loaded->iHeight, {}};
    picture.vecPixels.resize(loaded->vecPixels.size());
    std::memcpy(picture.vecPixels.data(), loaded->vecPixels.data(), loaded->vecPixels.size());
    bleedColours(picture);
    return picture;
}
