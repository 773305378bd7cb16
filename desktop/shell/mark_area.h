#pragma once

#include <QMdiArea>

namespace korvel::desktop {

/// The ground on which the main window's forms lie: the program's mark, faintly, in its middle.
class MarkArea : public QMdiArea {
 public:
  explicit MarkArea(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace korvel::desktop
