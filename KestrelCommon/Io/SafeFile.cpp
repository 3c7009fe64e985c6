#include "KestrelCommon/Io/SafeFile.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

std::function<void(SaveStep)> s_fnStepHook;

void tellStep(SaveStep eStep)
{
    if (s_fnStepHook)
        s_fnStepHook(eStep);
}

bool writeAll(int iFile, std::span<const std::byte> spanBytes)
{
    while (!spanBytes.empty())
    {
        const ssize_t iWritten = ::write(iFile, spanBytes.data(), spanBytes.size());
        if (iWritten < 0 && errno == EINTR)
            continue;
        if (iWritten <= 0)
            return false;
        spanBytes = spanBytes.subspan(static_cast<size_t>(iWritten));
    }
    return true;
}

// Makes a rename last through a crash; not all file systems allow it, which is no failure.
void flushFolder(const std::filesystem::path& path)
{
    const int iFolder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (iFolder < 0)
        return;
    ::fsync(iFolder);
    ::close(iFolder);
}

} // namespace

std::optional<std::vector<std::byte>> readFile(const std::filesystem::path& path)
{
    const int iFile = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (iFile < 0)
        return std::nullopt;
    struct stat status = {};
    std::vector<std::byte> vecBytes;
    bool bGood = ::fstat(iFile, &status) == 0 && S_ISREG(status.st_mode);
    if (bGood)
    {
        vecBytes.resize(static_cast<size_t>(status.st_size));
        size_t uRead = 0;
        while (uRead < vecBytes.size())
        {
            const ssize_t iCount = ::read(iFile, vecBytes.data() + uRead, vecBytes.size() - uRead);
            if (iCount < 0 && errno == EINTR)
                continue;
            if (iCount <= 0)
                break;
            uRead += static_cast<size_t>(iCount);
        }
        bGood = uRead == vecBytes.size();
    }
    ::close(iFile);
    if (!bGood)
        return std::nullopt;
    return vecBytes;
}

std::optional<std::string> readTextFile(const std::filesystem::path& path)
{
    const auto vecBytes = readFile(path);
    if (!vecBytes)
        return std::nullopt;
    std::string_view sText(reinterpret_cast<const char*>(vecBytes->data()), vecBytes->size());
    if (sText.starts_with("\xEF\xBB\xBF"))
        sText.remove_prefix(3);
    return std::string(sText);
}

SafeFile::SafeFile(std::filesystem::path path) : m_path(std::move(path))
{
    // A link is written through: its target is replaced, not the link.
    std::error_code error;
    if (std::filesystem::is_symlink(m_path, error))
        if (const auto pathTarget = std::filesystem::canonical(m_path, error); !error)
            m_path = pathTarget;

    std::string sBeside = m_path.string() + ".XXXXXX";
    m_iFile = ::mkostemp(sBeside.data(), O_CLOEXEC);
    if (m_iFile < 0)
        return;
    m_pathBeside = sBeside;
    struct stat status = {};
    // Asked once: the question sets it for a moment, for all threads.
    static const mode_t uMask = [] {
        const mode_t uOld = ::umask(0);
        ::umask(uOld);
        return uOld;
    }();
    const bool bReplaces = ::stat(m_path.c_str(), &status) == 0;
    ::fchmod(m_iFile, bReplaces ? status.st_mode & 07777 : 0666 & ~uMask);
    tellStep(SaveStep::Opened);
}

SafeFile::~SafeFile()
{
    closeFile();
    if (!m_pathBeside.empty())
        ::unlink(m_pathBeside.c_str());
}

void SafeFile::closeFile()
{
    if (m_iFile >= 0)
        ::close(m_iFile);
    m_iFile = -1;
}

bool SafeFile::write(std::span<const std::byte> spanBytes)
{
    if (!isOpen() || !writeAll(m_iFile, spanBytes))
        return false;
    tellStep(SaveStep::Written);
    m_bWritten = ::fsync(m_iFile) == 0;
    if (m_bWritten)
        tellStep(SaveStep::Flushed);
    return m_bWritten;
}

bool SafeFile::commit()
{
    closeFile();
    if (!m_bWritten || std::rename(m_pathBeside.c_str(), m_path.c_str()) != 0)
        return false;
    m_pathBeside.clear();
    m_bWritten = false;
    flushFolder(m_path.parent_path());
    tellStep(SaveStep::Renamed);
    return true;
}

void SafeFile::setStepHook(std::function<void(SaveStep)> fnHook)
{
    s_fnStepHook = std::move(fnHook);
}

bool writeFileSafely(const std::filesystem::path& path, std::span<const std::byte> spanBytes)
{
    SafeFile file(path);
    return file.write(spanBytes) && file.commit();
}

bool writeFileSafely(const std::filesystem::path& path, std::string_view sText)
{
    return writeFileSafely(path, std::as_bytes(std::span(sText)));
}
