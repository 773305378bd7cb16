#pragma once

#include <QWidget>

namespace korvel::desktop {

/// Gives a field the ground of its window while it is locked, so that it does not invite to type.
void ShowLocked(QWidget& field, bool locked);

}  // namespace korvel::desktop
