#include "ui/recorder/KeyRecorderField.h"

#include "interception/EventTapManager.h"

namespace orvane {

KeyRecorderField::KeyRecorderField(bool allowModifiers, QString placeholder, QObject* parent)
    : KeyRecorderField(EventSystem::shared(), EventTapManager::shared(), allowModifiers, std::move(placeholder), parent) {}

KeyRecorderField::KeyRecorderField(EventSystem& events, EventTapManager& manager, bool allowModifiers, QString placeholder,
                                   QObject* parent)
    : QObject(parent), session_(events, manager), placeholder_(std::move(placeholder)) {
    session_.setAllowModifiers(allowModifiers);
    connect(&session_, &KeyRecordingSession::isRecordingChanged, this, &KeyRecorderField::changed);
    connect(&session_, &KeyRecordingSession::recordedKeyChanged, this, [this] {
        if (session_.recordedKey()) modifiersOnly_.reset();
        emit changed();
    });
}

// A field that goes away mid-recording must hand the main tap back.
KeyRecorderField::~KeyRecorderField() { session_.stopRecording(); }

QString KeyRecorderField::text() const {
    if (isRecording()) return QStringLiteral("Press any key...");
    if (const auto& key = recordedKey()) return QString::fromStdString(key->label());
    if (modifiersOnly_) return QString::fromStdString(modifiersOnly_->modifierSymbols());
    return placeholder_;
}

void KeyRecorderField::setModifiersOnly(Modifiers modifiers) {
    if (!allowModifiers() || modifiers.isEmpty() || modifiersOnly_ == modifiers) return;
    session_.setRecordedKey(std::nullopt);
    modifiersOnly_ = modifiers;
    emit changed();
}

void KeyRecorderField::clear() {
    const bool hadModifiers = modifiersOnly_.has_value();
    modifiersOnly_.reset();
    session_.setRecordedKey(std::nullopt);
    if (hadModifiers) emit changed();
}

void KeyRecorderField::toggleRecording() {
    if (isRecording()) session_.stopRecording();
    else session_.startRecording();
}

void KeyRecorderField::stopRecording() {
    if (isRecording()) session_.stopRecording();
}

void KeyRecorderField::pick(int keyCode, bool command, bool option, bool control, bool shift) {
    const auto key = keyCodeFromRaw(keyCode);
    if (!key) return;
    const bool allow = allowModifiers();
    setRecordedKey(RecordedKey{SourceKey::regular(*key), Modifiers{allow && command, allow && option, allow && control, allow && shift}});
}

}  // namespace orvane
