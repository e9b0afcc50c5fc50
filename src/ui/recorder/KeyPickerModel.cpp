#include "ui/recorder/KeyPickerModel.h"

#include "model/KeyCategory.h"
#include "platform/DesktopWords.h"

namespace orvane {

KeyPickerModel::KeyPickerModel(QObject* parent) : QObject(parent) { updateKeys(); }

std::vector<KeyCode> KeyPickerModel::searchResults(const QString& searchText) {
    const QString query = searchText.toLower();
    std::vector<KeyCode> results;
    for (KeyCode key : allKeyCodes()) {
        if (QString::fromUtf8(displayName(key)).toLower().contains(query) || QString::fromUtf8(symbol(key)).toLower().contains(query))
            results.push_back(key);
    }
    return results;
}

void KeyPickerModel::setField(KeyRecorderField* field) {
    if (field == field_) return;
    field_ = field;
    emit fieldChanged();
    emit modifiersChanged();  // whether modifiers alone can be picked
}

QStringList KeyPickerModel::categoryTitles() const {
    QStringList titles;
    for (KeyCategory category : allKeyCategories()) titles << QString::fromUtf8(title(category));
    return titles;
}

void KeyPickerModel::setSelectedCategory(int index) {
    if (index == selectedCategory_ || index < 0 || index >= static_cast<int>(allKeyCategories().size())) return;
    selectedCategory_ = index;
    updateKeys();
    emit selectedCategoryChanged();
}

void KeyPickerModel::setSearchText(const QString& text) {
    if (text == searchText_) return;
    searchText_ = text;
    updateKeys();
    emit searchTextChanged();
}

void KeyPickerModel::updateKeys() {
    if (isSearching()) {
        keys_.setKeys(searchResults(searchText_));
        return;
    }
    const auto categoryKeys = orvane::keys(allKeyCategories()[static_cast<std::size_t>(selectedCategory_)]);
    keys_.setKeys({categoryKeys.begin(), categoryKeys.end()});
}

void KeyPickerModel::pick(int keyCode) {
    if (!field_) return;
    field_->pick(keyCode, modCommand_, modOption_, modControl_, modShift_);
    emit picked();
}

void KeyPickerModel::pickModifiersOnly() {
    if (!field_ || !canPickModifiersOnly()) return;
    field_->setModifiersOnly(tickedModifiers());
    emit picked();
}

QStringList KeyPickerModel::modifierLabels() {
    const auto& labels = DesktopWords::shared().modifierLabels;
    return {labels.begin(), labels.end()};
}

QStringList KeyPickerModel::modifierNames() {
    const auto& names = DesktopWords::shared().modifierNames;
    return {names.begin(), names.end()};
}

}  // namespace orvane
