#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <string>
#include <string_view>

#include "gateways/desk.h"
#include "periods/source_servers.h"
#include "widgets/code_box.h"

namespace korvel::desktop {

class FieldGrid;

/// How the two sides of the parameters differ.
struct SourceSide {
  std::string_view product;  // "Brevant"; what the boxes' names end with
  std::string_view title;
  std::string_view button;  // "cmdDBBrevant"
  std::string_view lamp;    // "shpLigaGest"
};

/// Where the database of a source product lies, with a lamp that tells whether its server can be reached.
class SourceBox : public QGroupBox {
 public:
  SourceBox(Desk& desk, const SourceSide& side, QWidget* parent);

  periods::SourceLocation Location() const;
  void SetLocation(const periods::SourceLocation& location);
  void ShowLink(bool reached);

 private:
  QLineEdit* AddBox(FieldGrid& grid, std::string_view column, std::string_view label);
  void AddDatabase(Desk& desk, FieldGrid& grid, std::string_view button);
  void SearchThere();

  std::string product_;
  QLineEdit* server_;
  QLineEdit* login_;
  QLineEdit* password_;
  CodeBox* database_ = nullptr;
  QLabel* lamp_;
};

}  // namespace korvel::desktop
