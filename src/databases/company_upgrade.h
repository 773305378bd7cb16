#pragma once

#include <string>
#include <vector>

#include "databases/passed_over.h"
#include "session/context.h"

namespace korvel::databases {

struct UpgradeResult {
  bool ran = false;  // false: the server or the database did not open, which was shown
  std::vector<Failed>
      passedOver;  // steps that failed; on a database upgraded before, mostly what existed already
};

/// Brings a company database to the shape that this program needs: every statement each time, in order, each
/// failure passed over. No one else should work on the database meanwhile; nothing is locked. Adds a column
/// to the company's billing database too, found through the parameters of `gBaseDados`, which becomes
/// `database` when it is blank.
UpgradeResult ActDBaseExecuta(const session::Context& context, const std::string& database);

}  // namespace korvel::databases
