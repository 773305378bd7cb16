#include "demo/chart_of_accounts.h"

#include <fmt/format.h>

#include <algorithm>

#include "demo/lunder_schema.h"

namespace korvel::demo {

namespace {

struct Account {
  std::string_view code;  // with dots
  std::string_view title;
  std::string_view kind;                 // "C" class, "T" total, "M" movement
  std::string_view recapitulative = {};  // "RC" or "RF"
};

constexpr Account kAccounts[] = {
    {"1", "Meios financeiros líquidos", "C"},
    {"11", "Caixa", "T"},
    {"11.1", "Caixa da sede", "M"},
    {"12", "Depósitos à ordem", "T"},
    {"12.1", "Banco do Cávado & Minho", "M"},
    {"12.2", "Caixa Económica d'Alvor", "M"},
    {"2", "Contas a receber e a pagar", "C"},
    {"21", "Clientes", "T"},
    {"21.1", "Clientes c/c", "T"},
    {"21.1.1", "Clientes gerais", "T"},
    {"21.1.2", "Clientes - contas em títulos", "T"},
    {"21.1.8", "Clientes ocasionais", "M", "RC"},
    {"22", "Fornecedores", "T"},
    {"22.1", "Fornecedores c/c", "T"},
    {"22.1.1", "Fornecedores gerais", "T"},
    {"22.1.8", "Fornecedores ocasionais", "M", "RF"},
    {"23", "Pessoal", "T"},
    {"23.1", "Remunerações a pagar", "T"},
    {"23.1.2", "Ao pessoal", "M"},
    {"24", "Estado e outros entes públicos", "T"},
    {"24.1", "Imposto sobre o rendimento", "M"},
    {"24.2", "Retenção de impostos sobre rendimentos", "T"},
    {"24.2.1", "Trabalho dependente", "M"},
    {"24.3", "Imposto sobre o valor acrescentado", "T"},
    {"24.3.2", "IVA - Dedutível", "T"},
    {"24.3.2.1", "IVA dedutível - Inventários", "M"},
    {"24.3.2.3", "IVA dedutível - Outros bens e serviços", "M"},
    {"24.3.3", "IVA - Liquidado", "T"},
    {"24.3.3.1", "IVA liquidado - Operações gerais", "M"},
    {"24.3.6", "IVA a pagar ou a recuperar", "M"},
    {"24.5", "Contribuições para a Segurança Social", "M"},
    {"3", "Inventários e activos biológicos", "C"},
    {"31", "Compras", "T"},
    {"31.1", "Compras de mercadorias", "M"},
    {"32", "Mercadorias", "T"},
    {"32.1", "Mercadorias em armazém", "M"},
    {"4", "Investimentos", "C"},
    {"43", "Activos fixos tangíveis", "T"},
    {"43.3", "Equipamento básico", "M"},
    {"43.8", "Depreciações acumuladas", "M"},
    {"5", "Capital, reservas e resultados transitados", "C"},
    {"51", "Capital", "T"},
    {"51.1", "Capital subscrito", "M"},
    {"56", "Resultados transitados", "T"},
    {"56.1", "Resultados de exercícios anteriores", "M"},
    {"6", "Gastos", "C"},
    {"61", "Custo das mercadorias e matérias consumidas", "T"},
    {"61.1", "Custo das mercadorias vendidas", "M"},
    {"62", "Fornecimentos e serviços externos", "T"},
    {"62.2", "Serviços especializados", "T"},
    {"62.2.1", "Trabalhos especializados", "M"},
    {"62.2.4", "Honorários", "M"},
    {"62.4", "Energia e fluidos", "T"},
    {"62.4.1", "Electricidade", "M"},
    {"62.6", "Serviços diversos", "T"},
    {"62.6.1", "Rendas e alugueres", "M"},
    {"62.6.2", "Comunicação", "M"},
    {"62.6.6", "Despesas de representação", "M"},
    {"63", "Gastos com o pessoal", "T"},
    {"63.2", "Remunerações do pessoal", "M"},
    {"63.5", "Encargos sobre remunerações", "M"},
    {"64", "Gastos de depreciação e de amortização", "T"},
    {"64.2", "Activos fixos tangíveis", "M"},
    {"7", "Rendimentos", "C"},
    {"71", "Vendas", "T"},
    {"71.1", "Mercadorias", "T"},
    {"71.1.1", "Vendas à taxa normal", "M"},
    {"71.1.2", "Vendas à taxa intermédia", "M"},
    {"71.1.3", "Vendas à taxa reduzida", "M"},
    {"71.1.4", "Vendas isentas", "M"},
    {"71.7", "Devoluções de vendas", "M"},
    {"78", "Outros rendimentos", "T"},
    {"78.7", "Rendimentos em investimentos não financeiros", "T"},
    {"78.7.1", "Alienações", "M"},
    {"8", "Resultados", "C"},
    {"81", "Resultado líquido do período", "T"},
    {"81.1", "Resultado antes de impostos", "M"},
    {"81.2", "Imposto sobre o rendimento do período", "T"},
    {"81.2.1", "Imposto estimado para o período", "M"},
    {"81.8", "Resultado líquido", "M"},
};

constexpr std::size_t kSecondAccountEvery = 40;

std::string WithoutDots(std::string_view code) {
  std::string plain(code);
  std::erase(plain, '.');
  return plain;
}

bool HasSecondAccount(std::size_t customer) {
  return customer % kSecondAccountEvery == kSecondAccountEvery - 1;
}

std::string DottedAccount(Kind kind, std::string_view group, std::size_t index) {
  return fmt::format("{}.{}.{:05}", kind == Kind::Customer ? "21.1" : "22.1", group, index + 1);
}

/// Sends rows of `Contas`, counting them.
class AccountWriter {
 public:
  explicit AccountWriter(data::Connection& lunder)
      : batch_(lunder.OpenBatch(lunder::kContas.name, ColumnNames(lunder::kContas))) {}

  void Add(const Account& row) {
    const std::string plain = WithoutDots(row.code);
    const data::Null none;
    const std::string_view cliFor = row.recapitulative.empty() ? "" : "R";
    const data::Parameter values[] = {plain, row.code, row.title, row.kind, cliFor, row.recapitulative,
                                      none,  none,     none,      none,     none,   none,
                                      none,  none,     none,      none,     none};
    Send(values);
  }

  void Add(Kind kind, const std::string& code, const Taxpayer& who) {
    const std::string plain = WithoutDots(code);
    const std::string address = AddressOf(who);
    const std::string_view cliFor = kind == Kind::Customer ? "C" : "F";
    const data::Parameter values[] = {plain,
                                      code,
                                      who.name,
                                      "M",
                                      cliFor,
                                      "",
                                      who.taxNumber,
                                      who.doorNumber,
                                      who.street,
                                      who.country,
                                      address,
                                      who.town,
                                      who.postalCode,
                                      who.district,
                                      who.telephone,
                                      who.mail,
                                      who.selfBilling ? "1" : "0"};
    Send(values);
  }

  std::int64_t Finish() {
    batch_->Finish();
    return count_;
  }

 private:
  void Send(data::Parameters values) {
    batch_->Add(values);
    ++count_;
  }

  std::unique_ptr<data::BatchInsert> batch_;
  std::int64_t count_ = 0;
};

void AddTaxpayers(AccountWriter& writer, Kind kind, const std::vector<Taxpayer>& taxpayers) {
  for (std::size_t i = 0; i < taxpayers.size(); ++i) {
    writer.Add(kind, DottedAccount(kind, "1", i), taxpayers[i]);
    if (kind == Kind::Customer && HasSecondAccount(i))
      writer.Add(kind, DottedAccount(kind, "2", i), taxpayers[i]);
  }
}

}  // namespace

std::string TaxpayerAccount(Kind kind, std::size_t index) {
  return WithoutDots(DottedAccount(kind, "1", index));
}

std::string SecondAccount(std::size_t customer) {
  return HasSecondAccount(customer) ? WithoutDots(DottedAccount(Kind::Customer, "2", customer))
                                    : std::string();
}

std::int64_t WriteChartOfAccounts(data::Connection& lunder, const std::vector<Taxpayer>& customers,
                                  const std::vector<Taxpayer>& suppliers) {
  AccountWriter writer(lunder);
  for (const Account& row : kAccounts) writer.Add(row);
  AddTaxpayers(writer, Kind::Customer, customers);
  AddTaxpayers(writer, Kind::Supplier, suppliers);
  return writer.Finish();
}

}  // namespace korvel::demo
