#include "ui/mappings/AddMappingController.h"

#include "interception/EventTapManager.h"
#include "store/MappingStore.h"

namespace orvane {

AddMappingController::AddMappingController(MappingStore& store, EventSystem& events, EventTapManager& manager,
                                           std::optional<KeyMapping> existing, QObject* parent)
    : QObject(parent),
      store_(store),
      existing_(std::move(existing)),
      sourceField_(events, manager, false, QStringLiteral("Press the key to remap..."), this),
      targetField_(events, manager, true, QStringLiteral("Press target key or combination..."), this),
      aloneField_(events, manager, false, QStringLiteral("Optional: key to send when tapped alone"), this) {
    if (existing_) {
        sourceField_.setRecordedKey(RecordedKey{existing_->sourceKey, {}});
        const TargetAction& action = existing_->targetAction;
        switch (action.kind()) {
        case TargetAction::Kind::block:
            targetType_ = Block;
            break;
        case TargetAction::Kind::key:
        case TargetAction::Kind::combination:
            targetField_.setRecordedKey(RecordedKey{SourceKey::regular(action.keyCode()), action.modifiers()});
            break;
        case TargetAction::Kind::modifiers:
            targetField_.setModifiersOnly(action.modifiers());
            break;
        }
        if (existing_->aloneKey) aloneField_.setRecordedKey(RecordedKey{SourceKey::regular(*existing_->aloneKey), {}});
    }
    connect(&sourceField_, &KeyRecorderField::changed, this, &AddMappingController::updateCanSave);
    connect(&targetField_, &KeyRecorderField::changed, this, &AddMappingController::updateCanSave);
    canSave_ = canSave();
}

AddMappingController::AddMappingController(std::optional<KeyMapping> existing, QObject* parent)
    : AddMappingController(MappingStore::shared(), EventSystem::shared(), EventTapManager::shared(), std::move(existing),
                           parent) {}

QString AddMappingController::title() const {
    return isEditing() ? QStringLiteral("Edit Mapping") : QStringLiteral("New Mapping");
}

QString AddMappingController::primaryTitle() const {
    return isEditing() ? QStringLiteral("Save Changes") : QStringLiteral("Add Mapping");
}

QStringList AddMappingController::targetTypeTitles() { return {QStringLiteral("Block"), QStringLiteral("Remap")}; }

void AddMappingController::setTargetType(TargetType type) {
    if (type == targetType_) return;
    targetType_ = type;
    emit targetTypeChanged();
    updateCanSave();
}

bool AddMappingController::canSave() const {
    if (!sourceField_.recordedKey()) return false;
    return targetType_ == Block || targetField_.hasKey();
}

void AddMappingController::updateCanSave() {
    const bool now = canSave();
    if (now == canSave_) return;
    canSave_ = now;
    emit canSaveChanged();
}

bool AddMappingController::saveMapping() {
    const auto& source = sourceField_.recordedKey();
    if (!source) return false;
    TargetAction action = TargetAction::block();
    if (targetType_ == Remap && targetField_.modifiersOnly()) {
        action = TargetAction::modifiersOnly(*targetField_.modifiersOnly());
    } else if (targetType_ == Remap) {
        const auto& target = targetField_.recordedKey();
        if (!target || !target->sourceKey.isRegular()) return false;
        const KeyCode key = target->sourceKey.keyCode();
        action = target->modifiers.isEmpty() ? TargetAction::key(key) : TargetAction::combination(key, target->modifiers);
    }
    std::optional<KeyCode> alone;
    if (const auto& key = aloneField_.recordedKey()) {
        if (!key->sourceKey.isRegular()) return false;
        alone = key->sourceKey.keyCode();
    }
    // The source field records no modifiers, and a source has none: only its key counts.
    if (existing_) {
        KeyMapping edited = *existing_;
        edited.sourceKey = source->sourceKey;
        edited.targetAction = action;
        edited.aloneKey = alone;
        store_.updateMapping(edited);
    } else {
        store_.addMapping(KeyMapping{Uuid::random(), source->sourceKey, action, true, alone});
    }
    return true;
}

void AddMappingController::save() {
    saveMapping();
    dismiss();
}

void AddMappingController::cancel() { dismiss(); }

// Ends a recording at once, so that the main tap is back before the sheet's objects go.
void AddMappingController::dismiss() {
    sourceField_.stopRecording();
    targetField_.stopRecording();
    aloneField_.stopRecording();
    emit dismissed();
}

}  // namespace orvane
