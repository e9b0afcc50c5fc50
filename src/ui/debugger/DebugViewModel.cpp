#include "ui/debugger/DebugViewModel.h"

#include "interception/EventCapturer.h"
#include "interception/EventTapManager.h"
#include "store/MappingStore.h"
#include "ui/debugger/DebugEventText.h"
#include "ui/common/PermissionHelp.h"
#include "ui/debugger/DebugEventWords.h"

#include <QMetaObject>

namespace orvane {

DebugViewModel::DebugViewModel(QObject* parent)
    : DebugViewModel(EventSystem::shared(), MappingStore::shared(), EventTapManager::shared(), parent) {}

DebugViewModel::DebugViewModel(EventSystem& events, const MappingStore& store, const EventTapManager& manager, QObject* parent)
    : QAbstractListModel(parent), eventSystem_(events), store_(store), manager_(manager) {
    connect(&manager, &EventTapManager::isRunningChanged, this, [this] {
        if (isCapturing()) emit statusChanged();
    });
}

DebugViewModel::~DebugViewModel() {
    if (capturer_) capturer_->stop();
}

int DebugViewModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant DebugViewModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
    const DebugEvent& record = events_[static_cast<std::size_t>(index.row())];
    const auto optionalText = [](const std::optional<std::string>& text) {
        return text ? QString::fromStdString(*text) : QString();
    };
    switch (role) {
    case TimeRole: return debugtext::captureTimeText(record.timestamp);
    case DirectionRole: return debugtext::directionLabel(record);
    case ToneRole: return QVariant::fromValue(debugtext::badgeTone(record.event.type));
    case KeyCodeRole: return debugwords::hasKeyFields(record) ? QString::number(record.event.keyCode) : QString();
    case NxCodeRole: return record.event.auxKeyType ? QString::number(*record.event.auxKeyType) : QString();
    case DecodedRole: return optionalText(debugwords::decodedInfo(record));
    case InterceptionRole: {
        QString text = optionalText(debugwords::interceptionInfo(record));
        if (const auto role = debugwords::dualRoleInfo(record))
            text += (text.isEmpty() ? QString() : QStringLiteral("  \u00B7 ")) + QString::fromStdString(*role);
        return text;
    }
    case InterceptionActiveRole: return record.isInterceptionActive;
    case FlagsRole: return debugtext::shownFlagsText(record);
    default: return {};
    }
}

QHash<int, QByteArray> DebugViewModel::roleNames() const {
    return {
        {TimeRole, "time"},
        {DirectionRole, "direction"},
        {ToneRole, "tone"},
        {KeyCodeRole, "keyCode"},
        {NxCodeRole, "nxCode"},
        {DecodedRole, "decoded"},
        {InterceptionRole, "interception"},
        {InterceptionActiveRole, "interceptionActive"},
        {FlagsRole, "flagsText"},
    };
}

QString DebugViewModel::captureButtonText() const {
    return isCapturing() ? tr("Stop Capture") : tr("Start Capture");
}

void DebugViewModel::setAutoScroll(bool on) {
    if (autoScroll_ == on) return;
    autoScroll_ = on;
    emit autoScrollChanged();
}

void DebugViewModel::setFilterNoise(bool on) {
    if (filterNoise_ == on) return;
    filterNoise_ = on;
    emit filterNoiseChanged();
}

QString DebugViewModel::countText() const { return tr("%1 events").arg(count()); }

DebugViewModel::Status DebugViewModel::status() const {
    if (!isCapturing()) return Status::Instruction;
    return manager_.isRunning() ? Status::MappingsActive : Status::MappingsInactive;
}

QString DebugViewModel::statusText() const {
    switch (status()) {
    case Status::Instruction: return tr("Click 'Start Capture' then press any key to see its raw event data.");
    case Status::MappingsActive: return tr("Mappings active \u2013 events shown are post-remap");
    case Status::MappingsInactive: return tr("Mappings inactive \u2013 events shown are raw hardware");
    }
    return {};
}

QString DebugViewModel::statusIcon() const {
    switch (status()) {
    case Status::Instruction: return {};
    case Status::MappingsActive: return QStringLiteral("bolt.circle.fill");
    case Status::MappingsInactive: return QStringLiteral("circle");
    }
    return {};
}

void DebugViewModel::toggleCapture() {
    if (isCapturing())
        stopCapture();
    else
        startCapture();
}

QString DebugViewModel::permissionHelpTitle() const { return permission::helpButtonTitle(); }

void DebugViewModel::showPermissionHelp() { permission::showHelp(); }

void DebugViewModel::startCapture() {
    if (isCapturing()) return;
    const QString notice = permission::canListenToKeyboard() ? QString() : permission::missingText(tr("no key event can be captured"));
    if (notice != permissionNotice_) {
        permissionNotice_ = notice;
        emit permissionNoticeChanged();
    }
    if (!notice.isEmpty()) return;
    capturer_ = std::make_unique<EventCapturer>(
        eventSystem_, store_, manager_,
        [this](const DebugEvent& record) {
            // The tap callback must return promptly; the list changes on a later turn of the loop.
            QMetaObject::invokeMethod(this, [this, record] { addEvent(record); }, Qt::QueuedConnection);
        },
        [this] { return filterNoise_; });
    capturer_->start();
    emit isCapturingChanged();
    emit statusChanged();
}

void DebugViewModel::stopCapture() {
    if (!capturer_) return;
    capturer_->stop();
    capturer_.reset();
    emit isCapturingChanged();
    emit statusChanged();
}

void DebugViewModel::clear() {
    if (events_.empty()) return;
    const int before = count();
    beginResetModel();
    events_.clear();
    endResetModel();
    countMayHaveChanged(before);
}

void DebugViewModel::addEvent(const DebugEvent& record) {
    const int before = count();
    beginInsertRows(QModelIndex(), 0, 0);
    events_.push_front(record);
    endInsertRows();
    if (count() > maxDebugEvents) {
        beginRemoveRows(QModelIndex(), maxDebugEvents, count() - 1);
        events_.resize(maxDebugEvents);
        endRemoveRows();
    }
    countMayHaveChanged(before);
}

void DebugViewModel::countMayHaveChanged(int before) {
    if (count() == before) return;
    emit countChanged();
    if (autoScroll_ && count() > 0) emit scrollToNewest();
}

}  // namespace orvane
