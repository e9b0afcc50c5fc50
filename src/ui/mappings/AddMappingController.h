// The state of the add/edit mapping sheet: the recorded source and target, Block or Remap, the key sent
// when the source is pressed alone, and saving.
#pragma once

#include "model/Mapping.h"
#include "ui/recorder/KeyRecorderField.h"

#include <QObject>
#include <QString>
#include <QStringList>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace orvane {

class EventSystem;
class EventTapManager;
class MappingStore;

// Main thread only. Lives as long as its sheet; the store changes only through save().
class AddMappingController : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The list model opens the add/edit sheet")
    Q_PROPERTY(bool isEditing READ isEditing CONSTANT)
    Q_PROPERTY(QString title READ title CONSTANT)
    Q_PROPERTY(QString primaryTitle READ primaryTitle CONSTANT)
    Q_PROPERTY(QStringList targetTypeTitles READ targetTypeTitles CONSTANT)
    Q_PROPERTY(TargetType targetType READ targetType WRITE setTargetType NOTIFY targetTypeChanged)
    Q_PROPERTY(bool canSave READ canSave NOTIFY canSaveChanged)
    Q_PROPERTY(orvane::KeyRecorderField* sourceField READ sourceField CONSTANT)
    Q_PROPERTY(orvane::KeyRecorderField* targetField READ targetField CONSTANT)
    Q_PROPERTY(orvane::KeyRecorderField* aloneField READ aloneField CONSTANT)

public:
    // In the order of the segmented control; the titles are targetTypeTitles.
    enum TargetType { Block, Remap };
    Q_ENUM(TargetType)

    // existing absent: a new mapping (empty fields, Remap). Present: the fields start from it.
    AddMappingController(MappingStore& store, EventSystem& events, EventTapManager& manager,
                         std::optional<KeyMapping> existing, QObject* parent = nullptr);
    // Over the process-wide store, event system and tap manager.
    explicit AddMappingController(std::optional<KeyMapping> existing, QObject* parent = nullptr);

    bool isEditing() const { return existing_.has_value(); }
    QString title() const;
    QString primaryTitle() const;
    static QStringList targetTypeTitles();

    TargetType targetType() const { return targetType_; }
    // Switching keeps the recorded target: it is ignored under Block and shown again under Remap.
    void setTargetType(TargetType type);
    // A source is recorded, and under Remap a target (a key, a combination or modifiers alone) too.
    bool canSave() const;

    KeyRecorderField* sourceField() { return &sourceField_; }
    KeyRecorderField* targetField() { return &targetField_; }
    // Optional: a plain key, tapped when the source is pressed and released alone.
    KeyRecorderField* aloneField() { return &aloneField_; }

    // Adds the new mapping at the end (enabled) or replaces the edited one (same id, position and
    // enabled state). Saves nothing without a source, under Remap without a target, or when the
    // target or the alone key is a media/system key, which cannot be posted as a key. True when the
    // store changed.
    bool saveMapping();

    // The primary button: saveMapping(), then the sheet closes whatever it did.
    Q_INVOKABLE void save();
    // Closes the sheet; nothing changes.
    Q_INVOKABLE void cancel();

signals:
    void targetTypeChanged();
    void canSaveChanged();
    // The sheet is done (after save() or cancel()); any recording has been ended.
    void dismissed();

private:
    void dismiss();
    void updateCanSave();

    MappingStore& store_;
    const std::optional<KeyMapping> existing_;
    KeyRecorderField sourceField_;
    KeyRecorderField targetField_;
    KeyRecorderField aloneField_;
    TargetType targetType_ = Remap;
    bool canSave_ = false;
};

}  // namespace orvane
