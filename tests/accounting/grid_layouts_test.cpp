#include <gtest/gtest.h>

#include <string>

#include "accounting/chart_of_accounts.h"
#include "accounting/ledger_entries.h"
#include "accounting/tax_table.h"
#include "accounting/third_parties.h"

namespace korvel::accounting {
namespace {

/// The text that a list view is made from: heading, width and, where it is not left, alignment of each column.
std::string LayoutOf(std::span<const periods::Column> columns) {
  std::string layout;
  for (const periods::Column& column : columns) {
    layout += std::string(column.heading) + "," + std::to_string(column.width);
    if (column.alignment == periods::Alignment::Right) layout += ",D";
    if (column.alignment == periods::Alignment::Centre) layout += ",C";
    layout += "/";
  }
  return layout;
}

TEST(GridLayouts, AreThoseOfTheForms) {
  EXPECT_EQ(
      LayoutOf(ContasTable().columns),
      "Nº Registo,330/Código da Conta,2000/Descrição da Conta,4500/Saldo Devedor,1500,D/Saldo Credor,1500,D/"
      "Tipo,1000,C/");
  EXPECT_EQ(LayoutOf(ImpostosTable().columns),
            "Nº Registo,330/Tipo Imposto,1200,C/País ou Região do Imposto,1500,C/Código Imposto,1300,C/"
            "Descrição do Imposto,1600/Data de fim de vigência,1200/Percentagem,800,D/Montante do Imposto "
            "(IS),1000/"
            "Identificação no Lunder,2000/");
  EXPECT_EQ(LayoutOf(MovimentosTable().columns),
            "Nº Registo,0/Total de Registos,1200,D/Total a Débito,1500,D/Total a "
            "Crédito,1500,D/Diários,0/Diário,1000/"
            "Descrição do Diário,2000/Transacções,1000/Chave Únida do Movimento,1000/Período,1000,C/"
            "Data do Movimento,1000/Utilizador,1000/Descrição do Movimento,2000/Nº do Arquivo,2000/"
            "Tipificação do Movimentos,1000,C/Data de Gravação do Movimento,2000/Código do Cliente,1200/"
            "Código do Fornecedor,1200/Linhas,1000/Chave Únida da Linha,1000/Conta POC,1200/"
            "Tipo e Número Doc. Comercial,1000/Data de Gravação,2000/Descrição da Linha do Documento,2000/"
            "Valor a Débito,1100,D/Valor a Crédito,1100,D/");
}

TEST(GridLayouts, ThirdPartiesHaveHiddenColumnsBehindThoseOfTheForm) {
  const std::string shared =
      "Nº Registo,0/Conta do Cliente,0/N.º Ident. Fiscal,1500/Descrição,4000/Contacto,1000/Morada "
      "Facturação,1000/"
      "N.º Polícia,1000/Rua,1000/Rua e N.º Polícia,1000/Localidade,1000/Cód. "
      "Postal,1000/Distrito,1000/País,1000/"
      "Morada Expedição,1000/N.º Polícia,1000/Rua,1000/Rua e N.º Polícia,1000/Localidade,1000/Cód. "
      "Postal,1000/"
      "Distrito,1000/País,1000/Telefone,1000/Fax,1000/Email,1000/Web Site,1000/Autofacturação,1000,C/";
  EXPECT_EQ(LayoutOf(Clientes().table->columns), shared + "Customer ID,200/,0/");
  EXPECT_EQ(LayoutOf(Fornecedores().table->columns), shared + ",0/,0/");
}

}  // namespace
}  // namespace korvel::accounting
