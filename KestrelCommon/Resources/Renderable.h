#pragma once // What is drawn of an object: a model and its materials.

#include "KestrelCommon/Resources/Model.h"
#include "KestrelCommon/Resources/PathResolver.h"

#include <json/forwards.h>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string_view>

namespace resource
{

/// Keyed paths of pictures; an empty one means the default texture.
struct RenderableMaterial
{
    std::string sDiffuse;
    std::string sNormal;
    std::string sAsg;
    std::string sColorSlot; ///< the colour of an instance that tints it; empty: none
    bool operator==(const RenderableMaterial&) const = default;
};

struct RenderableDesc
{
    std::string sMesh;                                                   ///< keyed path of a model file
    std::map<std::string, RenderableMaterial, std::less<>> mapMaterials; ///< by the model's names
    bool operator==(const RenderableDesc&) const = default;
};

/// From the object of a ".rend" file: "mesh", and "materials" with "diffuse", "normal", "asg" and
/// "colorSlot" a material. All but "mesh" may be missing. nullopt without a line: no object, or no mesh.
[[nodiscard]] std::optional<RenderableDesc> readRenderable(const Json::Value& jRenderable);

/// The same from the text of a ".rend" file. A text that doesn't parse, or names no mesh, logs a line with
/// the name.
[[nodiscard]] std::optional<RenderableDesc> parseRenderable(std::string_view sText, std::string_view sName);

/// A model file that is read when it is first asked for. What can't be read becomes the stand-in, with one
/// line in the log.
/// Threads: any.
class ModelFile
{
public:
    ModelFile(std::string sPath, PathResolver fnResolve)
        : m_sPath(std::move(sPath)),
          m_fnResolve(std::move(fnResolve))
    {
    }

    [[nodiscard]] const std::string& path() const { return m_sPath; }
    [[nodiscard]] const Model& model() const;

private:
    std::string m_sPath;
    PathResolver m_fnResolve;
    mutable std::once_flag m_loaded;
    mutable Model m_model;
};

/// Never changes, so that any number of instances and threads may share one.
class Renderable
{
public:
    /// bWireframe: the form that shows the outline of an object that is highlighted.
    Renderable(RenderableDesc desc, std::shared_ptr<const ModelFile> pModel, bool bWireframe);

    [[nodiscard]] const RenderableDesc& desc() const { return m_desc; }
    /// Loads on first use.
    [[nodiscard]] const Model& model() const { return m_pModel->model(); }
    [[nodiscard]] bool isWireframe() const { return m_bWireframe; }

    /// Names of the colours that its materials use, in order, each once.
    [[nodiscard]] std::span<const std::string> colorSlots() const { return m_vecColorSlots; }
    /// The place of a material's colour among them; -1 for none or an unknown material.
    [[nodiscard]] int colorSlotOf(std::string_view sMaterial) const;
    /// Defaults for a material that isn't described.
    [[nodiscard]] const RenderableMaterial& material(std::string_view sName) const;

private:
    RenderableDesc m_desc;
    std::shared_ptr<const ModelFile> m_pModel;
    std::vector<std::string> m_vecColorSlots;
    bool m_bWireframe;
};

} // namespace resource
