#include "interception/KeyRecordingSession.h"

#include "interception/EventTapManager.h"

namespace orvane {

KeyRecordingSession::KeyRecordingSession(EventSystem& events, EventTapManager& manager, QObject* parent)
    : QObject(parent), events_(events), manager_(manager) {}

KeyRecordingSession::~KeyRecordingSession() {
    if (recorder_) recorder_->stop();
}

void KeyRecordingSession::setAllowModifiers(bool allow) {
    if (allowModifiers_ == allow) return;
    allowModifiers_ = allow;
    emit allowModifiersChanged();
}

void KeyRecordingSession::setRecordedKey(std::optional<RecordedKey> key) {
    if (recordedKey_ == key) return;
    recordedKey_ = std::move(key);
    emit recordedKeyChanged();
}

void KeyRecordingSession::startRecording() {
    isRecording_ = true;
    emit isRecordingChanged();
    const bool wasRunning = manager_.isRunning();
    // Keys, Caps Lock included, must arrive as themselves while recording.
    if (wasRunning) manager_.stop();
    // Stopping waits for the HID tool with the event loop turning: the field may have ended the
    // recording meanwhile (its window closed), and then it resumes what it paused.
    if (!isRecording_) {
        if (wasRunning) manager_.start();
        return;
    }
    recorder_ = std::make_unique<KeyRecorder>(events_, allowModifiers_, wasRunning, [this](const RecordedKey& key) { onKeyRecorded(key); });
    recorder_->start();
}

void KeyRecordingSession::stopRecording() {
    const bool wasRunning = recorder_ && recorder_->wasMainTapRunning();
    const bool wasRecording = isRecording_;
    isRecording_ = false;
    if (wasRecording) emit isRecordingChanged();
    if (recorder_) {
        recorder_->stop();
        recorder_.reset();
    }
    if (wasRunning) manager_.start();
}

// Called inside the recorder's tap callback: the field updates after the event has been swallowed.
void KeyRecordingSession::onKeyRecorded(const RecordedKey& key) {
    QMetaObject::invokeMethod(
        this,
        [this, key] {
            setRecordedKey(key);
            emit keyRecorded(key);
            stopRecording();
        },
        Qt::QueuedConnection);
}

}  // namespace orvane
