// The mapping list window's rows over the shared store, its selection, footer count and open sheet.
#pragma once

#include "model/Mapping.h"
#include "ui/mappings/AddMappingController.h"

#include <QAbstractListModel>
#include <QList>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <optional>
#include <vector>

namespace orvane {

class EventSystem;
class EventTapManager;
class MappingStore;

// Main thread only. Holds a copy of the store's list and follows its change signals: an edit that
// keeps the ids in place updates those rows; any other change resets the model. Every edit goes
// to the store; the model never changes its rows on its own.
class MappingListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int count READ count NOTIFY countsChanged)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY countsChanged)
    Q_PROPERTY(QString activeSummary READ activeSummary NOTIFY countsChanged)
    Q_PROPERTY(int selectedRow READ selectedRow WRITE setSelectedRow NOTIFY selectedRowChanged)
    Q_PROPERTY(orvane::AddMappingController* editor READ editor NOTIFY editorChanged)
    Q_PROPERTY(bool canUndo READ canUndo NOTIFY historyChanged)
    Q_PROPERTY(bool canRedo READ canRedo NOTIFY historyChanged)
    Q_PROPERTY(QString storageNotice READ storageNotice NOTIFY storageNoticeChanged)
    Q_PROPERTY(QString permissionNotice READ permissionNotice NOTIFY permissionNoticeChanged)
    Q_PROPERTY(QString permissionHelpTitle READ permissionHelpTitle CONSTANT)
    Q_PROPERTY(QString keysHint READ keysHint CONSTANT)

public:
    enum Role {
        MappingIdRole = Qt::UserRole + 1,
        SourceTextRole,
        IsEnabledRole,
        BadgeTextRole,
        BadgeColorRole,
        BadgeTooltipRole,
        TargetKindRole,
        TargetKeycapsRole,
        AloneTextRole,       // "alone ⎋" for a mapping with an alone key, else empty
        SourceNameRole,      // the source key's full name in the desktop's words: "Volume Up", "Left Alt"
        TargetKeyNamesRole,  // the full names of the target's keycaps, one for each: "Shift", "Command", "K"
    };
    enum TargetKind { Block, Key, Combination };
    Q_ENUM(TargetKind)

    MappingListModel(MappingStore& store, EventSystem& events, EventTapManager& manager, QObject* parent = nullptr);
    // Over the process-wide store, event system and tap manager (how QML makes it).
    explicit MappingListModel(QObject* parent = nullptr);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(rows_.size()); }
    bool isEmpty() const { return rows_.empty(); }
    // "N of M active": enabled mappings of all mappings.
    QString activeSummary() const;

    // The single selected row, -1 for none. The selection follows its mapping when rows move and
    // is cleared when that mapping goes away.
    int selectedRow() const;
    void setSelectedRow(int row);

    // The open add/edit sheet's state (a child of the model); null while no sheet is shown.
    AddMappingController* editor() const { return editor_; }

    // Row actions by mapping id (the UUID text); unknown ids change nothing.
    Q_INVOKABLE void toggle(const QString& mappingId);
    Q_INVOKABLE void deleteMapping(const QString& mappingId);
    Q_INVOKABLE void openEditing(const QString& mappingId);
    Q_INVOKABLE void openNewMapping();
    Q_INVOKABLE void closeEditor();

    // Removes the rows at these positions in one change; positions outside the list are ignored.
    Q_INVOKABLE void removeAt(const QList<int>& positions);
    Q_INVOKABLE void removeSelected();
    Q_INVOKABLE void editSelected();
    // Moves the rows at these positions, in their order, before the row that was at destination
    // (0…count; count is the end). One change of the store, none when the order would stay as it is.
    Q_INVOKABLE void move(const QList<int>& positions, int destination);
    // The destination for move() that puts the row `steps` rows further down (negative: up),
    // clamped to the list.
    Q_INVOKABLE int destinationFor(int row, int steps) const;
    // Moves the selected row one row down (1) or up (-1), staying selected.
    Q_INVOKABLE void moveSelected(int steps);

    // How to reorder and undo from the keyboard, in the desktop's words.
    QString keysHint() const;

    // The store's history of the list: each edit, deletion, move or toggle, from any window.
    bool canUndo() const;
    bool canRedo() const;
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();

    // What the user must know about the stored list: that it could not be read and where it is
    // kept, or that changes are not being saved. Empty when all is well.
    QString storageNotice() const;

    // Turns interception on or off. A start that fails says why in permissionNotice.
    Q_INVOKABLE void setInterception(bool on);
    // Why interception cannot run, while it does not: the permission is missing (known when the
    // model is made and at each failed start), or the start failed otherwise. Empty while it runs.
    QString permissionNotice() const { return permissionNotice_; }
    QString permissionHelpTitle() const;
    Q_INVOKABLE void showPermissionHelp();

signals:
    void countsChanged();
    void selectedRowChanged();
    void editorChanged();
    void historyChanged();
    void storageNoticeChanged();
    void permissionNoticeChanged();

private:
    void storeChanged();
    void capsLockMethodChanged();
    void notifySelection();
    void openEditor(std::optional<KeyMapping> existing);
    void setPermissionNotice(QString notice);
    void checkPermission();
    std::optional<std::size_t> rowOf(const QString& mappingId) const;

    MappingStore& store_;
    EventSystem& events_;
    EventTapManager& manager_;
    std::vector<KeyMapping> rows_;
    std::optional<Uuid> selectedId_;
    int notifiedSelectedRow_ = -1;
    AddMappingController* editor_ = nullptr;
    QString permissionNotice_;
};

}  // namespace orvane
