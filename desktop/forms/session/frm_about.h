#pragma once

#include "forms/common/form.h"

namespace korvel::desktop {

/// `frmAbout`: which program this is, and where it stands.
class frmAbout : public Form {
 public:
  explicit frmAbout(Desk& desk, QWidget* parent = nullptr);
};

}  // namespace korvel::desktop
