#include "shell/looks.h"

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStyle>
#include <QStyleFactory>

#include "resources/icons.h"

namespace korvel::desktop {

namespace {

constexpr double kSmallestText = 10.0;  // points

/// The colour of each role, and of what is written on disabled things: legible still, and plainly weaker.
struct Colours {
  QRgb window;
  QRgb base;
  QRgb alternate;
  QRgb button;
  QRgb text;
  QRgb disabled;
  QRgb placeholder;
  QRgb highlight;
  QRgb link;
};

constexpr Colours kLight{.window = 0xfff4f5f7,
                         .base = 0xffffffff,
                         .alternate = 0xfff2f5f8,
                         .button = 0xffe9ecf0,
                         .text = 0xff1d2430,
                         .disabled = 0xff737c89,
                         .placeholder = 0xff737c89,
                         .highlight = 0xff2f6f9f,
                         .link = 0xff205f8f};
/// Fields are lighter than their ground, so that their edges show.
constexpr Colours kDark{.window = 0xff22262c,
                        .base = 0xff2e343d,
                        .alternate = 0xff333a44,
                        .button = 0xff3b434e,
                        .text = 0xffe6e9ee,
                        .disabled = 0xff929baa,
                        .placeholder = 0xff929baa,
                        .highlight = 0xff35749f,
                        .link = 0xff7db9e3};

QPalette PaletteOf(const Colours& colours) {
  QPalette palette(QColor(colours.button), QColor(colours.window));
  palette.setColor(QPalette::Base, colours.base);
  palette.setColor(QPalette::AlternateBase, colours.alternate);
  palette.setColor(QPalette::ToolTipBase, colours.alternate);
  palette.setColor(QPalette::PlaceholderText, colours.placeholder);
  palette.setColor(QPalette::Highlight, colours.highlight);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, colours.link);
  for (const auto role :
       {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
    palette.setColor(role, colours.text);
    palette.setColor(QPalette::Disabled, role, colours.disabled);
  }
  palette.setColor(QPalette::Disabled, QPalette::Base, colours.window);
  return palette;
}

bool IsDark(Theme theme) {
  if (theme != Theme::Platform) return theme == Theme::Dark;
  const QPalette platform = QApplication::palette();
  return platform.color(QPalette::Window).lightness() < platform.color(QPalette::WindowText).lightness();
}

/// Sizes in the text's own measure, so that they grow with it.
constexpr const char* kStyleSheet =
    "QPushButton { min-width: 4em; min-height: 1.4em; padding: 2px 12px; }"
    "QPushButton[text=\"...\"] { min-width: 1em; padding: 2px 6px; }"
    "QLineEdit, QComboBox { min-height: 1.4em; }"
    "QHeaderView::section { padding: 3px 6px; }"
    "QStatusBar QLabel { padding: 2px 8px; }";

}  // namespace

void ApplyLooks(QApplication& application, Theme theme) {
  const bool dark = IsDark(theme);
  QApplication::setStyle(QStyleFactory::create("Fusion"));
  QApplication::setPalette(PaletteOf(dark ? kDark : kLight));
  QFont font = QApplication::font();
  if (font.pointSizeF() < kSmallestText) font.setPointSizeF(kSmallestText);
  QApplication::setFont(font);
  application.setStyleSheet(kStyleSheet);
  QApplication::setWindowIcon(Icon("korvel"));
}

}  // namespace korvel::desktop
