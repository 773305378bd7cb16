#include "toolkit/machine.h"

#include <unistd.h>

#include <array>

namespace korvel::toolkit {

std::string GetMachineName() {
  std::array<char, 256> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? std::string(name.data()) : std::string();
}

}  // namespace korvel::toolkit
