#include "TileEditorCommon/Document/ImageCheck.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Io/Lz4Section.h"
#include "KestrelCommon/Tile/ClutterSection.h"
#include "KestrelCommon/Tile/SurfaceSection.h"

#include <tbb/parallel_for.h>

namespace tilebuilder
{

namespace
{

// No honest image unpacks to more, however its sections share bytes.
constexpr uint64_t s_uMaxExpansion = 255;

constexpr uint32_t s_uMaxClutter = 1 + 255 * (1 + sizeof(Uuid)) + tile::SamplesPerPatch;

/// Collects the sections of an image that must be unpacked.
class Collector
{
public:
    Collector(CheckedImage& result, const ProviderTable& providers, const KnownSection& fnKnown)
        : m_result(result),
          m_providers(providers),
          m_fnKnown(fnKnown)
    {
    }

    [[nodiscard]] bool cell(size_t uCell)
    {
        const tile::Header& header = m_result.image.header();
        const tile::CellHeader cellHeader = m_result.image.cellHeader(uCell);
        if (tile::typeOf(header) == tile::TypeGround && !ground(uCell, cellHeader))
            return false;
        for (const tile::SectionGroup eGroup : tile::objectReadOrder())
        {
            const tile::SectionGroupInfo& group = tile::sectionGroup(eGroup);
            for (uint32_t i = 0; i < group.uElements; ++i)
                if (!objects(uCell, group, i, tile::section(cellHeader, group, i)))
                    return false;
        }
        if (cellHeader.scriptCount > 0)
            m_result.bForeignObjects = true;
        return true;
    }

private:
    bool ground(size_t uCell, const tile::CellHeader& cellHeader)
    {
        const tile::SectionGroupInfo& mips = tile::sectionGroup(tile::SectionGroup::Mips);
        const tile::Section surface = tile::section(cellHeader, mips, 0);
        const auto spanSurface = m_result.image.sectionBytes(surface);
        if (!QM_ASSERT_TEXT(spanSurface && surface.uSize == tile::surfaceSectionSize(0), mips.pReadAssertion))
            return false;
        if (!m_fnKnown || !m_fnKnown(uCell, mips, 0, *spanSurface))
            m_result.vecSurface.push_back({uCell, &mips, 0, surface, *spanSurface, {}});

        const tile::SectionGroupInfo& group = tile::sectionGroup(tile::SectionGroup::Clutter);
        const tile::Section clutter = tile::section(cellHeader, group, 0);
        const auto spanClutter = m_result.image.sectionBytes(clutter);
        if (!QM_ASSERT_TEXT(spanClutter && clutter.uSize <= s_uMaxClutter, group.pReadAssertion))
            return false;
        if (!m_fnKnown || !m_fnKnown(uCell, group, 0, *spanClutter))
            m_result.vecClutter.push_back({uCell, &group, 0, clutter, *spanClutter, {}});
        return true;
    }

    bool objects(size_t uCell, const tile::SectionGroupInfo& group, uint32_t uElement,
                 const tile::Section& section)
    {
        const uint32_t uVersion = m_result.image.header().version;
        const CellObjectProviderI* pProvider = m_providers[static_cast<size_t>(group.eGroup)];
        if (!tile::isPresent(group, section, uVersion))
            return true;
        if (pProvider && pProvider->losesRecords(uVersion))
            m_result.bForeignObjects = true;
        // Every record has at least a byte.
        const auto spanBytes = m_result.image.sectionBytes(section);
        if (!QM_ASSERT_TEXT(spanBytes && section.uCount <= section.uSize, group.pReadAssertion))
            return false;
        if (m_fnKnown && m_fnKnown(uCell, group, uElement, *spanBytes))
            return true;
        m_result.vecObjects.push_back({uCell, &group, uElement, section, *spanBytes, {}});
        return true;
    }

    CheckedImage& m_result;
    const ProviderTable& m_providers;
    const KnownSection& m_fnKnown;
};

// The content of an unpacked section, as far as its kind asks for one.
bool checkContent(const CheckedSection& checked, uint32_t uVersion, const ProviderTable& providers)
{
    const tile::SectionGroupInfo& group = *checked.pGroup;
    if (group.eGroup == tile::SectionGroup::Clutter)
        return QM_ASSERT_TEXT(tile::isClutterSection(checked.spanRaw, uVersion), group.pReadAssertion);
    const CellObjectProviderI* pProvider = providers[static_cast<size_t>(group.eGroup)];
    if (!group.isObjects() || !pProvider)
        return true;
    const size_t uReadSize = pProvider->checkRecords(checked.spanRaw, checked.section.uCount, uVersion);
    return QM_ASSERT_TEXT(uReadSize == checked.section.uSize, group.pReadAssertion);
}

} // namespace

std::optional<CheckedImage> checkTileImage(std::span<const std::byte> spanImage, std::string_view sPath,
                                           const ProviderTable& providers, const KnownSection& fnKnown)
{
    auto image = tile::TileImage::open(spanImage, sPath);
    if (!image)
        return std::nullopt;
    const tile::Header& header = image->header();
    const uint64_t uDataOffset =
        tile::CellHeadersOffset + uint64_t{image->cellCount()} * header.uCellHeaderSize;
    static_cast<void>(QM_ASSERT_TEXT(header.uCellHeadersOffset == tile::CellHeadersOffset,
                                     "brState.getBytesRead() == header.uCellHeadersOffset"));
    static_cast<void>(
        QM_ASSERT_TEXT(header.uDataOffset == uDataOffset, "brState.getBytesRead() == header.uDataOffset"));

    CheckedImage result{*image, {}, {}, {}, false, nullptr};
    Collector collector(result, providers, fnKnown);
    for (size_t uCell = 0; uCell < image->cellCount(); ++uCell)
        if (!collector.cell(uCell))
            return std::nullopt;

    std::vector<CheckedSection*> vecAll;
    vecAll.reserve(result.vecSurface.size() + result.vecClutter.size() + result.vecObjects.size());
    uint64_t uRawSize = 0;
    for (auto* pList : {&result.vecSurface, &result.vecClutter, &result.vecObjects})
        for (CheckedSection& checked : *pList)
        {
            uRawSize += checked.section.uSize;
            vecAll.push_back(&checked);
        }
    if (!QM_ASSERT_TEXT(uRawSize <= spanImage.size() * s_uMaxExpansion, "uDebugSize == uUncompressedSize"))
        return std::nullopt;
    result.pRaw.reset(static_cast<std::byte*>(std::malloc(std::max<size_t>(uRawSize, 1))));
    if (!result.pRaw)
    {
        QM_LOG_ERROR("Linear memory allocation failed (", uRawSize, " bytes) - ", UTILS::baseName(__FILE__),
                     ":", __LINE__);
        return std::nullopt;
    }
    size_t uPlace = 0;
    for (CheckedSection* pChecked : vecAll)
    {
        pChecked->spanRaw = {result.pRaw.get() + uPlace, pChecked->section.uSize};
        uPlace += pChecked->section.uSize;
    }

    std::atomic<bool> bGood = true;
    tbb::parallel_for(size_t{0}, vecAll.size(),
                      [&](size_t i)
                      {
                          if (!bGood)
                              return;
                          const CheckedSection& checked = *vecAll[i];
                          std::byte* pOut = result.pRaw.get() + (checked.spanRaw.data() - result.pRaw.get());
                          const bool bUnpacked = QM_ASSERT_TEXT(
                              lz4Decompress(checked.spanCompressed, {pOut, checked.section.uSize}),
                              "uDebugSize == uUncompressedSize");
                          if (!bUnpacked || !checkContent(checked, header.version, providers))
                              bGood = false;
                      });
    if (!bGood)
        return std::nullopt;
    return result;
}

} // namespace tilebuilder
