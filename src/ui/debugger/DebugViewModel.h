// The key event debugger's state: the capture, the captured records (newest first) and the status line.
#pragma once

#include "interception/DebugEvent.h"
#include "platform/EventSystem.h"

#include <QAbstractListModel>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <deque>
#include <memory>

namespace orvane {

class EventCapturer;
class EventTapManager;
class MappingStore;

// Main thread only. Each capture runs its own EventCapturer; its records reach the list through
// the main event queue, never from inside the tap callback. Nothing here is saved: the records
// live as long as this object (the window keeps it across closing and reopening).
class DebugViewModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isCapturing READ isCapturing NOTIFY isCapturingChanged)
    Q_PROPERTY(QString captureButtonText READ captureButtonText NOTIFY isCapturingChanged)
    Q_PROPERTY(bool autoScroll READ autoScroll WRITE setAutoScroll NOTIFY autoScrollChanged)
    Q_PROPERTY(bool filterNoise READ filterNoise WRITE setFilterNoise NOTIFY filterNoiseChanged)
    Q_PROPERTY(int count READ count NOTIFY countChanged)
    Q_PROPERTY(QString countText READ countText NOTIFY countChanged)
    Q_PROPERTY(Status status READ status NOTIFY statusChanged)
    Q_PROPERTY(QString statusText READ statusText NOTIFY statusChanged)
    Q_PROPERTY(QString statusIcon READ statusIcon NOTIFY statusChanged)
    Q_PROPERTY(QString permissionNotice READ permissionNotice NOTIFY permissionNoticeChanged)
    Q_PROPERTY(QString permissionHelpTitle READ permissionHelpTitle CONSTANT)

public:
    static constexpr int maxDebugEvents = 100;

    // Idle shows the instruction; while capturing, whether the main tap remaps what is seen.
    enum class Status { Instruction, MappingsActive, MappingsInactive };
    Q_ENUM(Status)

    enum Role {
        TimeRole = Qt::UserRole + 1,
        DirectionRole,
        ToneRole,
        KeyCodeRole,     // decimal, or empty
        NxCodeRole,      // decimal for media key events, or empty
        DecodedRole,
        InterceptionRole,
        InterceptionActiveRole,
        FlagsRole,       // empty when not shown
    };

    // Over the process-wide event system, store and tap manager.
    explicit DebugViewModel(QObject* parent = nullptr);
    DebugViewModel(EventSystem& events, const MappingStore& store, const EventTapManager& manager, QObject* parent = nullptr);
    ~DebugViewModel() override;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    bool isCapturing() const { return capturer_ != nullptr; }
    QString captureButtonText() const;
    bool autoScroll() const { return autoScroll_; }
    void setAutoScroll(bool on);
    bool filterNoise() const { return filterNoise_; }
    void setFilterNoise(bool on);
    int count() const { return static_cast<int>(events_.size()); }
    QString countText() const;
    Status status() const;
    QString statusText() const;
    QString statusIcon() const;

    const std::deque<DebugEvent>& events() const { return events_; }

    // Why the latest start captured nothing: Orvane may not read the keyboard. Empty otherwise.
    QString permissionNotice() const { return permissionNotice_; }
    QString permissionHelpTitle() const;
    Q_INVOKABLE void showPermissionHelp();

    Q_INVOKABLE void toggleCapture();
    // A capture whose tap cannot be created still counts as running; no record arrives. Without the
    // permission to read the keyboard no capture starts and permissionNotice says why.
    Q_INVOKABLE void startCapture();
    // Keeps the records; records already queued by the capture still arrive.
    Q_INVOKABLE void stopCapture();
    // Empties the list; a running capture goes on.
    Q_INVOKABLE void clear();

    // Puts the record at the top, dropping the oldest beyond maxDebugEvents.
    void addEvent(const DebugEvent& record);

signals:
    void isCapturingChanged();
    void autoScrollChanged();
    void filterNoiseChanged();
    void countChanged();
    void statusChanged();
    void permissionNoticeChanged();
    // The number of records changed while auto-scroll is on and records remain: show the newest.
    // A full list keeps its count, so arrivals then no longer ask for scrolling.
    void scrollToNewest();

private:
    void countMayHaveChanged(int before);

    EventSystem& eventSystem_;
    const MappingStore& store_;
    const EventTapManager& manager_;
    std::deque<DebugEvent> events_;
    std::unique_ptr<EventCapturer> capturer_;
    bool autoScroll_ = true;
    bool filterNoise_ = true;
    QString permissionNotice_;
};

}  // namespace orvane
