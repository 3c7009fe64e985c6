#pragma once // A part of a skin that is drawn in nine slices from one box of a picture.

#include <MyGUI_CommonStateInfo.h>
#include <MyGUI_SubSkin.h>

/// A state: <State name="normal" offset="x y w h" border="8"/>, in pixels of the picture, which is
/// drawn at two pixels a unit. The corners keep their size, edges and middle stretch.
class SliceSkinState : public MyGUI::IStateInfo
{
    MYGUI_RTTI_DERIVED(SliceSkinState)

public:
    MyGUI::FloatRect m_rect;  ///< of the box, in texture coordinates
    MyGUI::FloatSize m_slice; ///< of a corner, in texture coordinates
    int m_iBorder = 0;        ///< of a corner, in units of the layouts

private:
    void deserialization(MyGUI::xml::ElementPtr pNode, MyGUI::Version version) override;
};

class SliceSkin : public MyGUI::SubSkin
{
    MYGUI_RTTI_DERIVED(SliceSkin)

public:
    void createDrawItem(MyGUI::ITexture* pTexture, MyGUI::ILayerNode* pNode) override;
    void setStateData(MyGUI::IStateInfo* pState) override;
    void doRender() override;

    /// Before skins are loaded, and after the GUI's start.
    static void registerFactory();
    static void unregisterFactory();

private:
    const SliceSkinState* m_pState = nullptr;
};
