// The key picker's state: category tab or search, the modifier checkboxes, and picking into a field.
#pragma once

#include "ui/recorder/KeyGridModel.h"
#include "ui/recorder/KeyRecorderField.h"

#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace orvane {

// One per opening of the picker: it starts on the first tab, with no search and no checkbox ticked.
class KeyPickerModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(orvane::KeyRecorderField* field READ field WRITE setField NOTIFY fieldChanged)
    Q_PROPERTY(bool allowModifiers READ allowModifiers NOTIFY fieldChanged)
    Q_PROPERTY(QStringList categoryTitles READ categoryTitles CONSTANT)
    Q_PROPERTY(int selectedCategory READ selectedCategory WRITE setSelectedCategory NOTIFY selectedCategoryChanged)
    Q_PROPERTY(QString searchText READ searchText WRITE setSearchText NOTIFY searchTextChanged)
    Q_PROPERTY(bool isSearching READ isSearching NOTIFY searchTextChanged)
    Q_PROPERTY(orvane::KeyGridModel* keys READ keys CONSTANT)
    Q_PROPERTY(bool modCommand MEMBER modCommand_ NOTIFY modifiersChanged)
    Q_PROPERTY(bool modOption MEMBER modOption_ NOTIFY modifiersChanged)
    Q_PROPERTY(bool modControl MEMBER modControl_ NOTIFY modifiersChanged)
    Q_PROPERTY(bool modShift MEMBER modShift_ NOTIFY modifiersChanged)
    Q_PROPERTY(bool canPickModifiersOnly READ canPickModifiersOnly NOTIFY modifiersChanged)
    Q_PROPERTY(QStringList modifierLabels READ modifierLabels CONSTANT)
    Q_PROPERTY(QStringList modifierNames READ modifierNames CONSTANT)

public:
    explicit KeyPickerModel(QObject* parent = nullptr);

    // The ordinary keys whose lower-cased name, or else lower-cased symbol, contains the lower-cased
    // text, in declared order. The text is not trimmed; system keys are never offered.
    static std::vector<KeyCode> searchResults(const QString& searchText);

    KeyRecorderField* field() const { return field_; }
    void setField(KeyRecorderField* field);
    // The field's: without it the modifier row is hidden and picked keys carry no modifiers.
    bool allowModifiers() const { return field_ && field_->allowModifiers(); }

    QStringList categoryTitles() const;
    // Index into the categories in declared order.
    int selectedCategory() const { return selectedCategory_; }
    void setSelectedCategory(int index);
    QString searchText() const { return searchText_; }
    void setSearchText(const QString& text);
    bool isSearching() const { return !searchText_.isEmpty(); }
    // The search results while searching, else the selected category's keys.
    KeyGridModel* keys() { return &keys_; }

    // Writes the key, with the ticked modifiers where the field allows them, into the field and
    // then emits picked() (the popover closes). A recording under way goes on.
    Q_INVOKABLE void pick(int keyCode);
    // The ticked modifiers with no key (a held role such as ⌃⌥⇧⌘), where the field allows modifiers
    // and one is ticked; then emits picked().
    bool canPickModifiersOnly() const { return allowModifiers() && !tickedModifiers().isEmpty(); }
    Q_INVOKABLE void pickModifiersOnly();

    // The checkboxes' labels and full names in the desktop's words, in the order Control, Option,
    // Shift, Command: "⌃" and "Control" on a Mac, "Ctrl" and "Control" on Linux.
    static QStringList modifierLabels();
    static QStringList modifierNames();

signals:
    void fieldChanged();
    void selectedCategoryChanged();
    void searchTextChanged();
    void modifiersChanged();
    void picked();

private:
    void updateKeys();
    Modifiers tickedModifiers() const { return {.command = modCommand_, .option = modOption_, .control = modControl_, .shift = modShift_}; }

    QPointer<KeyRecorderField> field_;
    int selectedCategory_ = 0;
    QString searchText_;
    bool modCommand_ = false;
    bool modOption_ = false;
    bool modControl_ = false;
    bool modShift_ = false;
    KeyGridModel keys_;
};

}  // namespace orvane
