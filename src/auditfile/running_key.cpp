#include "auditfile/running_key.h"

#include <utility>

#include "toolkit/text.h"

namespace korvel::auditfile {

bool RunningKey::Changes(std::string_view text) {
  if (key_ && text == text_) return false;
  text_.assign(text);
  std::string key = toolkit::Upper(toolkit::Trim(text));
  if (key_ == key) return false;
  key_ = std::move(key);
  return true;
}

}  // namespace korvel::auditfile
