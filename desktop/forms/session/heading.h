#pragma once

#include <QWidget>
#include <string_view>

namespace korvel::desktop {

/// The program's mark with its name and a line of text below it.
QWidget* Heading(std::string_view line, QWidget* parent);

}  // namespace korvel::desktop
