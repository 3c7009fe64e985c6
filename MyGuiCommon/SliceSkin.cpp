#include "MyGuiCommon/SliceSkin.h"

#include "MyGuiCommon/GuiMetrics.h"

#include <MyGUI_FactoryManager.h>
#include <MyGUI_ILayerNode.h>
#include <MyGUI_RenderItem.h>
#include <MyGUI_VertexData.h>

namespace
{

constexpr size_t s_uVertices = 9 * 6;
constexpr int s_iPicturePixelsPerUnit = 2;

/// Where the slices begin and end along one axis: on the screen and in the picture.
struct SliceAxis
{
    std::array<float, 4> arrScreen{};
    std::array<float, 4> arrTexture{};
};

/// The four lines of an axis from the box's place and size, with what the parents cut off taken away.
SliceAxis cutAxis(float fStart, float fSize, float fBorder, float fCutStart, float fCutEnd,
                  float fTextureStart, float fTextureEnd, float fTextureBorder)
{
    const float fCorner = std::min(fBorder, fSize * 0.5f);
    const std::array<float, 4> arrScreen{fStart, fStart + fCorner, fStart + fSize - fCorner, fStart + fSize};
    const std::array<float, 4> arrTexture{fTextureStart, fTextureStart + fTextureBorder,
                                          fTextureEnd - fTextureBorder, fTextureEnd};
    SliceAxis axis;
    for (size_t i = 0; i < 4; ++i)
    {
        const float fAt = std::clamp(arrScreen[i], fCutStart, fCutEnd);
        // The place in the picture follows the place on the screen within the slice it falls into.
        size_t s = 0;
        while (s < 2 && fAt > arrScreen[s + 1])
            ++s;
        const float fSpan = arrScreen[s + 1] - arrScreen[s];
        const float fPart = fSpan > 0.0f ? (fAt - arrScreen[s]) / fSpan : 0.0f;
        axis.arrScreen[i] = fAt;
        axis.arrTexture[i] =
            fAt == arrScreen[i] ? arrTexture[i] : arrTexture[s] + fPart * (arrTexture[s + 1] - arrTexture[s]);
    }
    return axis;
}

} // namespace

void SliceSkinState::deserialization(MyGUI::xml::ElementPtr pNode, MyGUI::Version)
{
    const std::string sTexture = pNode->getParent()->getParent()->findAttribute("texture");
    const MyGUI::IntSize& size = MyGUI::texture_utility::getTextureSize(sTexture);
    const auto coord = MyGUI::IntCoord::parse(pNode->findAttribute("offset"));
    const int iBorder = MyGUI::utility::parseInt(pNode->findAttribute("border"));
    m_rect = MyGUI::CoordConverter::convertTextureCoord(coord, size);
    m_slice = {static_cast<float>(iBorder) / static_cast<float>(std::max(size.width, 1)),
               static_cast<float>(iBorder) / static_cast<float>(std::max(size.height, 1))};
    m_iBorder = iBorder / s_iPicturePixelsPerUnit;
}

void SliceSkin::createDrawItem(MyGUI::ITexture* pTexture, MyGUI::ILayerNode* pNode)
{
    mNode = pNode;
    mRenderItem = mNode->addToRenderItem(pTexture, true, mSeparate);
    mRenderItem->addDrawItem(this, s_uVertices);
}

void SliceSkin::setStateData(MyGUI::IStateInfo* pState)
{
    m_pState = pState->castType<SliceSkinState>();
    _setUVSet(m_pState->m_rect);
    if (mNode)
        mNode->outOfDate(mRenderItem);
}

void SliceSkin::doRender()
{
    if (!mVisible || mEmptyView || !m_pState)
        return;
    const MyGUI::RenderTargetInfo& info = mRenderItem->getRenderTarget()->getInfo();
    const auto fBorder = static_cast<float>(GuiMetrics::px(m_pState->m_iBorder));
    const auto fOriginX = static_cast<float>(mCroppedParent->getAbsoluteLeft() - info.leftOffset);
    const auto fOriginY = static_cast<float>(mCroppedParent->getAbsoluteTop() - info.topOffset);
    const MyGUI::FloatRect& uv = m_pState->m_rect;
    const SliceAxis x =
        cutAxis(fOriginX + static_cast<float>(mCoord.left), static_cast<float>(mCoord.width), fBorder,
                fOriginX + static_cast<float>(_getViewLeft()), fOriginX + static_cast<float>(_getViewRight()),
                uv.left, uv.right, m_pState->m_slice.width);
    const SliceAxis y =
        cutAxis(fOriginY + static_cast<float>(mCoord.top), static_cast<float>(mCoord.height), fBorder,
                fOriginY + static_cast<float>(_getViewTop()), fOriginY + static_cast<float>(_getViewBottom()),
                uv.top, uv.bottom, m_pState->m_slice.height);

    const float fZ = mNode->getNodeDepth();
    MyGUI::Vertex* pVertex = mRenderItem->getCurrentVertexBuffer();
    size_t uCount = 0;
    const auto put = [&](size_t i, size_t j)
    {
        pVertex[uCount++].set((info.pixScaleX * x.arrScreen[i] + info.hOffset) * 2.0f - 1.0f,
                              1.0f - (info.pixScaleY * y.arrScreen[j] + info.vOffset) * 2.0f, fZ,
                              x.arrTexture[i], y.arrTexture[j], mCurrentColour);
    };
    for (size_t j = 0; j < 3; ++j)
        for (size_t i = 0; i < 3; ++i)
        {
            if (x.arrScreen[i + 1] <= x.arrScreen[i] || y.arrScreen[j + 1] <= y.arrScreen[j])
                continue;
            put(i, j);
            put(i, j + 1);
            put(i + 1, j);
            put(i + 1, j);
            put(i, j + 1);
            put(i + 1, j + 1);
        }
    mRenderItem->setLastVertexCount(uCount);
}

void SliceSkin::registerFactory()
{
    MyGUI::FactoryManager& factory = MyGUI::FactoryManager::getInstance();
    factory.registerFactory<SliceSkin>("BasisSkin");
    factory.registerFactory<SliceSkinState>("BasisSkin/State", "SliceSkin");
}

void SliceSkin::unregisterFactory()
{
    MyGUI::FactoryManager& factory = MyGUI::FactoryManager::getInstance();
    factory.unregisterFactory<SliceSkin>("BasisSkin");
    factory.unregisterFactory("BasisSkin/State", "SliceSkin");
}
