#pragma once // A typed parameter of a placed node or harvestable.

#include <cstdint>
#include <functional>
#include <json/value.h>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class LuaBlobReader;
class LuaBlobWriter;

namespace tilebuilder
{

class ConnectionLookupI;
class PropertyPanelI;

enum class ParamType : uint32_t
{
    None = 0,
    Bool = 1,
    String = 2,
    Float = 3,
    Connections = 4, ///< always named "connections"
    Effect = 5,      ///< always named "effect"
    Track = 6,       ///< always named "track"
};

/// What the buttons of an effect's rows ask of its owner, who has it play.
enum class EffectCommand : uint8_t
{
    Restart,
    Stop,
    Start,
};

/// What a parameter's rows need of whoever shows them. Each may be empty. Held as long as the rows.
struct ParamContext
{
    std::function<void()> onChanged;             ///< a value was changed by the user
    std::function<void()> onConnect;             ///< "Connect" was pressed
    std::function<void(EffectCommand)> onEffect; ///< also when a change makes the effect another
    std::function<void()> onRowsChanged;         ///< other rows must be shown now
};

/// Base of the six kinds. Read and written in the forms of LuaBlob.h.
///
/// Ownership: always by shared pointers; rows on a panel only watch.
/// Threads:   a parameter belongs to one thread at a time; reading and writing blobs may run on any,
///            rows and update() on the main thread alone.
class IParam : public std::enable_shared_from_this<IParam>
{
public:
    virtual ~IParam() = default;
    IParam& operator=(const IParam&) = delete;

    /// Adds the rows of the value.
    virtual void display(PropertyPanelI& widgets, const ParamContext& context) = 0;
    /// Once a frame.
    virtual void update() {}
    /// A new parameter with the same value.
    [[nodiscard]] virtual std::shared_ptr<IParam> getCloneArgs() const = 0;
    /// Writes the value with its type code; the key was written before. With a lookup, connections
    /// to ids that it doesn't know are left out.
    virtual void serialize(LuaBlobWriter& stream, const ConnectionLookupI* pOnlyExisting) = 0;
    /// Reads the value; its type code was read before.
    virtual void deserialize(LuaBlobReader& stream) = 0;
    virtual void setDefault(const Json::Value&) {}

    std::string strName;
    ParamType eType;
    Json::Value jsonDefault;
    uint32_t uParamUid; ///< tells parameters apart in one run of the program

protected:
    explicit IParam(ParamType eKind);
    /// A copy has a number of its own.
    IParam(const IParam& other);
};

using ParamPtr = std::shared_ptr<IParam>;

/// Whether a connection id is one of a node. Asked while a blob is written.
class ConnectionLookupI
{
public:
    virtual ~ConnectionLookupI() = default;
    [[nodiscard]] virtual bool hasConnection(int32_t iId) const = 0;
};

/// A parameter of a type, with its default unless that is null. Empty, with a line in the log, for a bad
/// type or a name that the type may not have.
[[nodiscard]] ParamPtr createParam(std::string_view sName, ParamType eType, const Json::Value& jsonDefault);

/// A parameter for a type code met in a blob; empty when the code fits no parameter of that name.
[[nodiscard]] ParamPtr createParamByCode(std::string_view sName, uint8_t uTypeCode);

} // namespace tilebuilder
