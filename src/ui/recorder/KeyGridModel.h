// The keys one grid of the key picker shows, as cells with their symbol and name.
#pragma once

#include "model/KeyCode.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace orvane {

class KeyGridModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Read a picker's keys")
    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role { keyCodeRole = Qt::UserRole + 1, symbolRole, displayNameRole, showsDisplayNameRole };

    using QAbstractListModel::QAbstractListModel;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int count() const { return static_cast<int>(keys_.size()); }
    const std::vector<KeyCode>& keys() const { return keys_; }
    // Replaces the cells (a reset: the grid is rebuilt and scrolls back to the top).
    void setKeys(std::vector<KeyCode> keys);

signals:
    void countChanged();

private:
    std::vector<KeyCode> keys_;
};

}  // namespace orvane
