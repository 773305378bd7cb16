#pragma once

#include <QIcon>
#include <string_view>

namespace korvel::desktop {

/// A picture of the program's own: "korvel", its mark, or one of "empresa", "empresa-principal", "empresa-bloqueada",
/// "empresa-principal-bloqueada", or of the boxes: "informacao", "pergunta", "aviso", "erro". Vectors, sharp at every size, built into the program.
QIcon Icon(std::string_view name);

}  // namespace korvel::desktop
