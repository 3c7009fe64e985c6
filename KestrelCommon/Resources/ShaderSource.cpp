#include "KestrelCommon/Resources/ShaderSource.h"

#include "KestrelCommon/Core/Console.h"

#include <fstream>

namespace resource
{

namespace
{

constexpr std::string_view s_sFolder = "$GAME_DATA/Shaders/glsl/";
constexpr int s_iMaxDepth = 8;

bool readFile(const PathResolver& fnResolve, const std::string& sFile, int iDepth, std::string& sOut)
{
    std::ifstream file(fnResolve(std::string(s_sFolder) + sFile));
    if (!file || iDepth > s_iMaxDepth)
    {
        UTILS::log(UTILS::concat("Failed to read shader: \"", s_sFolder, sFile, "\""), UTILS::AttributeRed,
                   UTILS::LogShader | UTILS::LogError);
        return false;
    }
    constexpr std::string_view s_sInclude = "#include \"";
    std::string sLine;
    int iLine = 0;
    while (std::getline(file, sLine))
    {
        ++iLine;
        const size_t uEnd = sLine.find('"', s_sInclude.size());
        if (!sLine.starts_with(s_sInclude) || uEnd == std::string::npos)
        {
            sOut += sLine + '\n';
            continue;
        }
        sOut += "#line 1\n";
        if (!readFile(fnResolve, sLine.substr(s_sInclude.size(), uEnd - s_sInclude.size()), iDepth + 1, sOut))
            return false;
        sOut += UTILS::concat("#line ", iLine + 1, "\n");
    }
    return true;
}

} // namespace

bool loadShaderSource(const PathResolver& fnResolve, std::string_view sName, rend::PipelineDesc& desc)
{
    std::string sText;
    if (!readFile(fnResolve, std::string(sName) + ".glsl", 0, sText))
        return false;
    desc.sName = sName;
    desc.sVertexSource = sText;
    desc.sFragmentSource = std::move(sText);
    return true;
}

} // namespace resource
