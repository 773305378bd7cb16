#pragma once

#include <QGroupBox>
#include <QLineEdit>
#include <span>
#include <string>
#include <vector>

#include "forms/common/form.h"
#include "periods/entity.h"

namespace korvel::desktop {

struct EntityField;

/// The organisation that does the processing, with its mail and FTP accounts.
class frmAAResponsavel : public Form {
 public:
  explicit frmAAResponsavel(Desk& desk, QWidget* parent = nullptr);

  bool Load() override;

 private:
  QGroupBox* Group(const QString& title, std::span<const EntityField> fields, int pairs);
  void Gravar();

  struct Bound {
    QLineEdit* box;
    std::string periods::Entity::*member;
  };
  std::vector<Bound> boxes_;
};

}  // namespace korvel::desktop
