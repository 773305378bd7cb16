#pragma once

#include <QLineEdit>
#include <functional>
#include <string>
#include <string_view>

#include "gateways/desk.h"

namespace korvel::desktop {

/// `txtPastaExportacao`: the folder that files are exported to. Leaving the box closes the text with the platform's
/// separator; the last folder of each form is remembered per user.
class FolderBox final : public QLineEdit {
 public:
  /// `form` is the name under which the folder is kept.
  FolderBox(Desk& desk, std::string_view form, QWidget* parent = nullptr);

  /// Fills the box with the folder kept, at first the user's own.
  void LoadFolder();
  std::string Folder() const;
  /// `cmdPesquisaPastas`: asks for a folder; the cursor is in the box afterwards.
  void Browse();

  /// Asks for a folder, beginning at one; "" when the user gives up. The platform's dialog at first.
  std::function<QString(QWidget* parent, const QString& start)> choose;

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void CloseWithSeparator();
  void KeepFolder();

  Desk& desk_;
  std::string form_;
};

}  // namespace korvel::desktop
