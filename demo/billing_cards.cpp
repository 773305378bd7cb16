#include "demo/billing_cards.h"

#include <fmt/format.h>

#include <map>

#include "demo/branches.h"
#include "demo/brevant_schema.h"
#include "demo/chart_of_accounts.h"
#include "demo/table_writer.h"
#include "toolkit/text.h"

namespace korvel::demo {

namespace {

/// What a card says; the other columns stay NULL.
constexpr std::string_view kCardColumns[] = {"Codigo",
                                             "Descricao",
                                             "Policia",
                                             "Rua",
                                             "Distrito",
                                             "Morada",
                                             "Local",
                                             "CodPost",
                                             "Pais",
                                             "Contribuinte",
                                             "Telefone",
                                             "Email",
                                             "Diversos",
                                             "AutoFacturacao",
                                             "Expedicao_Policia",
                                             "Expedicao_Morada",
                                             "Expedicao_CodPost",
                                             "Expedicao_Pais",
                                             "ContaContabil",
                                             "ContaContabilB",
                                             "ContaContabilSNC",
                                             "ContaContabilBSNC"};

/// A blank would come out as "Desconhecido", which is too long for a door in the audit file.
constexpr std::string_view kNoDoor = "S/N";

void AddCustomer(TableWriter& clientes, std::size_t index, const Taxpayer& who) {
  const std::string account = TaxpayerAccount(Kind::Customer, index);
  const std::string second = SecondAccount(index);
  const std::string country = toolkit::Upper(who.country);
  const std::string address = AddressOf(who);
  const std::string code = index % 13 == 6 ? std::string(kNoPostalCode) : who.postalCode;
  const bool delivers = index % 2 == 0;  // others leave the place of delivery out
  const auto there = [&](std::string_view text) { return delivers ? text : std::string_view(); };
  clientes.Add({CustomerCard(index),
                who.name,
                who.doorNumber,
                who.street,
                who.district,
                address,
                who.town,
                code,
                country,
                who.taxNumber,
                who.telephone,
                who.mail,
                "0",
                who.selfBilling,
                delivers ? std::string_view(who.doorNumber) : kNoDoor,
                there(address),
                there(code),
                there(country),
                account,
                second,
                account,
                second});
}

/// Careless typing leaves the tax number of general accounts in many forms; all mean the final consumer.
void AddGeneral(TableWriter& clientes, std::size_t branch) {
  constexpr std::string_view kTaxNumbers[] = {"", "999999990", "Diversos"};
  const std::string name = fmt::format("Clientes diversos - {}", kBranches[branch].name);
  const std::string_view account = account::kOccasionalCustomers;
  clientes.Add({GeneralCard(branch),
                name,
                kNoDoor,
                "",
                "",
                "",
                "",
                "",
                "PT",
                kTaxNumbers[branch],
                "",
                "",
                "1",
                false,
                kNoDoor,
                "",
                "",
                "",
                account,
                "",
                account,
                ""});
}

void WritePostalCodes(data::Connection& brevant, const std::vector<Taxpayer>& customers,
                      const std::vector<Taxpayer>& persons) {
  std::map<std::string_view, std::string_view> towns;
  for (const auto* list : {&customers, &persons}) {
    for (const Taxpayer& who : *list) {
      if (!who.postalCode.empty()) towns.try_emplace(who.postalCode, who.town);
    }
  }
  TableWriter tabPostal(brevant, brevant::kTabPostal);
  for (const auto& [code, town] : towns) tabPostal.Add({code, town});
  tabPostal.Finish();
}

}  // namespace

std::string CustomerCard(std::size_t index) {
  return fmt::format("C{:05}", index + 1);
}

std::string GeneralCard(std::size_t branch) {
  return fmt::format("DIV{}", branch + 1);
}

void WriteCustomers(data::Connection& brevant, const std::vector<Taxpayer>& customers,
                    const std::vector<Taxpayer>& persons) {
  WritePostalCodes(brevant, customers, persons);
  TableWriter clientes(brevant, brevant::kClientes, kCardColumns);
  for (std::size_t i = 0; i < customers.size(); ++i) AddCustomer(clientes, i, customers[i]);
  for (std::size_t i = 0; i < std::size(kBranches); ++i) AddGeneral(clientes, i);
  clientes.Finish();
}

void WriteBillingCodes(data::Connection& brevant) {
  TableWriter pagaComo(brevant, brevant::kPagaComo);
  constexpr std::string_view kNames[] = {"Numerário", "Multibanco",      "Cartão de crédito",
                                         "Cheque",    "Ticket refeição", "Transferência bancária"};
  constexpr std::string_view kMechanisms[] = {"NU", "CD", "CC", "CH", "TR", "TB"};
  for (std::size_t i = 0; i < std::size(kPayments); ++i)
    pagaComo.Add({kPayments[i], kNames[i], kMechanisms[i]});
  pagaComo.Finish();
  TableWriter armazens(brevant, brevant::kArmazens);
  for (const Branch& branch : kBranches) armazens.Add({branch.warehouse, branch.name});
  armazens.Finish();
  TableWriter configura(brevant, brevant::kConfigura);
  configura.Add({"2010"});  // the first year under the newer chart of accounts
  configura.Finish();
}

}  // namespace korvel::demo
