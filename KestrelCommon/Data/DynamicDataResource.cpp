#include "KestrelCommon/Data/DynamicDataResource.h"

#include "KestrelCommon/Core/Assert.h"
#include "KestrelCommon/Core/Console.h"
#include "KestrelCommon/Core/Hash.h"
#include "KestrelCommon/Data/DynamicDataManager.h"
#include "KestrelCommon/Data/JsonFile.h"
#include "KestrelCommon/Data/JsonText.h"
#include "KestrelCommon/Io/Lz4Section.h"

#include <json/value.h>

DynamicDataResource::DynamicDataResource(DynamicDataManager& manager, const DynamicTemplate* pTemplate,
                                         std::string sPath, DynamicData::Value tree)
    : m_pManager(&manager),
      m_pTemplate(pTemplate),
      m_sPath(std::move(sPath)),
      m_tree(std::move(tree)),
      m_baseline(m_tree.clone())
{
    snapshot(true);
}

bool DynamicDataResource::isUnsaved() const
{
    return m_tree.hash(0) != m_baseline.hash(0);
}

void DynamicDataResource::edited()
{
    m_bSnapshotOwed = true;
    m_bNotifyOwed = true;
    if (m_pManager)
        m_uLastChange = m_pManager->now();
}

void DynamicDataResource::snapshot(bool bReset)
{
    if (!m_pManager)
        return;
    // Equal trees give equal texts, and hashing one costs far less than writing it.
    const uint64_t uTreeHash = m_tree.hash(0);
    if (!bReset && m_bHasStep && uTreeHash == m_uStepTreeHash)
    {
        m_bSnapshotOwed = false;
        return;
    }
    Json::Value jTree;
    m_pManager->write(m_pTemplate, m_tree, jTree);
    const std::string sText = writeJsonText(jTree, JsonStyle::Compact);
    const uint64_t uTextHash = xxh3(sText);
    m_uStepTreeHash = uTreeHash;
    if (!bReset && m_bHasStep && current().uTextHash == uTextHash)
    {
        m_bSnapshotOwed = false;
        return;
    }
    ResizeableBuffer buffer(4096);
    const auto spanText = std::as_bytes(std::span(sText));
    const auto spanCompressed = lz4Compress(spanText, Lz4Quality::Fast, buffer);
    if (spanCompressed.empty())
    {
        QM_LOG_ERROR("A step of '", m_sPath, "' can't be kept, its text has ", sText.size(), " bytes");
        return;
    }
    if (bReset)
    {
        m_uPosition = 0;
        m_uUndoCount = 0;
    }
    else
    {
        ++m_uPosition;
        m_uUndoCount = std::min(m_uUndoCount + 1, s_uMaxUndo);
    }
    m_uRedoCount = 0;
    current() = {
        {spanCompressed.begin(), spanCompressed.end()}, static_cast<uint32_t>(sText.size()), uTextHash};
    m_bHasStep = true;
    m_bSnapshotOwed = false;
    notify();
}

void DynamicDataResource::undo()
{
    if (m_uUndoCount == 0)
        return;
    if (m_bSnapshotOwed)
        snapshot(false);
    --m_uPosition;
    --m_uUndoCount;
    ++m_uRedoCount;
    restore();
}

void DynamicDataResource::redo()
{
    if (m_uRedoCount > 0 && m_bSnapshotOwed)
        snapshot(false); // after an edit there is nothing left to redo
    if (m_uRedoCount == 0)
        return;
    ++m_uPosition;
    ++m_uUndoCount;
    --m_uRedoCount;
    restore();
}

void DynamicDataResource::restore()
{
    if (!m_pManager)
        return;
    const Step& step = current();
    const std::byte* pCompressed = step.vecCompressed.data();
    std::string sText(step.uUncompressedSize, '\0');
    if (!QM_ASSERT(pCompressed))
        return;
    if (!QM_ASSERT_TEXT(lz4Decompress(step.vecCompressed, std::as_writable_bytes(std::span(sText))),
                        "uDebugSize == uUncompressedSize"))
        return;
    std::string sError;
    const auto jTree = parseJson(sText, sError);
    if (!jTree)
    {
        QM_LOG_ERROR("A step of '", m_sPath, "' can't be read: ", sError);
        return;
    }
    m_tree.reset();
    m_pManager->read(m_tree, *jTree, m_pTemplate);
    m_uStepTreeHash = m_tree.hash(0);
    m_bSnapshotOwed = false;
    notify();
}

size_t DynamicDataResource::historyBytes() const
{
    size_t uBytes = 0;
    for (const Step& step : m_arrHistory)
        uBytes += step.vecCompressed.size();
    return uBytes;
}

size_t DynamicDataResource::addCallback(Callback fnCallback)
{
    m_vecCallbacks.emplace_back(m_uNextCallback, std::move(fnCallback));
    return m_uNextCallback++;
}

void DynamicDataResource::removeCallback(size_t uNumber)
{
    std::erase_if(m_vecCallbacks, [uNumber](const auto& entry) { return entry.first == uNumber; });
}

void DynamicDataResource::notify()
{
    m_bNotifyOwed = false;
    if (m_pManager)
        m_uLastNotify = m_pManager->now();
    const auto vecCallbacks = m_vecCallbacks;
    for (const auto& entry : vecCallbacks)
    {
        const bool bStill = std::ranges::any_of(m_vecCallbacks, [&entry](const auto& other)
                                                { return other.first == entry.first; });
        if (bStill)
            entry.second(*this);
    }
}

void DynamicDataResource::update(uint64_t uNow)
{
    if (m_bSnapshotOwed && uNow - m_uLastChange > s_uSnapshotDelay)
        snapshot(false);
    if (m_bNotifyOwed && uNow - m_uLastNotify > s_uNotifyDelay)
        notify();
}

void DynamicDataResource::markSaved()
{
    m_baseline = m_tree.clone();
    notify();
}
