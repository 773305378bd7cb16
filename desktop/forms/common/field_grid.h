#pragma once

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <initializer_list>
#include <string_view>

namespace korvel::desktop {

/// The one spacing of all forms, in pixels at 96 dots an inch.
inline constexpr int kSpacing = 8;
inline constexpr int kMargin = 12;

/// Labels with their fields, in as many pairs of columns as are asked for, filled from the left and downwards.
class FieldGrid {
 public:
  /// The layout belongs to whoever it is added to.
  explicit FieldGrid(int pairs = 1);

  QGridLayout* Layout() { return grid_; }
  /// Puts a field behind its label in the next place; `span` pairs wide. The label's access key leads to the field.
  QLabel* Add(std::string_view label, QWidget* field, int span = 1);
  /// Goes on in a new row.
  void NewRow();

 private:
  QGridLayout* grid_;
  int pairs_;
  int row_ = 0;
  int pair_ = 0;
};

/// A plain text box of that name; `characters` is the most it takes, 0 for any.
QLineEdit* TextBox(std::string_view name, int characters = 0);
/// Keeps a box wide enough to show that many characters.
void MakeRoom(QLineEdit* box, int characters);
/// Buttons at the foot of a form, from the right.
QHBoxLayout* ButtonRow(std::initializer_list<QWidget*> buttons);
/// A column with the margins and the spacing of all forms, set on `parent`.
QVBoxLayout* FormColumn(QWidget* parent);

}  // namespace korvel::desktop
