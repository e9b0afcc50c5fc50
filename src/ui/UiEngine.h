// Readies a QML engine for the views of the Orvane module; call once on each engine before loading a view.
#pragma once

#include <QUrl>

class QQmlEngine;

namespace orvane::ui {

// Where the module lives: its qmldir and every view file, e.g. viewUrl("DebugView.qml").
QUrl viewUrl(const QString& file);

// Lets the engine find the module (import "Orvane 1.0") and serves the views' icon images
// (image://icon). The module's C++ types register themselves when a view first imports it.
void prepareEngine(QQmlEngine& engine);

}  // namespace orvane::ui
