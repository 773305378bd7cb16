#pragma once

#include <QMenu>
#include <string_view>

#include "gateways/desk.h"

namespace korvel::desktop {

/// Gives every entry without an access key one of its own: the first letter of a word that is free, else any letter.
/// What is read stays as it is.
void GiveAccessKeys(QWidget& menu);

/// What an entry says whose window comes with a later version.
void SayNoWindowYet(Desk& desk);

}  // namespace korvel::desktop
