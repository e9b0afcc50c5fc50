// The state of one key recorder field: the chosen key, recording through the keyboard, picking, clearing.
#pragma once

#include "interception/KeyRecordingSession.h"

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace orvane {

// Main thread only. Recording pauses the main tap (and so clears Caps Lock's HID remapping) and
// resumes it afterwards; the QML field calls stopRecording() when it leaves the screen.
class KeyRecorderField : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("A recorder field is made by the view that owns it")
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(bool hasKey READ hasKey NOTIFY changed)
    Q_PROPERTY(bool isRecording READ isRecording NOTIFY changed)
    Q_PROPERTY(bool allowModifiers READ allowModifiers CONSTANT)
    Q_PROPERTY(QString placeholder READ placeholder CONSTANT)
    Q_PROPERTY(QString problem READ problem NOTIFY changed)
    Q_PROPERTY(QString permissionHelpTitle READ permissionHelpTitle CONSTANT)

public:
    // Over the process-wide event system and tap manager.
    KeyRecorderField(bool allowModifiers, QString placeholder, QObject* parent = nullptr);
    KeyRecorderField(EventSystem& events, EventTapManager& manager, bool allowModifiers, QString placeholder,
                     QObject* parent = nullptr);
    ~KeyRecorderField() override;

    // "Press any key..." while recording, else the chosen key's or modifiers' label, else the placeholder.
    QString text() const;
    // A key, or modifiers alone, is chosen.
    bool hasKey() const { return session_.recordedKey().has_value() || modifiersOnly_.has_value(); }
    bool isRecording() const { return session_.isRecording(); }
    bool allowModifiers() const { return session_.allowModifiers(); }
    QString placeholder() const { return placeholder_; }

    const std::optional<RecordedKey>& recordedKey() const { return session_.recordedKey(); }
    // Choosing a key drops modifiers chosen alone, and the other way round.
    void setRecordedKey(std::optional<RecordedKey> key);
    // Modifiers chosen with no key (only where the field allows modifiers, and at least one of them).
    const std::optional<Modifiers>& modifiersOnly() const { return modifiersOnly_; }
    void setModifiersOnly(Modifiers modifiers);

    // Why the latest Record did not start (Orvane may not read the keyboard); empty once a key is
    // chosen, cleared or recording starts.
    QString problem() const { return problem_; }
    QString permissionHelpTitle() const;
    Q_INVOKABLE void showPermissionHelp();

    Q_INVOKABLE void toggleRecording();
    Q_INVOKABLE void stopRecording();
    Q_INVOKABLE void clear();
    // A key chosen in the picker; the modifiers count only where the field allows them.
    Q_INVOKABLE void pick(int keyCode, bool command, bool option, bool control, bool shift);

signals:
    void changed();

private:
    void setProblem(QString problem);

    KeyRecordingSession session_;
    QString problem_;
    QString placeholder_;
    std::optional<Modifiers> modifiersOnly_;
};

}  // namespace orvane
