#include "KestrelCommon/renderer/ClutterMesh.h"

#include "KestrelCommon/Core/Console.h"

#include <charconv>
#include <fstream>
#include <map>

#include <glm/common.hpp>

namespace rend
{

namespace
{

constexpr std::streamsize s_iMaxFileSize = 4 << 20;
constexpr float s_fMaxValue = 60000.0f; ///< a half float holds no more

std::string_view takeWord(std::string_view& sLine)
{
    const size_t uStart = std::min(sLine.find_first_not_of(" \t\r"), sLine.size());
    const size_t uEnd = std::min(sLine.find_first_of(" \t\r", uStart), sLine.size());
    const std::string_view sWord = sLine.substr(uStart, uEnd - uStart);
    sLine.remove_prefix(uEnd);
    return sWord;
}

/// From a text as long as the number; false when it holds anything else.
template <class T>
bool toNumber(std::string_view sText, T& out)
{
    const auto [pEnd, error] = std::from_chars(sText.data(), sText.data() + sText.size(), out);
    return error == std::errc() && pEnd == sText.data() + sText.size();
}

bool takeFloats(std::string_view sLine, std::span<float> spanOut)
{
    for (float& f : spanOut)
        if (!toNumber(takeWord(sLine), f) || !(std::abs(f) <= s_fMaxValue))
            return false;
    return true;
}

class Parser
{
public:
    bool parseLine(std::string_view sLine)
    {
        const std::string_view sKind = takeWord(sLine);
        if (sKind == "v")
            return takeVector(sLine, m_vecPositions);
        if (sKind == "vn")
            return takeVector(sLine, m_vecNormals);
        if (sKind == "vt")
        {
            glm::vec3 place{0.0f};
            if (!takeFloats(sLine, {&place.x, 2}))
                return false;
            m_vecTexCoords.push_back(place);
            return true;
        }
        if (sKind == "g" && takeWord(sLine) == "more" && m_mesh.uCoreIndices == 0)
            m_mesh.uCoreIndices = static_cast<uint32_t>(m_mesh.vecIndices.size());
        return sKind != "f" || takeFace(sLine);
    }

    std::optional<ClutterMesh> finish()
    {
        if (m_mesh.vecIndices.empty())
            return std::nullopt;
        if (m_mesh.uCoreIndices == 0)
            m_mesh.uCoreIndices = static_cast<uint32_t>(m_mesh.vecIndices.size());
        return std::move(m_mesh);
    }

private:
    static bool takeVector(std::string_view sLine, std::vector<glm::vec3>& vecOut)
    {
        glm::vec3 value{0.0f};
        if (!takeFloats(sLine, {&value.x, 3}))
            return false;
        vecOut.push_back(value);
        return true;
    }

    /// 1-based; an empty text is 0.
    static bool takeIndex(std::string_view sText, size_t uCount, size_t& uOut)
    {
        uOut = 0;
        return sText.empty() || (toNumber(sText, uOut) && uOut >= 1 && uOut <= uCount);
    }

    bool takeCorner(std::string_view sCorner, uint16_t& uOut)
    {
        const auto part = [&sCorner]
        {
            const size_t uEnd = std::min(sCorner.find('/'), sCorner.size());
            const std::string_view sPart = sCorner.substr(0, uEnd);
            sCorner.remove_prefix(std::min(uEnd + 1, sCorner.size()));
            return sPart;
        };
        std::array<size_t, 3> arrPlaces{};
        if (!takeIndex(part(), m_vecPositions.size(), arrPlaces[0]) || arrPlaces[0] == 0 ||
            !takeIndex(part(), m_vecTexCoords.size(), arrPlaces[1]) ||
            !takeIndex(part(), m_vecNormals.size(), arrPlaces[2]))
            return false;
        const auto [it, bNew] = m_mapCorners.try_emplace(arrPlaces, m_mesh.vecVertices.size());
        if (bNew)
            addVertex(m_vecPositions[arrPlaces[0] - 1],
                      arrPlaces[1] ? m_vecTexCoords[arrPlaces[1] - 1] : glm::vec3(0.0f),
                      arrPlaces[2] ? m_vecNormals[arrPlaces[2] - 1] : glm::vec3(0.0f, 0.0f, 1.0f));
        uOut = static_cast<uint16_t>(it->second);
        return m_mesh.vecVertices.size() <= 0xFFFF;
    }

    void addVertex(const glm::vec3& position, const glm::vec3& texCoord, const glm::vec3& normal)
    {
        if (m_mesh.vecVertices.empty())
            m_mesh.box = {position, position};
        m_mesh.box = {glm::min(m_mesh.box.lowest, position), glm::max(m_mesh.box.highest, position)};
        m_mesh.vecVertices.push_back(
            {{toHalf(position.x), toHalf(position.y), toHalf(position.z), toHalf(1.0f)},
             {toHalf(texCoord.x), toHalf(1.0f - texCoord.y)},
             {toHalf(normal.x), toHalf(normal.y), toHalf(normal.z), 0}});
    }

    bool takeFace(std::string_view sLine)
    {
        std::vector<uint16_t> vecCorners;
        for (std::string_view sCorner = takeWord(sLine); !sCorner.empty(); sCorner = takeWord(sLine))
            if (!takeCorner(sCorner, vecCorners.emplace_back()))
                return false;
        for (size_t u = 2; u < vecCorners.size(); ++u)
            m_mesh.vecIndices.insert(m_mesh.vecIndices.end(),
                                     {vecCorners[0], vecCorners[u - 1], vecCorners[u]});
        return vecCorners.size() >= 3;
    }

    std::vector<glm::vec3> m_vecPositions;
    std::vector<glm::vec3> m_vecTexCoords;
    std::vector<glm::vec3> m_vecNormals;
    std::map<std::array<size_t, 3>, size_t> m_mapCorners;
    ClutterMesh m_mesh;
};

} // namespace

std::optional<ClutterMesh> parseClutterMesh(std::string_view sText, std::string_view sName)
{
    Parser parser;
    for (size_t uLine = 1; !sText.empty(); ++uLine)
    {
        const size_t uEnd = std::min(sText.find('\n'), sText.size());
        if (!parser.parseLine(sText.substr(0, uEnd)))
        {
            QM_LOG_ERROR("Line ", uLine, " of the clutter mesh '", sName, "' is broken");
            return std::nullopt;
        }
        sText.remove_prefix(std::min(uEnd + 1, sText.size()));
    }
    auto mesh = parser.finish();
    if (!mesh)
        QM_LOG_ERROR("The clutter mesh '", sName, "' has no faces");
    return mesh;
}

std::optional<ClutterMesh> loadClutterMesh(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamsize iSize = file ? static_cast<std::streamsize>(file.tellg()) : -1;
    if (iSize < 0 || iSize > s_iMaxFileSize)
    {
        QM_LOG_ERROR("Failed to load clutter mesh: \"", path.generic_string(), "\"");
        return std::nullopt;
    }
    std::string sText(static_cast<size_t>(iSize), '\0');
    file.seekg(0);
    file.read(sText.data(), iSize);
    if (!file)
    {
        QM_LOG_ERROR("Failed to load clutter mesh: \"", path.generic_string(), "\"");
        return std::nullopt;
    }
    return parseClutterMesh(sText, path.filename().string());
}

ClutterMesh defaultClutterMesh()
{
    return *parseClutterMesh("v -2 0 0\nv 2 0 0\nv 2 0 4\nv -2 0 4\n"
                             "v 0 -2 0\nv 0 2 0\nv 0 2 4\nv 0 -2 4\n"
                             "vt 0 0\nvt 1 0\nvt 1 1\nvt 0 1\nvn 0 0 1\n"
                             "f 1/1/1 2/2/1 3/3/1 4/4/1\nf 5/1/1 6/2/1 7/3/1 8/4/1\n",
                             "default");
}

} // namespace rend
