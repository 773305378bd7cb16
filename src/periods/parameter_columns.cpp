#include "periods/parameter_columns.h"

#include <array>

#include "toolkit/options.h"

namespace korvel::periods {

namespace {

using P = Parameters;
using L = SourceLocation;

constexpr std::array<ParameterColumn, 8> kLocations{{
    {"Servidor_Brevant", LocationColumn{&P::brevant, &L::server}},
    {"Login_Brevant", LocationColumn{&P::brevant, &L::login}},
    {"Password_Brevant", LocationColumn{&P::brevant, &L::password}},
    {"DBase_Brevant", LocationColumn{&P::brevant, &L::database}},
    {"Servidor_Lunder", LocationColumn{&P::lunder, &L::server}},
    {"Login_Lunder", LocationColumn{&P::lunder, &L::login}},
    {"Password_Lunder", LocationColumn{&P::lunder, &L::password}},
    {"DBase_Lunder", LocationColumn{&P::lunder, &L::database}},
}};

constexpr std::array<ParameterColumn, 17> kBehaviour{{
    {"CasasDec", NumberColumn{&P::CasasDec}},
    {"Header_ApenasDiarioSI", LetterColumn{&P::Header_ApenasDiarioSI}},
    {"Header_SaldoDiaAnterior", LetterColumn{&P::Header_SaldoDiaAnterior}},
    {"Header_ContaInicial", TextColumn{&P::Header_ContaInicial}},
    {"Header_ContaFinal", TextColumn{&P::Header_ContaFinal}},
    {"GeneralLedgerEntries_IncluirSI", FlagColumn{&P::GeneralLedgerEntries_IncluirSI}},
    {"Product_Grupo", TextColumn{&P::Product_Grupo}},
    {"Product_Familia", TextColumn{&P::Product_Familia}},
    {"Product_SubFamilia", TextColumn{&P::Product_SubFamilia}},
    {"Product_Situacao", TextColumn{&P::Product_Situacao}},
    {"Product_Patamar", TextColumn{&P::Product_Patamar}},
    {"ProductDescriptionDefault", TextColumn{&P::ProductDescriptionDefault}},
    {"SourceDocuments_DescLinhaDoc", TextColumn{&P::SourceDocuments_DescLinhaDoc}},
    {"IncluirDocumentosAnulados", LetterColumn{&P::IncluirDocumentosAnulados}},
    {"EquivCliente", TextColumn{&P::EquivCliente}},
    {"AgrupaContasClientes", FlagColumn{&P::AgrupaContasClientes}},
    {"AgrupaIvas", FlagColumn{&P::AgrupaIvas}},
}};

class Reader {
 public:
  Reader(const data::Recordset& row, std::size_t at, Parameters& parameters)
      : row_(row), at_(at), parameters_(parameters) {}

  void operator()(TextColumn column) const { parameters_.*column.member = row_.Text(at_); }
  void operator()(LocationColumn column) const { parameters_.*column.side.*column.member = row_.Text(at_); }
  void operator()(LetterColumn column) const { parameters_.*column.member = row_.Text(at_) == "S"; }
  void operator()(FlagColumn column) const { parameters_.*column.member = row_.Integer(at_) == 1; }
  void operator()(NumberColumn column) const {
    parameters_.*column.member = static_cast<int>(row_.Integer(at_));
  }

 private:
  const data::Recordset& row_;
  std::size_t at_;
  Parameters& parameters_;
};

class Writer {
 public:
  explicit Writer(const Parameters& parameters) : parameters_(parameters) {}

  data::Value operator()(TextColumn column) const { return parameters_.*column.member; }
  data::Value operator()(LocationColumn column) const { return parameters_.*column.side.*column.member; }
  data::Value operator()(LetterColumn column) const {
    return toolkit::chk_GetValue_str(parameters_.*column.member ? 1 : 0);
  }
  data::Value operator()(FlagColumn column) const { return parameters_.*column.member; }
  data::Value operator()(NumberColumn column) const { return parameters_.*column.member; }

 private:
  const Parameters& parameters_;
};

}  // namespace

std::span<const ParameterColumn> LocationColumns() {
  return kLocations;
}

std::span<const ParameterColumn> BehaviourColumns() {
  return kBehaviour;
}

void ReadColumn(const ParameterColumn& column, const data::Recordset& row, Parameters& parameters) {
  const std::size_t at = row.IndexOf(column.name);
  if (!row.IsNull(at)) std::visit(Reader(row, at, parameters), column.form);
}

data::Value ValueOf(const ParameterColumn& column, const Parameters& parameters) {
  return std::visit(Writer(parameters), column.form);
}

}  // namespace korvel::periods
