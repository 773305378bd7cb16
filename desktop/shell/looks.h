#pragma once

class QApplication;

namespace korvel::desktop {

/// Platform: dark where the platform's own windows are.
enum class Theme { Platform, Light, Dark };

/// What all windows look like: one style, one type scale, calm colours. Before the first window is made.
void ApplyLooks(QApplication& application, Theme theme = Theme::Platform);

}  // namespace korvel::desktop
