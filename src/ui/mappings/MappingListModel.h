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
        AloneTextRole,
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

signals:
    void countsChanged();
    void selectedRowChanged();
    void editorChanged();

private:
    void storeChanged();
    void capsLockMethodChanged();
    void notifySelection();
    void openEditor(std::optional<KeyMapping> existing);
    std::optional<std::size_t> rowOf(const QString& mappingId) const;

    MappingStore& store_;
    EventSystem& events_;
    EventTapManager& manager_;
    std::vector<KeyMapping> rows_;
    std::optional<Uuid> selectedId_;
    int notifiedSelectedRow_ = -1;
    AddMappingController* editor_ = nullptr;
};

}  // namespace orvane
