// The recording logic of a key recorder field: pause the main tap, record one key, resume.
#pragma once

#include "interception/KeyRecorder.h"

#include <QObject>

#include <memory>
#include <optional>

namespace orvane {

class EventTapManager;

// Main thread only. A recorder is never reused: each recording makes a new one.
class KeyRecordingSession : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY isRecordingChanged)
    Q_PROPERTY(bool allowModifiers READ allowModifiers WRITE setAllowModifiers NOTIFY allowModifiersChanged)

public:
    KeyRecordingSession(EventSystem& events, EventTapManager& manager, QObject* parent = nullptr);
    ~KeyRecordingSession() override;

    bool isRecording() const { return isRecording_; }
    bool allowModifiers() const { return allowModifiers_; }
    void setAllowModifiers(bool allow);
    // The value the field holds: the last key recorded (or set by the owner).
    const std::optional<RecordedKey>& recordedKey() const { return recordedKey_; }
    void setRecordedKey(std::optional<RecordedKey> key);

    // Stops the main tap if it runs (clearing Caps Lock's HID remapping) and records.
    Q_INVOKABLE void startRecording();
    // Ends the recording and restarts the main tap if it had been running.
    Q_INVOKABLE void stopRecording();

signals:
    void isRecordingChanged();
    void allowModifiersChanged();
    void recordedKeyChanged();
    // A key was recorded (before the recording stops).
    void keyRecorded(const orvane::RecordedKey& key);

private:
    void onKeyRecorded(const RecordedKey& key);

    EventSystem& events_;
    EventTapManager& manager_;
    bool isRecording_ = false;
    bool allowModifiers_ = false;
    std::optional<RecordedKey> recordedKey_;
    std::unique_ptr<KeyRecorder> recorder_;
};

}  // namespace orvane
