// Makes the views' C++ types known to QML (module "Orvane" 1.0); call once before loading a view.
#pragma once

class QQmlEngine;

namespace orvane::ui {

void registerTypes();
// Registers the types (once per process) and gives the engine what the views need: the icon images.
void prepareEngine(QQmlEngine& engine);

// Each area registers its own types.
void registerCommonTypes();
void registerMappingsTypes();
void registerRecorderTypes();
void registerSettingsTypes();
void registerDebuggerTypes();

}  // namespace orvane::ui
