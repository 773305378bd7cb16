#include "periods/movement_types.h"

#include "session/connections.h"
#include "toolkit/options.h"

namespace korvel::periods {

std::vector<MovementType> CarregarTiposMov(const session::Context& context) {
  session::ConnectionPtr billing;
  if (!session::AbreConnection_bln(context, billing, session::kBrevant)) return {};
  auto rows = billing->Query(
      "Select Codigo,Descricao,Modulo,AfectaCli,AfectaStk,AfectaIVA,TipoMovClassifica from TabTipoMov With "
      "(NoLock) where TipoMovClassifica<>'' and TipoMovClassifica<>'@@@' order by "
      "Descricao,AfectaCli,NumRegisto");
  const auto text = [&](std::string_view column) { return std::string(rows.Text(column)); };
  std::vector<MovementType> types;
  for (; !rows.Eof(); rows.MoveNext()) {
    const int vat = static_cast<int>(rows.Integer("AfectaIVA"));
    types.push_back({text("Codigo"), text("Descricao"), text("TipoMovClassifica"), text("AfectaCli"),
                     text("AfectaStk"), text("Modulo"), std::string(toolkit::chk_GetValue_str(vat))});
  }
  return types;
}

}  // namespace korvel::periods
