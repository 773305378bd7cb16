#pragma once

#include <QDialog>
#include <QPushButton>
#include <functional>
#include <string>
#include <string_view>

#include "gateways/desk.h"

namespace korvel::desktop {

/// A window of the system: its controls and its calls of the core. Named after the form, as its controls are named after
/// theirs. Enter moves to the next field, Escape leaves, its size is remembered per user. It does not close while work
/// goes on.
class Form : public QDialog {
 public:
  /// The caption of a form in the catalogue of rights is the one there.
  Form(Desk& desk, std::string_view name, QWidget* parent = nullptr);
  ~Form() override;

  const std::string& Name() const { return name_; }

  /// What the form reads when it opens; called once, with the form built and not shown yet. False: it does not open,
  /// which has been said.
  virtual bool Load() { return true; }
  /// Load, then the form as a dialog of its own until it is left; whether it was left by accept().
  bool Ask();

  void done(int result) override;

 protected:
  using Action = std::function<void()>;
  enum class Writes { No, Yes };

  /// A button of the catalogue, with its caption. One that has a right does its work only for who has that right, and
  /// with Writes::Yes only in a company that is not read-only.
  QPushButton* CatalogueButton(std::string_view name, Action action, Writes writes = Writes::No);
  /// A button without a right. "&" stands before the access key.
  QPushButton* PlainButton(std::string_view name, std::string_view caption, Action action);

  /// Behind the caption, such as the period that is loaded; empty: the caption alone.
  void SetCaptionDetail(std::string_view detail);
  void SetCaption(std::string_view caption);

  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void showEvent(QShowEvent* event) override;

  Desk& desk_;

 private:
  bool Allows(const std::string& button, Writes writes);
  void KeepSize();

  std::string name_;
  std::string caption_;
};

}  // namespace korvel::desktop
