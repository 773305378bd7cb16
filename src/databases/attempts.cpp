#include "databases/attempts.h"

namespace korvel::databases {

void KeepError(session::SessionRecord& session, const data::Error& error) {
  session.gErroNumero = error.Number();
  session.gErroDescricao =
      error.Kind() == data::Failure::Permission ? std::string(kNoPermission) : error.what();
}

bool LacksRight(const session::SessionRecord& session) {
  return session.gErroNumero == static_cast<std::int32_t>(data::Failure::Permission);
}

}  // namespace korvel::databases
