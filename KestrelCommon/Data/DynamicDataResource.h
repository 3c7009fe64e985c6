#pragma once // An open data file: its tree, what was saved, and its history.

#include "KestrelCommon/Data/DynamicData.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class DynamicDataManager;
class DynamicTemplate;

/// Made by the manager. Whoever edits the tree calls edited() after each change; the manager then takes
/// a snapshot when the file was left alone for a quarter of a second, which makes a run of
/// keystrokes one step.
///
/// Ownership: shared by those who show it; it outlives the manager only as a value.
/// Threads:   main thread.
class DynamicDataResource
{
public:
    static constexpr size_t s_uHistory = 100;
    static constexpr uint32_t s_uMaxUndo = 99;
    static constexpr uint64_t s_uSnapshotDelay = 250; ///< milliseconds without an edit
    static constexpr uint64_t s_uNotifyDelay = 16;    ///< milliseconds between notifications

    using Callback = std::function<void(DynamicDataResource&)>;

    DynamicDataResource(DynamicDataManager& manager, const DynamicTemplate* pTemplate, std::string sPath,
                        DynamicData::Value tree);

    /// Null for a file that no template fits.
    [[nodiscard]] const DynamicTemplate* getTemplate() const { return m_pTemplate; }
    /// Keyed; empty for a new one.
    [[nodiscard]] const std::string& path() const { return m_sPath; }
    [[nodiscard]] DynamicData::Value& tree() { return m_tree; }
    [[nodiscard]] const DynamicData::Value& tree() const { return m_tree; }
    /// The tree as last saved or loaded.
    [[nodiscard]] const DynamicData::Value& baseline() const { return m_baseline; }
    [[nodiscard]] bool isUnsaved() const;

    /// The tree was changed: a snapshot and a notification are owed.
    void edited();

    // History

    /// Keeps the tree as a step when its text differs from the last; redo steps then go. With reset
    /// the history starts anew.
    void snapshot(bool bReset);
    void undo();
    void redo();
    [[nodiscard]] uint32_t undoCount() const { return m_uUndoCount; }
    [[nodiscard]] uint32_t redoCount() const { return m_uRedoCount; }
    /// Compressed bytes of all steps.
    [[nodiscard]] size_t historyBytes() const;

    // Listeners

    /// Called after each change. The number takes the callback back.
    size_t addCallback(Callback fnCallback);
    void removeCallback(size_t uNumber);
    /// Runs the callbacks, which may add and remove some.
    void notify();

private:
    friend class DynamicDataManager;

    struct Step
    {
        std::vector<std::byte> vecCompressed;
        uint32_t uUncompressedSize = 0;
        uint64_t uTextHash = 0;
    };

    void update(uint64_t uNow);
    void restore();
    void markSaved();
    [[nodiscard]] Step& current() { return m_arrHistory[m_uPosition % s_uHistory]; }

    DynamicDataManager* m_pManager; ///< null when the manager is gone
    const DynamicTemplate* m_pTemplate;
    std::string m_sPath;
    DynamicData::Value m_tree;
    DynamicData::Value m_baseline;
    std::array<Step, s_uHistory> m_arrHistory;
    uint64_t m_uPosition = 0;
    uint32_t m_uUndoCount = 0;
    uint32_t m_uRedoCount = 0;
    uint64_t m_uStepTreeHash = 0; ///< of the tree that the step in use was made of or restored to
    bool m_bHasStep = false;
    bool m_bSnapshotOwed = false;
    uint64_t m_uLastChange = 0; ///< milliseconds
    bool m_bNotifyOwed = false;
    uint64_t m_uLastNotify = 0;
    std::vector<std::pair<size_t, Callback>> m_vecCallbacks;
    size_t m_uNextCallback = 1;
};
