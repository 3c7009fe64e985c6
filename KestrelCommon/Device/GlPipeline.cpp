#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Device/GlDeviceImpl.h"
#include "KestrelCommon/Device/GlFormats.h"

namespace rend
{

namespace
{

/// Behind a vertex shader whose main was renamed: y upside down for targets, depth -1 to 1.
constexpr std::string_view s_sClipWrapper = "\n#undef main\n"
                                            "uniform float qm_flip;\n"
                                            "void main()\n"
                                            "{\n"
                                            "    qm_shaderMain();\n"
                                            "    gl_Position.y *= qm_flip;\n"
                                            "    gl_Position.z = 2.0 * gl_Position.z - gl_Position.w;\n"
                                            "}\n";

void logShader(const std::string& sName, std::string_view sWhat, const std::string& sText)
{
    UTILS::log(UTILS::concat("Shader ", sName, " failed to ", sWhat, ":\n", sText), UTILS::AttributeRed,
               UTILS::LogShader | UTILS::LogError);
}

/// 0 with a log line when the stage doesn't compile.
GLuint compileStage(GLenum eStage, const std::string& sSource, const std::string& sName)
{
    const GLuint uShader = glCreateShader(eStage);
    const char* pText = sSource.c_str();
    glShaderSource(uShader, 1, &pText, nullptr);
    glCompileShader(uShader);
    GLint iDone = 0;
    glGetShaderiv(uShader, GL_COMPILE_STATUS, &iDone);
    if (iDone != 0)
        return uShader;
    GLint iLength = 0;
    glGetShaderiv(uShader, GL_INFO_LOG_LENGTH, &iLength);
    std::string sLog(static_cast<size_t>(std::max(iLength, 1)), '\0');
    glGetShaderInfoLog(uShader, iLength, nullptr, sLog.data());
    sLog.resize(sLog.find_last_not_of(std::string_view(" \n\0", 3)) + 1);
    logShader(sName, eStage == GL_VERTEX_SHADER ? "compile its vertex stage" : "compile its fragment stage",
              sLog);
    glDeleteShader(uShader);
    return 0;
}

bool isLinked(GLuint uProgram)
{
    GLint iDone = 0;
    glGetProgramiv(uProgram, GL_LINK_STATUS, &iDone);
    return iDone != 0;
}

} // namespace

std::string GlDevice::stageSource(const PipelineDesc& desc, bool bVertex) const
{
    std::string sText = "#version 430 core\n";
    for (const std::string& sDefine : desc.vecDefines)
        sText += "#define " + sDefine + '\n';
    sText += bVertex ? "#define VERTEX_STAGE 1\n" : "#define FRAGMENT_STAGE 1\n";
    const bool bWrap = bVertex && !m_bClipControl;
    if (bWrap)
        sText += "#define main qm_shaderMain\n";
    sText += "#line 1\n";
    sText += bVertex ? desc.sVertexSource : desc.sFragmentSource;
    if (bWrap)
        sText += s_sClipWrapper;
    return sText;
}

GLuint GlDevice::linkProgram(const PipelineDesc& desc)
{
    const std::string sVertex = stageSource(desc, true);
    const std::string sFragment = stageSource(desc, false);
    const uint64_t uKey = xxh3(std::string_view(sVertex + '\0' + sFragment + '\0' + m_sDriver));

    if (const auto entry = m_programCache.find(uKey))
    {
        const GLuint uProgram = glCreateProgram();
        glProgramBinary(uProgram, entry->uFormat, entry->vecBinary.data(),
                        static_cast<GLsizei>(entry->vecBinary.size()));
        if (isLinked(uProgram))
            return uProgram;
        glDeleteProgram(uProgram);
        while (glGetError() != GL_NO_ERROR)
        {
        }
    }

    const GLuint uVertex = compileStage(GL_VERTEX_SHADER, sVertex, desc.sName);
    const GLuint uFragment = uVertex ? compileStage(GL_FRAGMENT_SHADER, sFragment, desc.sName) : 0;
    if (!uFragment)
    {
        glDeleteShader(uVertex);
        return 0;
    }
    const GLuint uProgram = glCreateProgram();
    glProgramParameteri(uProgram, GL_PROGRAM_BINARY_RETRIEVABLE_HINT, GL_TRUE);
    glAttachShader(uProgram, uVertex);
    glAttachShader(uProgram, uFragment);
    glLinkProgram(uProgram);
    glDeleteShader(uVertex);
    glDeleteShader(uFragment);
    if (!isLinked(uProgram))
    {
        std::array<char, 4096> arrLog{};
        glGetProgramInfoLog(uProgram, arrLog.size(), nullptr, arrLog.data());
        logShader(desc.sName, "link", arrLog.data());
        glDeleteProgram(uProgram);
        return 0;
    }

    GLint iLength = 0;
    glGetProgramiv(uProgram, GL_PROGRAM_BINARY_LENGTH, &iLength);
    if (iLength > 0)
    {
        std::vector<std::byte> vecBinary(static_cast<size_t>(iLength));
        GLenum eFormat = 0;
        glGetProgramBinary(uProgram, iLength, &iLength, &eFormat, vecBinary.data());
        m_programCache.store(uKey, eFormat, std::span(vecBinary).first(static_cast<size_t>(iLength)));
    }
    return uProgram;
}

PipelineHandle GlDevice::createPipeline(const PipelineDesc& desc)
{
    GlPipeline pipeline{desc, linkProgram(desc), 0, -1};
    if (!pipeline.uProgram)
        return {};
    if (!m_bClipControl)
        pipeline.iFlipLocation = glGetUniformLocation(pipeline.uProgram, "qm_flip");

    glGenVertexArrays(1, &pipeline.uVertexArray);
    glBindVertexArray(pipeline.uVertexArray);
    for (const VertexAttribute& attribute : desc.vecAttributes)
    {
        const GlVertexFormat format = glVertexFormat(attribute.eFormat);
        glEnableVertexAttribArray(attribute.uLocation);
        if (format.bInteger)
            glVertexAttribIFormat(attribute.uLocation, format.iCount, format.eType, attribute.uOffset);
        else
            glVertexAttribFormat(attribute.uLocation, format.iCount, format.eType, format.bNormalized,
                                 attribute.uOffset);
        glVertexAttribBinding(attribute.uLocation, attribute.uSlot);
    }
    for (size_t uSlot = 0; uSlot < desc.vecSlots.size(); ++uSlot)
        glVertexBindingDivisor(static_cast<GLuint>(uSlot), desc.vecSlots[uSlot].bPerInstance ? 1 : 0);
    pipeline.desc.sVertexSource.clear();
    pipeline.desc.sFragmentSource.clear();
    m_mapPipelines.emplace(m_uNextId, std::move(pipeline));
    m_pipeline = {}; // the vertex array in use changed
    return {m_uNextId++};
}

void GlDevice::destroyPipeline(PipelineHandle pipeline)
{
    const auto it = m_mapPipelines.find(pipeline.uId);
    if (it == m_mapPipelines.end())
        return;
    glDeleteVertexArrays(1, &it->second.uVertexArray);
    glDeleteProgram(it->second.uProgram);
    m_mapPipelines.erase(it);
}

} // namespace rend
