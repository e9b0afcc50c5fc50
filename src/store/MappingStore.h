// The user's ordered mapping list: persistence, change signals, the engine's lookups and Caps Lock at the HID layer.
#pragma once

#include "model/IndexedMappings.h"
#include "store/CapsLockDecisions.h"
#include "store/UserDefaults.h"

#include <QByteArray>
#include <QObject>

#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <vector>

namespace orvane {

// Lives on the main thread: every operation, lookup and signal happens there. Only the Caps Lock
// decision runs on a background worker (CapsLockDecisions), fed with a snapshot taken when it is queued.
class MappingStore : public QObject, public MappingLookup {
    Q_OBJECT
    Q_PROPERTY(bool isCapsLockHIDRemapped READ isCapsLockHIDRemapped NOTIFY isCapsLockHIDRemappedChanged)
    Q_PROPERTY(bool isCapsLockDirectHID READ isCapsLockDirectHID NOTIFY isCapsLockDirectHIDChanged)

public:
    static inline const QString userDefaultsKey = QStringLiteral("Orvane.Mappings");
    static inline const QString hidRemapKey = QStringLiteral("Orvane.CapsLockHIDRemapped");
    static inline const QString hidRemapTypeKey = QStringLiteral("Orvane.CapsLockHIDRemapType");
    // Where a stored list that could not be decoded is kept before the first save replaces it.
    static inline const QString undecodableBackupKey = QStringLiteral("Orvane.Mappings.Undecodable");
    // Milliseconds within which a key with two roles pressed and released alone taps its alone key.
    static inline const QString aloneTimeKey = QStringLiteral("Orvane.AloneTime");

    // Loads the list and the stored Caps Lock flags, then queues the first Caps Lock decision.
    MappingStore(UserDefaults& defaults, HIDUtil hidUtil, QObject* parent = nullptr);
    ~MappingStore() override;

    // The process-wide store, created on first use over the shared user defaults and the real tool.
    static MappingStore& shared();
    // Tests and tools install their own before first use.
    static void installShared(std::unique_ptr<MappingStore> store);

    const std::vector<KeyMapping>& mappings() const { return table_.list(); }
    // Every assignment saves the whole list and re-decides Caps Lock.
    void setMappings(std::vector<KeyMapping> mappings);
    void addMapping(const KeyMapping& mapping);
    // Replaces the first mapping with that id; unknown ids change nothing.
    void updateMapping(const KeyMapping& mapping);
    // Removes every mapping with that id; counts as a change even when none was there.
    void deleteMapping(const Uuid& id);
    void toggleMapping(const Uuid& id);
    void removeMappings(const std::set<std::size_t>& positions);
    // Moves the rows at the positions, in their order, to stand before the row that was at
    // destination (0…count; count means the end).
    void moveMappings(const std::set<std::size_t>& positions, std::size_t destination);

    const KeyMapping* mappingForKey(KeyCode key) const override { return table_.mappingForKey(key); }
    const KeyMapping* mappingForSystemKey(SystemKeyID key) const override { return table_.mappingForSystemKey(key); }
    bool isCapsLockHIDRemapped() const override { return table_.isCapsLockHIDRemapped(); }
    bool isCapsLockDirectHID() const override { return table_.isCapsLockDirectHID(); }
    std::vector<KeyMapping> enabledMappings() const;
    // The stored alone time, read afresh; 500 ms when absent or not a time from 0 to 10 s.
    std::chrono::milliseconds aloneTime() const;

    // Every change of the list can be undone, and what was undone redone until the next change.
    // The latest undoLimit changes are kept; a change that leaves the list as it was is none.
    static constexpr std::size_t undoLimit = 100;
    bool canUndo() const { return !undone_.empty(); }
    bool canRedo() const { return !redone_.empty(); }
    void undo();
    void redo();

    // Why the latest save failed; empty once one works. The list in memory is then newer than storage.
    const QString& saveError() const { return saveError_; }
    // The stored list could not be read at start (the list is then empty). Its bytes stay where they
    // were until the first save, which keeps them under undecodableBackupKey first.
    bool wasUndecodable() const { return wasUndecodable_; }
    bool isUndecodableKeptAside() const { return wasUndecodable_ && !undecodable_; }
    // Where the settings live (a file, or the system's name for the database).
    QString storageLocation() const { return defaults_.location(); }

    // Queues the Caps Lock decision and returns at once.
    void updateCapsLockHIDRemap();
    void setCapsLockHIDState(bool remapped, bool direct);
    // Blocks until queued decisions have run, then applies their results on this (main) thread.
    void waitForCapsLockDecisions();
    // Takes Caps Lock's remapping out of the HID layer after the decisions already queued, and
    // returns once that is done. Meanwhile the event loop runs (user input held back), so a slow
    // tool never freezes the windows; once quitting it simply blocks.
    void clearHIDRemapping();
    // Quitting: queued decisions are dropped, a running one is ended, none is queued any more, and
    // every clear from now on shares one tool time-out, so a hung tool is waited for only once.
    void beginQuit();

    const HIDUtil& hidUtil() const { return capsLockDecisions_.hidUtil(); }

signals:
    void mappingsChanged();
    void isCapsLockHIDRemappedChanged();
    void isCapsLockDirectHIDChanged();
    // canUndo() or canRedo() may have changed.
    void historyChanged();
    // saveError() or isUndecodableKeptAside() changed.
    void storageStateChanged();

private:
    void loadMappings();
    void saveMappings();
    void mappingsDidChange();
    void setSaveError(QString error);

    using History = std::vector<std::vector<KeyMapping>>;

    UserDefaults& defaults_;
    IndexedMappings table_;
    // The stored bytes that failed to decode at load, until they are kept aside.
    std::optional<QByteArray> undecodable_;
    bool wasUndecodable_ = false;
    QString saveError_;
    History undone_;  // the lists before each change, latest last
    History redone_;  // the lists before each undo, latest last
    bool isInitialized_ = false;
    CapsLockDecisions capsLockDecisions_;  // declared last: its worker finishes before the rest goes
};

}  // namespace orvane
