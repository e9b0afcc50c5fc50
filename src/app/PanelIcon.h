// Which status icon a panel shows: ours inked for the panel or palette, or the icon theme's.
#pragma once

#include <QIcon>
#include <QPalette>
#include <QString>

#include <optional>

namespace orvane {

// Our monochrome icon as a mask image (a platform that tints template images tints it).
QIcon templateIcon(const QString& iconName, const QColor& color);

// The icon name the desktop's icon theme gives the item where the theme has it.
inline const QString themedStatusIconName = QStringLiteral("input-keyboard-symbolic");

// The status icon for a panel. Where the panel's lightness is known, ours as a template image in dark or
// light ink against it. Otherwise, where the icon theme has themedStatusIconName, the theme's icon, which
// follows the desktop's light or dark look and which a StatusNotifier host recolours for its panel (while
// stopped, dimmed); else ours inked against the palette's window.
QIcon panelIcon(const QString& iconName, const QPalette& palette, std::optional<int> panelLightness = std::nullopt);

}  // namespace orvane
