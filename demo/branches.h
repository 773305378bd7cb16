#pragma once

#include <cstddef>
#include <string_view>

namespace korvel::demo {

/// A place of business: its warehouse, its series of documents and the VAT of its region.
struct Branch {
  std::string_view warehouse;
  std::string_view name;
  std::string_view region;  // of the audit file
  std::string_view zone;    // of the tax tables
  std::string_view place;   // that goods are loaded at
};

inline constexpr Branch kBranches[] = {
    {"01", "Armazém da sede", "PT-AC", "A", "Rua da Conceição, 12 - Ponta Delgada"},
    {"02", "Armazém de Lisboa", "PT", "C", "Doca de Alcântara, armazém 7 - Lisboa"},
    {"03", "Armazém do Funchal", "PT-MA", "M", "Zona Franca do Caniçal - Madeira"},
};
inline constexpr std::size_t kHeadOffice = 0, kMainland = 1;

}  // namespace korvel::demo
