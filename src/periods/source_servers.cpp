#include "periods/source_servers.h"

#include <fmt/format.h>

#include "data/sql_text.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::periods {

namespace {

bool OpenMaster(const session::Context& context, session::ConnectionPtr& master,
                const SourceLocation& location) {
  return session::CreateDBConnection(context, master, location.server, "master", location.login,
                                     location.password);
}

bool Reaches(const session::Context& context, const SourceLocation& location) {
  session::ConnectionPtr master;
  return OpenMaster(context, master, location);
}

bool StartsWith(std::string_view text, std::string_view product) {
  return toolkit::SameIgnoringCase(text.substr(0, product.size()), product);
}

const SourceLocation* SideOf(const SourceLocation& brevant, const SourceLocation& lunder,
                             std::string_view base) {
  if (StartsWith(base, session::kBrevant)) return &brevant;
  if (StartsWith(base, session::kLunder)) return &lunder;
  return nullptr;
}

}  // namespace

Links VerLigacoes(const session::Context& context, const SourceLocation& brevant,
                  const SourceLocation& lunder) {
  return {Reaches(context, brevant), Reaches(context, lunder)};
}

std::vector<std::string> Carrega_Empresas(const session::Context& context, const SourceLocation& brevant,
                                          const SourceLocation& lunder, std::string_view base) {
  const SourceLocation* side = SideOf(brevant, lunder, base);
  session::ConnectionPtr master;
  if (side == nullptr || !OpenMaster(context, master, *side)) return {};
  auto names = master->Query(fmt::format("Select Name from SysDataBases Where name like {} order by Name",
                                         data::Quoted(fmt::format("{}%", base))));
  std::vector<std::string> databases;
  for (; !names.Eof(); names.MoveNext()) databases.emplace_back(names.Text("Name"));
  return databases;
}

}  // namespace korvel::periods
