#include "Tools/ContentBuilder/OutputFolder.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

namespace content
{

namespace
{

constexpr const char* s_pStampFile = ".content-stamps";

} // namespace

uint64_t hashBytes(std::string_view sBytes, uint64_t uStart)
{
    for (const char c : sBytes)
        uStart = (uStart ^ static_cast<unsigned char>(c)) * 0x100000001b3ull;
    return uStart;
}

std::string readFile(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

OutputFolder::OutputFolder(std::filesystem::path root) : m_root(std::move(root))
{
    std::ifstream file(m_root / s_pStampFile);
    std::string sLine;
    while (std::getline(file, sLine))
    {
        std::istringstream line(sLine);
        uint64_t uHash = 0;
        std::string sFile;
        if (line >> std::hex >> uHash && line.get() == ' ' && std::getline(line, sFile))
            m_mapOld.emplace(sFile, uHash);
    }
}

bool OutputFolder::isCurrent(const std::vector<std::string>& vecFiles, uint64_t uInputs)
{
    const std::scoped_lock lock(m_lock);
    for (const std::string& sFile : vecFiles)
    {
        const auto it = m_mapOld.find(sFile);
        std::error_code error;
        if (it == m_mapOld.end() || it->second != uInputs ||
            !std::filesystem::is_regular_file(m_root / sFile, error))
            return false;
    }
    for (const std::string& sFile : vecFiles)
        m_mapNew[sFile] = uInputs;
    return true;
}

std::filesystem::path OutputFolder::prepare(const std::string& sFile)
{
    const std::filesystem::path path = m_root / sFile;
    std::error_code error;
    std::filesystem::create_directories(path.parent_path(), error);
    return path;
}

void OutputFolder::markMade(const std::vector<std::string>& vecFiles, uint64_t uInputs)
{
    const std::scoped_lock lock(m_lock);
    for (const std::string& sFile : vecFiles)
        m_mapNew[sFile] = uInputs;
    m_uChanged += vecFiles.size();
}

bool OutputFolder::copy(const std::filesystem::path& from, const std::string& sFile)
{
    const std::string sBytes = readFile(from);
    const uint64_t uHash = hashBytes(sBytes);
    const std::filesystem::path to = prepare(sFile);
    std::error_code error;
    const bool bSame =
        std::filesystem::file_size(to, error) == sBytes.size() && !error && readFile(to) == sBytes;
    if (!bSame)
    {
        std::ofstream file(to, std::ios::binary | std::ios::trunc);
        file.write(sBytes.data(), static_cast<std::streamsize>(sBytes.size()));
        file.close();
        if (!file)
        {
            std::fprintf(stderr, "Failed to write %s\n", to.c_str());
            return false;
        }
        ++m_uChanged;
    }
    const std::scoped_lock lock(m_lock);
    m_mapNew[sFile] = uHash;
    return true;
}

bool OutputFolder::finish()
{
    std::error_code error;
    for (const auto& [sFile, uHash] : m_mapOld)
        if (!m_mapNew.contains(sFile))
        {
            std::filesystem::remove(m_root / sFile, error);
            ++m_uChanged;
        }
    if (m_mapOld == m_mapNew)
        return true;
    std::ofstream file(m_root / s_pStampFile, std::ios::trunc);
    for (const auto& [sFile, uHash] : m_mapNew)
        file << std::hex << uHash << ' ' << sFile << '\n';
    file.close();
    if (!file)
        std::fprintf(stderr, "Failed to write the stamps in %s\n", m_root.c_str());
    return static_cast<bool>(file);
}

} // namespace content
