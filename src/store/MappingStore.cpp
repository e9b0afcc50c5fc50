#include "store/MappingStore.h"

#include "model/MappingJson.h"
#include "platform/Diagnostics.h"
#include "platform/SharedInstance.h"

#include <algorithm>

namespace orvane {
namespace {

void print(const std::string& line) { diagnostics::printLine(line); }

}  // namespace

MappingStore::MappingStore(UserDefaults& defaults, HIDUtil hidUtil, QObject* parent)
    : QObject(parent), defaults_(defaults), capsLockDecisions_(std::move(hidUtil)) {
    connect(&capsLockDecisions_, &CapsLockDecisions::decided, this, &MappingStore::setCapsLockHIDState);
    loadMappings();
    table_.setCapsLockHIDState(defaults_.boolValue(hidRemapKey), defaults_.boolValue(hidRemapTypeKey));
    isInitialized_ = true;
    updateCapsLockHIDRemap();
}

MappingStore::~MappingStore() = default;

MappingStore& MappingStore::shared() {
    return SharedInstance<MappingStore>::get([] { return std::make_unique<MappingStore>(UserDefaults::shared(), HIDUtil()); });
}

void MappingStore::installShared(std::unique_ptr<MappingStore> store) { SharedInstance<MappingStore>::install(std::move(store)); }

std::chrono::milliseconds MappingStore::aloneTime() const {
    const double stored = defaults_.doubleValue(aloneTimeKey, 500);
    if (!(stored >= 0 && stored <= 10000)) return std::chrono::milliseconds(500);
    return std::chrono::milliseconds(static_cast<long>(stored));
}

void MappingStore::loadMappings() {
    const auto stored = defaults_.data(userDefaultsKey);
    if (!stored) {
        table_.assign({});
        return;
    }
    auto result = decodeMappings(std::string_view(stored->constData(), static_cast<std::size_t>(stored->size())));
    if (result.error) {
        // The undecodable bytes stay stored; the first save keeps them aside before replacing them.
        print("Failed to decode mappings: " + result.error->description());
        undecodable_ = *stored;
        wasUndecodable_ = true;
        table_.assign({});
        return;
    }
    table_.assign(std::move(result.mappings));
}

void MappingStore::saveMappings() {
    if (undecodable_) {
        // Never lost silently: without a copy aside, the stored list is left as it is.
        if (const auto failure = defaults_.setData(undecodableBackupKey, *undecodable_)) {
            print("Failed to save mappings: " + failure->toStdString());
            setSaveError(*failure);
            return;
        }
        print("MappingStore: Kept the undecodable mappings under " + undecodableBackupKey.toStdString());
        undecodable_.reset();
        emit storageStateChanged();
    }
    const std::string json = encodeMappings(table_.list());
    const auto failure = defaults_.setData(userDefaultsKey, QByteArray(json.data(), static_cast<qsizetype>(json.size())));
    if (failure) print("Failed to save mappings: " + failure->toStdString());
    setSaveError(failure.value_or(QString()));
}

void MappingStore::setSaveError(QString error) {
    if (error == saveError_) return;
    saveError_ = std::move(error);
    emit storageStateChanged();
}

void MappingStore::setMappings(std::vector<KeyMapping> mappings) {
    if (mappings != table_.list()) {
        undone_.push_back(table_.list());
        if (undone_.size() > undoLimit) undone_.erase(undone_.begin());
        const bool hadRedo = !redone_.empty();
        redone_.clear();
        if (undone_.size() == 1 || hadRedo) emit historyChanged();
    }
    table_.assign(std::move(mappings));
    mappingsDidChange();
}

void MappingStore::undo() {
    if (undone_.empty()) return;
    redone_.push_back(table_.list());
    table_.assign(std::move(undone_.back()));
    undone_.pop_back();
    emit historyChanged();
    mappingsDidChange();
}

void MappingStore::redo() {
    if (redone_.empty()) return;
    undone_.push_back(table_.list());
    table_.assign(std::move(redone_.back()));
    redone_.pop_back();
    emit historyChanged();
    mappingsDidChange();
}

void MappingStore::mappingsDidChange() {
    emit mappingsChanged();
    if (!isInitialized_) return;
    saveMappings();
    updateCapsLockHIDRemap();
}

void MappingStore::addMapping(const KeyMapping& mapping) {
    auto list = table_.list();
    list.push_back(mapping);
    setMappings(std::move(list));
}

void MappingStore::updateMapping(const KeyMapping& mapping) {
    auto list = table_.list();
    const auto found = std::find_if(list.begin(), list.end(), [&](const KeyMapping& m) { return m.id == mapping.id; });
    if (found == list.end()) return;
    *found = mapping;
    setMappings(std::move(list));
}

void MappingStore::deleteMapping(const Uuid& id) {
    auto list = table_.list();
    std::erase_if(list, [&](const KeyMapping& m) { return m.id == id; });
    setMappings(std::move(list));
}

void MappingStore::toggleMapping(const Uuid& id) {
    auto list = table_.list();
    const auto found = std::find_if(list.begin(), list.end(), [&](const KeyMapping& m) { return m.id == id; });
    if (found == list.end()) return;
    found->isEnabled = !found->isEnabled;
    setMappings(std::move(list));
}

void MappingStore::removeMappings(const std::set<std::size_t>& positions) {
    std::vector<KeyMapping> kept;
    const auto& list = table_.list();
    for (std::size_t i = 0; i < list.size(); ++i)
        if (!positions.count(i)) kept.push_back(list[i]);
    setMappings(std::move(kept));
}

void MappingStore::moveMappings(const std::set<std::size_t>& positions, std::size_t destination) {
    const auto& list = table_.list();
    destination = std::min(destination, list.size());
    std::vector<KeyMapping> moved, rest;
    std::size_t insertAt = destination;
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (positions.count(i)) {
            moved.push_back(list[i]);
            if (i < destination) --insertAt;
        } else {
            rest.push_back(list[i]);
        }
    }
    rest.insert(rest.begin() + static_cast<std::ptrdiff_t>(insertAt), moved.begin(), moved.end());
    setMappings(std::move(rest));
}

std::vector<KeyMapping> MappingStore::enabledMappings() const {
    std::vector<KeyMapping> enabled;
    for (const auto& m : table_.list())
        if (m.isEnabled) enabled.push_back(m);
    return enabled;
}

void MappingStore::updateCapsLockHIDRemap() {
    CapsLockDecisions::Input input;
    if (const KeyMapping* m = capsLockMapping()) input.capsLockMapping = *m;
    input.isCapsLockHIDRemapped = isCapsLockHIDRemapped();
    capsLockDecisions_.decide(input);
}

void MappingStore::setCapsLockHIDState(bool remapped, bool direct) {
    const bool remappedChanged = remapped != isCapsLockHIDRemapped();
    const bool directChanged = direct != isCapsLockDirectHID();
    table_.setCapsLockHIDState(remapped, direct);
    auto failure = defaults_.setBool(hidRemapKey, remapped);
    if (const auto second = defaults_.setBool(hidRemapTypeKey, direct); !failure) failure = second;
    if (failure) print("Failed to save the Caps Lock state: " + failure->toStdString());
    if (remappedChanged) emit isCapsLockHIDRemappedChanged();
    if (directChanged) emit isCapsLockDirectHIDChanged();
}

void MappingStore::waitForCapsLockDecisions() { capsLockDecisions_.waitUntilDone(); }

void MappingStore::beginQuit() { capsLockDecisions_.beginQuit(); }

void MappingStore::clearHIDRemapping() { capsLockDecisions_.clearRemapping(); }

}  // namespace orvane
