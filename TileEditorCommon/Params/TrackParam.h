#pragma once // A camera track of a node.

#include "KestrelCommon/Data/DynamicData.h"
#include "TileEditorCommon/Params/IParam.h"

namespace tilebuilder
{

/// Draws a track's path in the scene. Main thread.
class TrackPreviewI
{
public:
    virtual ~TrackPreviewI() = default;
    /// Once a frame; the tree is borrowed for the call.
    virtual void update(const DynamicData::Value& track) = 0;
};

/// Keeps the JSON of the track, and edits it as a tree of the template "Track". The tree is made when
/// it is first asked for on the main thread; without the manager or the template the JSON stands alone
/// and goes through loads and saves as it is.
class TrackParam : public IParam
{
public:
    static constexpr const char* s_pTemplateName = "Track";

    TrackParam();

    void display(PropertyPanelI& widgets, const ParamContext& context) override;
    /// Makes the tree and hands it to the preview.
    void update() override;
    /// Without a preview.
    [[nodiscard]] std::shared_ptr<IParam> getCloneArgs() const override;
    void serialize(LuaBlobWriter& stream, const ConnectionLookupI* pOnlyExisting) override;
    void deserialize(LuaBlobReader& stream) override;
    void setDefault(const Json::Value& json) override;

    /// The track as edited; null without a template. Main thread.
    [[nodiscard]] DynamicData::Value* object();
    /// What the view compares with.
    [[nodiscard]] const DynamicData::Value& baseline() const { return m_baseline; }
    /// The track as it would be stored now.
    [[nodiscard]] const Json::Value& json();

    std::unique_ptr<TrackPreviewI> pPreview;

private:
    TrackParam(const TrackParam& other);
    void takeJson(Json::Value json);

    uint64_t m_uHash = 0; ///< of the tree when m_jsonValue was last made
    Json::Value m_jsonValue;
    std::string m_sBroken; ///< stored text that is no JSON
    bool m_bHasObject = false;
    DynamicData::Value m_object;
    DynamicData::Value m_baseline;
};

} // namespace tilebuilder
