#pragma once

#include <span>
#include <string>
#include <string_view>

/// What the system can guard: the forms that its main window opens, and their buttons. Commands are guarded by the same
/// entries, so that a right means the same in a window and on a command line.
namespace korvel::security {

/// The program's file name, with which every key of a right begins, whatever executable runs.
inline constexpr std::string_view kProgramFile = "korvel";
/// The caption of the program's own row.
inline constexpr std::string_view kProgramCaption = "Korvel - Exportação - Ficheiro Auditor";

struct FormButton {
  std::string_view name;
  std::string_view caption;  // "&" stands before the access key
};

struct CatalogueForm {
  std::string_view name;
  std::string_view caption;
  std::span<const FormButton> buttons;  // all of them, guardable or not
};

/// The forms in the order in which their rights are created.
std::span<const CatalogueForm> RightsCatalogue();
/// Null for a form that is not guarded; any case of letters.
const CatalogueForm* FindForm(std::string_view name);
/// "" for a form that is not guarded.
std::string_view FormCaption(std::string_view name);

/// Whether a button gets a right: its name begins with "cmd" and is no answer of a confirmation, its caption neither
/// leaves the form nor is a mere sign.
bool IsGuardable(std::string_view name, std::string_view caption);
/// The same for the caption alone, as the editor of rights asks it.
bool IsGuardableCaption(std::string_view caption);
/// A caption as rights hold it.
std::string WithoutAccessKey(std::string_view caption);

/// The key of a form's right, or of a button's.
std::string RightKey(std::string_view form, std::string_view control = {});

}  // namespace korvel::security
