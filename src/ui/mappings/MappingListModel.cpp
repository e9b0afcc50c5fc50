#include "ui/mappings/MappingListModel.h"

#include "interception/EventTapManager.h"
#include "platform/DesktopWords.h"
#include "store/MappingStore.h"
#include "ui/common/PermissionHelp.h"
#include "ui/mappings/RemapMethod.h"

#include <QKeySequence>

#include <algorithm>
#include <utility>
#include <set>

namespace orvane {
namespace {

QString idText(const Uuid& id) { return QString::fromStdString(id.toString()); }

QString fromUtf8View(std::string_view utf8) { return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())); }

// One keycap per set modifier in the order ⌃ ⌥ ⇧ ⌘, then the key (none for modifiers alone).
QStringList targetKeycaps(const TargetAction& action) {
    QStringList caps;
    if (action.kind() == TargetAction::Kind::block) return caps;
    for (char32_t glyph : QString::fromStdString(action.modifiers().modifierSymbols()).toUcs4())
        caps.append(QString::fromUcs4(&glyph, 1));
    if (action.hasKey()) caps.append(fromUtf8View(symbol(action.keyCode())));
    return caps;
}

// The catalogue names the modifier keys in a Mac's words ("Left Option"); the desktop's replace them.
QString keyName(KeyCode key) {
    QString name = fromUtf8View(displayName(key));
    if (!isModifierKey(key)) return name;
    const auto& macNames = DesktopWords::mac().modifierNames;
    const auto& names = DesktopWords::shared().modifierNames;
    for (std::size_t i = 0; i < names.size(); ++i) name.replace(macNames[i], names[i]);
    return name;
}

QString sourceName(const SourceKey& key) { return key.isRegular() ? keyName(key.keyCode()) : fromUtf8View(displayName(key.systemKey())); }

// Parallel to targetKeycaps: the desktop's full name of each.
QStringList targetKeyNames(const TargetAction& action) {
    QStringList names;
    if (action.kind() == TargetAction::Kind::block) return names;
    const Modifiers& held = action.modifiers();
    const bool isSet[] = {held.control, held.option, held.shift, held.command};  // the order of modifierNames
    for (std::size_t i = 0; i < 4; ++i)
        if (isSet[i]) names.append(DesktopWords::shared().modifierNames[i]);
    if (action.hasKey()) names.append(keyName(action.keyCode()));
    return names;
}

MappingListModel::TargetKind targetKind(const TargetAction& action) {
    switch (action.kind()) {
    case TargetAction::Kind::block:
        return MappingListModel::Block;
    case TargetAction::Kind::key:
        return MappingListModel::Key;
    case TargetAction::Kind::combination:
    case TargetAction::Kind::modifiers:
        break;
    }
    return MappingListModel::Combination;
}

}  // namespace

MappingListModel::MappingListModel(MappingStore& store, EventSystem& events, EventTapManager& manager, QObject* parent)
    : QAbstractListModel(parent), store_(store), events_(events), manager_(manager), rows_(store.mappings()) {
    connect(&store_, &MappingStore::mappingsChanged, this, &MappingListModel::storeChanged);
    connect(&store_, &MappingStore::isCapsLockDirectHIDChanged, this, &MappingListModel::capsLockMethodChanged);
    connect(&store_, &MappingStore::historyChanged, this, &MappingListModel::historyChanged);
    connect(&store_, &MappingStore::storageStateChanged, this, &MappingListModel::storageNoticeChanged);
    connect(&manager_, &EventTapManager::isRunningChanged, this, [this](bool running) {
        if (running) setPermissionNotice({});
    });
    checkPermission();
}

MappingListModel::MappingListModel(QObject* parent)
    : MappingListModel(MappingStore::shared(), EventSystem::shared(), EventTapManager::shared(), parent) {}

int MappingListModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant MappingListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
    const KeyMapping& mapping = rows_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case MappingIdRole:
        return idText(mapping.id);
    case SourceTextRole:
        return QString::fromStdString(mapping.sourceKey.symbol());
    case IsEnabledRole:
        return mapping.isEnabled;
    case BadgeTextRole:
        return methodBadge(remapMethod(mapping.sourceKey, store_.isCapsLockDirectHID())).text;
    case BadgeColorRole:
        return methodBadge(remapMethod(mapping.sourceKey, store_.isCapsLockDirectHID())).colorName;
    case BadgeTooltipRole:
        return methodBadge(remapMethod(mapping.sourceKey, store_.isCapsLockDirectHID())).tooltip;
    case TargetKindRole:
        return targetKind(mapping.targetAction);
    case TargetKeycapsRole:
        return targetKeycaps(mapping.targetAction);
    case AloneTextRole:
        return QString::fromStdString(mapping.aloneLabel());
    case SourceNameRole:
        return sourceName(mapping.sourceKey);
    case TargetKeyNamesRole:
        return targetKeyNames(mapping.targetAction);
    default:
        return {};
    }
}

QHash<int, QByteArray> MappingListModel::roleNames() const {
    return {
        {MappingIdRole, "mappingId"},       {SourceTextRole, "sourceText"},     {IsEnabledRole, "isEnabled"},
        {BadgeTextRole, "badgeText"},       {BadgeColorRole, "badgeColor"},     {BadgeTooltipRole, "badgeTooltip"},
        {TargetKindRole, "targetKind"},     {TargetKeycapsRole, "targetKeycaps"}, {AloneTextRole, "aloneText"},
        {SourceNameRole, "sourceName"},     {TargetKeyNamesRole, "targetKeyNames"},
    };
}

QString MappingListModel::activeSummary() const {
    const auto active = std::count_if(rows_.begin(), rows_.end(), [](const KeyMapping& m) { return m.isEnabled; });
    return QStringLiteral("%1 of %2 active").arg(active).arg(rows_.size());
}

int MappingListModel::selectedRow() const {
    if (!selectedId_) return -1;
    const auto it = std::find_if(rows_.begin(), rows_.end(), [&](const KeyMapping& m) { return m.id == *selectedId_; });
    return it == rows_.end() ? -1 : static_cast<int>(it - rows_.begin());
}

void MappingListModel::setSelectedRow(int row) {
    if (row >= 0 && row < count()) selectedId_ = rows_[static_cast<std::size_t>(row)].id;
    else selectedId_.reset();
    notifySelection();
}

void MappingListModel::notifySelection() {
    const int row = selectedRow();
    if (row < 0) selectedId_.reset();
    if (row == notifiedSelectedRow_) return;
    notifiedSelectedRow_ = row;
    emit selectedRowChanged();
}

std::optional<std::size_t> MappingListModel::rowOf(const QString& mappingId) const {
    const auto id = Uuid::parse(mappingId.toStdString());
    if (!id) return std::nullopt;
    const auto it = std::find_if(rows_.begin(), rows_.end(), [&](const KeyMapping& m) { return m.id == *id; });
    if (it == rows_.end()) return std::nullopt;
    return static_cast<std::size_t>(it - rows_.begin());
}

void MappingListModel::toggle(const QString& mappingId) {
    if (const auto row = rowOf(mappingId)) store_.toggleMapping(rows_[*row].id);
}

void MappingListModel::deleteMapping(const QString& mappingId) {
    if (const auto row = rowOf(mappingId)) store_.deleteMapping(rows_[*row].id);
}

void MappingListModel::openEditing(const QString& mappingId) {
    if (const auto row = rowOf(mappingId)) openEditor(rows_[*row]);
}

void MappingListModel::openNewMapping() { openEditor(std::nullopt); }

void MappingListModel::openEditor(std::optional<KeyMapping> existing) {
    closeEditor();
    editor_ = new AddMappingController(store_, events_, manager_, std::move(existing), this);
    connect(editor_, &AddMappingController::dismissed, this, &MappingListModel::closeEditor);
    emit editorChanged();
}

// The sheet may still be running the controller's own save() or cancel(): delete it later.
void MappingListModel::closeEditor() {
    if (!editor_) return;
    AddMappingController* closing = std::exchange(editor_, nullptr);
    closing->disconnect(this);
    closing->deleteLater();
    emit editorChanged();
}

void MappingListModel::removeAt(const QList<int>& positions) {
    std::set<std::size_t> rows;
    for (int position : positions)
        if (position >= 0 && position < count()) rows.insert(static_cast<std::size_t>(position));
    if (!rows.empty()) store_.removeMappings(rows);
}

void MappingListModel::removeSelected() {
    if (const int row = selectedRow(); row >= 0) removeAt({row});
}

void MappingListModel::editSelected() {
    if (const int row = selectedRow(); row >= 0) openEditor(rows_[static_cast<std::size_t>(row)]);
}

void MappingListModel::move(const QList<int>& positions, int destination) {
    if (destination < 0 || destination > count()) return;
    std::set<std::size_t> rows;
    for (int position : positions)
        if (position >= 0 && position < count()) rows.insert(static_cast<std::size_t>(position));
    if (rows.empty()) return;
    // The order stays when the dragged rows already form one block that touches the destination.
    const std::size_t first = *rows.begin();
    const std::size_t last = *rows.rbegin();
    const bool contiguous = last - first + 1 == rows.size();
    const auto dest = static_cast<std::size_t>(destination);
    if (contiguous && dest >= first && dest <= last + 1) return;
    store_.moveMappings(rows, dest);
}

// Positions count in the list before the move: going down, the row must land after the one it passes.
int MappingListModel::destinationFor(int row, int steps) const {
    const int destination = steps > 0 ? row + steps + 1 : row + steps;
    return std::clamp(destination, 0, count());
}

void MappingListModel::moveSelected(int steps) {
    if (const int row = selectedRow(); row >= 0) move({row}, destinationFor(row, steps));
}

QString MappingListModel::keysHint() const {
    const QString chord = DesktopWords::shared().optionChord;
    return tr("Select a mapping and press %1↑ or %1↓ to move it. %2 undoes a change.")
        .arg(chord, QKeySequence(QKeySequence::Undo).toString(QKeySequence::NativeText));
}

bool MappingListModel::canUndo() const { return store_.canUndo(); }
bool MappingListModel::canRedo() const { return store_.canRedo(); }
void MappingListModel::undo() { store_.undo(); }
void MappingListModel::redo() { store_.redo(); }

QString MappingListModel::storageNotice() const {
    if (!store_.saveError().isEmpty())
        return tr("Your changes could not be saved (%1). They last only until Orvane quits.").arg(store_.saveError());
    if (store_.isUndecodableKeptAside())
        return tr("Your saved mappings could not be read. They are kept in %1 under %2.")
            .arg(store_.storageLocation(), MappingStore::undecodableBackupKey);
    if (store_.wasUndecodable())
        return tr("Your saved mappings could not be read. They stay as they were in %1; your next change keeps them under %2.")
            .arg(store_.storageLocation(), MappingStore::undecodableBackupKey);
    return {};
}

void MappingListModel::setInterception(bool on) {
    if (!on) {
        manager_.stop();
        return;
    }
    if (manager_.start()) return;
    checkPermission();
    if (permissionNotice_.isEmpty()) setPermissionNotice(manager_.lastErrorText());
}

void MappingListModel::checkPermission() {
    if (!manager_.isRunning() && !permission::canReadKeyboard())
        setPermissionNotice(permission::missingText(tr("it cannot remap keys")));
}

void MappingListModel::setPermissionNotice(QString notice) {
    if (notice == permissionNotice_) return;
    permissionNotice_ = std::move(notice);
    emit permissionNoticeChanged();
}

QString MappingListModel::permissionHelpTitle() const { return permission::helpButtonTitle(); }

void MappingListModel::showPermissionHelp() { permission::showHelp(); }

void MappingListModel::storeChanged() {
    const auto& next = store_.mappings();
    const bool sameIds = next.size() == rows_.size() &&
                         std::equal(next.begin(), next.end(), rows_.begin(),
                                    [](const KeyMapping& a, const KeyMapping& b) { return a.id == b.id; });
    if (sameIds) {
        for (std::size_t i = 0; i < next.size(); ++i) {
            if (next[i] == rows_[i]) continue;
            rows_[i] = next[i];
            const QModelIndex changed = index(static_cast<int>(i));
            emit dataChanged(changed, changed);
        }
    } else {
        beginResetModel();
        rows_ = next;
        endResetModel();
    }
    emit countsChanged();
    notifySelection();
}

void MappingListModel::capsLockMethodChanged() {
    for (std::size_t i = 0; i < rows_.size(); ++i) {
        if (rows_[i].sourceKey != SourceKey::regular(KeyCode::capsLock)) continue;
        const QModelIndex changed = index(static_cast<int>(i));
        emit dataChanged(changed, changed, {BadgeTextRole, BadgeColorRole, BadgeTooltipRole});
    }
}

}  // namespace orvane
