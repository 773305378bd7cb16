#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "data/connection.h"
#include "periods/source_servers.h"
#include "periods/warehouses.h"
#include "session/context.h"

namespace korvel::periods {

/// The row of `ParamGeral`, members named after their columns, with what a new row starts with.
struct Parameters {
  SourceLocation brevant;
  SourceLocation lunder;
  int CasasDec = 2;
  bool Header_ApenasDiarioSI = false;
  bool Header_SaldoDiaAnterior = false;
  std::string Header_ContaInicial;
  std::string Header_ContaFinal;
  bool GeneralLedgerEntries_IncluirSI = false;
  std::string Product_Grupo;
  std::string Product_Familia;
  std::string Product_SubFamilia;
  std::string Product_Situacao;
  std::string Product_Patamar;
  std::string ProductDescriptionDefault = "Sem Descrição";
  std::string SourceDocuments_DescLinhaDoc = "ObsLinha";
  bool IncluirDocumentosAnulados = false;
  std::string EquivCliente = "ContaContabil";
  bool AgrupaContasClientes = true;
  bool AgrupaIvas = true;
};

inline constexpr std::string_view kPatamarList =
    "Grupo:Grupo de Produtos;Familia:Família de Produtos;Subfamilia:Subfamília de Produtos;";
/// The value of `EquivCliente` that goes without the grouping of customer accounts.
inline constexpr std::string_view kEquivCodigo = "Codigo";

/// The first row of `ParamGeral`; nothing when there is none. NULL columns keep what a new row starts with.
std::optional<Parameters> ReadParameters(data::Connection& company);

/// `gCasasDec`, `gAnoAberto` and `gContinuaAdicionar` of the session from `ParamGeral`. False when it has no
/// row. Columns that are not there leave their value empty, which is the usual case of the last two.
bool LoadSessionParameters(const session::Context& context, data::Connection& company);

/// `cmdGravar` of the parameters: checks, saves row and warehouses in one transaction, reloads the session's
/// values, and logs it. False when a check failed, which is said, or the company did not open, which is shown. On
/// data::Error nothing has changed.
bool GravarParametros(const session::Context& context, const Parameters& parameters,
                      std::span<const Warehouse> warehouses);

/// `cmdActivarLigacoes`: stores the two locations alone, at once, then tries them. Nothing when the company did
/// not open, which is shown.
std::optional<Links> ActivarLigacoes(const session::Context& context, const Parameters& parameters);

}  // namespace korvel::periods
