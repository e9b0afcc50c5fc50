#include "ui/recorder/KeyGridModel.h"

namespace orvane {

int KeyGridModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count(); }

QVariant KeyGridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= count()) return {};
    const KeyCode key = keys_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case keyCodeRole: return rawValue(key);
    case symbolRole: return QString::fromUtf8(symbol(key));
    case displayNameRole: return QString::fromUtf8(displayName(key));
    // A cell names the key under its symbol only where the symbol alone does not say it ("A" does).
    case showsDisplayNameRole: return symbol(key) != displayName(key);
    default: return {};
    }
}

QHash<int, QByteArray> KeyGridModel::roleNames() const {
    return {{keyCodeRole, "keyCode"}, {symbolRole, "symbol"}, {displayNameRole, "displayName"}, {showsDisplayNameRole, "showsDisplayName"}};
}

void KeyGridModel::setKeys(std::vector<KeyCode> keys) {
    if (keys == keys_) return;
    beginResetModel();
    keys_ = std::move(keys);
    endResetModel();
    emit countChanged();
}

}  // namespace orvane
