#pragma once

#include <span>
#include <string_view>

/// The menu of the main window `WMenu`, the same for every company.
namespace korvel::session {

/// An entry. Those of a submenu follow one another.
struct MenuEntry {
  std::string_view menu;     // control of the menu
  std::string_view submenu;  // control of the submenu "Listagens"; empty directly below the menu
  std::string_view name;     // control of the entry
  std::string_view caption;  // "&" stands before the access key
  std::string_view form;     // that it opens; empty: it acts by itself
  bool guarded = true;       // its form is opened under a right
};

struct MenuTitle {
  std::string_view name;
  std::string_view caption;
};

/// The menus of the bar, in their order.
std::span<const MenuTitle> Menus();
/// All entries, in the order of the menus.
std::span<const MenuEntry> MenuTree();
/// The caption of every submenu.
inline constexpr std::string_view kListings = "Listagens";

/// The entry of that control, null when there is none.
const MenuEntry* FindMenuEntry(std::string_view name);

}  // namespace korvel::session
