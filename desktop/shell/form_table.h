#pragma once

#include <span>
#include <string_view>

#include "forms/common/form.h"

namespace korvel::desktop {

/// Makes the form that a menu entry names; null for one whose window is not there yet. Belongs to `parent`.
Form* MakeForm(Desk& desk, std::string_view form, QWidget* parent);

/// The forms that there are, in the order of the menu.
std::span<const std::string_view> FormNames();

}  // namespace korvel::desktop
