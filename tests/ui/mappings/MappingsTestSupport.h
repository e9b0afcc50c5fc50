// Mapping builders, item lookups and a fixture showing the configuration window's real QML.
#pragma once

#include "UiHarness.h"
#include "ui/mappings/MappingListModel.h"

#include <gtest/gtest.h>

namespace orvane::testing {

inline KeyMapping mapping(SourceKey source, TargetAction target, bool enabled = true) {
    return {Uuid::random(), source, target, enabled};
}
inline KeyMapping mapping(KeyCode source, TargetAction target, bool enabled = true) {
    return mapping(SourceKey::regular(source), target, enabled);
}
inline QString idText(const KeyMapping& m) { return QString::fromStdString(m.id.toString()); }
inline std::vector<Uuid> idsOf(const std::vector<KeyMapping>& list) {
    std::vector<Uuid> ids;
    for (const auto& m : list) ids.push_back(m.id);
    return ids;
}

// The first item of that objectName at or under item.
inline QQuickItem* childNamed(QQuickItem* item, const QString& name) {
    if (!item || item->objectName() == name) return item;
    for (QQuickItem* child : item->childItems())
        if (QQuickItem* found = childNamed(child, name)) return found;
    return nullptr;
}

// The non-empty texts of visible text items at or under item, in tree order: what a row shows.
inline QStringList visibleTexts(QQuickItem* item) {
    QStringList texts;
    if (!item || !item->isVisible()) return texts;
    if (const QString text = item->property("text").toString(); item->inherits("QQuickText") && !text.isEmpty())
        texts.append(text);
    for (QQuickItem* child : item->childItems()) texts += visibleTexts(child);
    return texts;
}

class MappingsViewTest : public ::testing::Test {
protected:
    UiHarness ui;

    void SetUp() override {
        ASSERT_TRUE(ui.show(QStringLiteral("MappingListView.qml"), QSize(500, 400)));
        frame();
    }
    // Layouts and lists are polished when a frame is drawn; grabbing draws one at once.
    void frame() {
        ui.settle();
        ui.view()->grabWindow();
        ui.settle();
    }
    void click(QQuickItem* item) { ui.click(item), frame(); }
    void doubleClick(QQuickItem* item) { ui.doubleClick(item), frame(); }
    void hover(QQuickItem* item) { ui.hover(item), frame(); }
    void key(int key) { ui.key(key), frame(); }
    void use(std::vector<KeyMapping> mappings) { ui.store().setMappings(std::move(mappings)), frame(); }

    MappingListModel* model() { return ui.view()->rootObject()->findChild<MappingListModel*>(); }
    QQuickItem* item(const char* objectName) { return ui.find(QString::fromLatin1(objectName)); }
    QQuickItem* row(int i) { return ui.find(QStringLiteral("mappingRow%1").arg(i)); }
    QQuickItem* inRow(int i, const char* name) { return childNamed(row(i), QString::fromLatin1(name)); }
    QVariant property(const char* objectName, const char* name) { return item(objectName)->property(name); }
    // Found and visible (a closed popup's contents are still found).
    bool shown(const char* objectName) { return item(objectName) && item(objectName)->isVisible(); }
    QString sheetTitle() { return shown("sheetTitle") ? property("sheetTitle", "text").toString() : QString(); }
};

}  // namespace orvane::testing
