#include "resources/icons.h"

#include <QString>

// Outside of any namespace, as the macro asks; a static library's resources do not come in by themselves.
static void BringIn() {
  Q_INIT_RESOURCE(korvel);
}

namespace korvel::desktop {

QIcon Icon(std::string_view name) {
  static const bool in = (BringIn(), true);
  Q_UNUSED(in)
  const QString file =
      ":/korvel/icons/" + QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())) + ".svg";
  QIcon icon(file);
  icon.addFile(file, {}, QIcon::Selected);  // in a selected row too it is as it was drawn
  return icon;
}

}  // namespace korvel::desktop
