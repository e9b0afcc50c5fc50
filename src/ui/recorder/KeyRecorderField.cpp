#include "ui/recorder/KeyRecorderField.h"

#include "interception/EventTapManager.h"
#include "ui/common/PermissionHelp.h"

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

void KeyRecorderField::setRecordedKey(std::optional<RecordedKey> key) {
    setProblem({});
    session_.setRecordedKey(std::move(key));
}

void KeyRecorderField::setProblem(QString problem) {
    if (problem == problem_) return;
    problem_ = std::move(problem);
    emit changed();
}

QString KeyRecorderField::permissionHelpTitle() const { return permission::helpButtonTitle(); }

void KeyRecorderField::showPermissionHelp() { permission::showHelp(); }

void KeyRecorderField::setModifiersOnly(Modifiers modifiers) {
    if (!allowModifiers() || modifiers.isEmpty() || modifiersOnly_ == modifiers) return;
    setRecordedKey(std::nullopt);
    modifiersOnly_ = modifiers;
    emit changed();
}

void KeyRecorderField::clear() {
    const bool hadModifiers = modifiersOnly_.has_value();
    modifiersOnly_.reset();
    setRecordedKey(std::nullopt);
    if (hadModifiers) emit changed();
}

// Without the permission a recording would wait for a key that never comes.
void KeyRecorderField::toggleRecording() {
    if (isRecording()) {
        session_.stopRecording();
    } else if (!permission::canReadKeyboard()) {
        setProblem(permission::missingText(tr("it cannot record a key; pick one instead")));
    } else {
        setProblem({});
        session_.startRecording();
    }
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
