#pragma once

#include <QComboBox>
#include <string_view>

namespace korvel::desktop {

/// A drop-down whose choice can be locked, and is not changed by rolling the form below the mouse.
class ChoiceBox : public QComboBox {
 public:
  /// The choice can be read, not changed.
  void SetLocked(bool locked);

  void showPopup() override;

 protected:
  ChoiceBox(std::string_view name, QWidget* parent);

  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  bool locked_ = false;
};

}  // namespace korvel::desktop
