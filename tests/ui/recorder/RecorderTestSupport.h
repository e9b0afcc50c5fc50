// Shows a real key recorder field at the top of a window with room for its picker, over the simulated platform.
#pragma once

#include "UiHarness.h"
#include "ui/recorder/KeyRecorderField.h"

#include <gtest/gtest.h>

namespace orvane::testing {

class RecorderViewTest : public ::testing::Test {
protected:
    UiHarness ui;
    std::unique_ptr<KeyRecorderField> field;

    void showField(bool allowModifiers) {
        field = std::make_unique<KeyRecorderField>(allowModifiers, QStringLiteral("Press target key or combination..."));
        ASSERT_TRUE(ui.show(QStringLiteral("RecorderHost.qml"), QSize(720, 480)));
        ui.view()->rootObject()->setProperty("field", QVariant::fromValue(field.get()));
        ui.settle();
    }
    void TearDown() override {
        if (field) field->stopRecording();
    }
    QVariant read(const QString& objectName, const char* property) {
        QQuickItem* item = ui.find(objectName);
        return item ? item->property(property) : QVariant();
    }
    bool isShown(const QString& objectName) { return read(objectName, "visible").toBool(); }
    // A colour of the palette an item uses ("text", "placeholderText", "highlight").
    QColor paletteColor(const QString& objectName, const char* role) {
        return read(objectName, "palette").value<QObject*>()->property(role).value<QColor>();
    }
};

}  // namespace orvane::testing
