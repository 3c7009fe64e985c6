#include "MyGuiCommon/GuiPicture.h"

#include "KestrelCommon/Core/Console.h"

namespace
{

constexpr int s_iBleedPixels = 4;

/// Gives each clear pixel that has a coloured neighbour the mean of those neighbours' colours.
void bleedOnce(resource::Picture& picture, std::vector<uint8_t>& vecKnown)
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
                        arrSum[c] += std::to_integer<int>(picture.vecPixels[at(iU, iV) * 4 + c]);
                    ++iCount;
                }
            if (iCount == 0)
                continue;
            for (size_t c = 0; c < 3; ++c)
                picture.vecPixels[at(iX, iY) * 4 + c] = static_cast<std::byte>(arrSum[c] / iCount);
            vecKnown[at(iX, iY)] = 1;
        }
}

} // namespace

void bleedColours(resource::Picture& picture)
{
    std::vector<uint8_t> vecKnown(picture.vecPixels.size() / 4);
    for (size_t i = 0; i < vecKnown.size(); ++i)
        vecKnown[i] = picture.vecPixels[i * 4 + 3] != std::byte{0};
    for (int i = 0; i < s_iBleedPixels; ++i)
        bleedOnce(picture, vecKnown);
}

std::optional<resource::Picture> loadGuiPicture(const std::string& sRealPath)
{
    std::optional<resource::Picture> picture = resource::loadPicture(sRealPath);
    if (picture)
        bleedColours(*picture);
    else
        QM_LOG_ERROR("Failed to load picture '", sRealPath, "'");
    return picture;
}
