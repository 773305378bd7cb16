#include <fmt/format.h>
#include <gmock/gmock.h>

#include <algorithm>
#include <random>

#include "billing/document_mapping.h"
#include "billing/document_rowset.h"
#include "brevant_world.h"
#include "data/collation.h"
#include "data/sql_text.h"
#include "session/lookups.h"

/// The extraction of random sources is compared with the road of one document at a time, some statements each.
namespace korvel::test {
namespace {

using data::Quoted;

struct Walked {
  std::string codigo;
  std::string tipo;
  std::string numero;
  std::string ano;
};

/// Reads each document with statements of its own.
class Reference {
 public:
  Reference(TestServer& server, const billing::BillingPeriod& period)
      : period_(period), brevant_(server.Open("BrevantDemo")), company_(server.Open("Korvel0001")) {}

  std::vector<std::string> Rows() {
    for (const auto& documentClass : billing::kDocumentClasses) WalkClass(documentClass);
    return std::move(rows_);
  }

 private:
  std::string Types(std::string_view classification) {
    std::string filter = " and (Tipo='XXXX' ";
    auto types = brevant_->Query(
        "select Codigo from TabTipoMov where (Modulo='CL' or Modulo='FC') and TipoMovClassifica=" +
        Quoted(classification));
    for (; !types.Eof(); types.MoveNext()) filter += " or Tipo=" + Quoted(types.Text(0));
    return filter + ") ";
  }

  std::vector<Walked> ReadWalk(std::string_view classification) {
    std::vector<Walked> walk;
    Each("select Codigo,Tipo,Numero,Ano from MovCliente Where NumRegisto>0 " + Types(classification) +
             period_.Documents() + " order by Ano,Tipo,Numero,Data,NumRegisto",
         [&](const auto& row) {
           walk.push_back({std::string(row.Text(0)), std::string(row.Text(1)), std::string(row.Text(2)),
                           std::string(row.Text(3))});
         });
    return walk;
  }

  void WalkClass(const billing::DocumentClass& documentClass) {
    const std::vector<Walked> walk = ReadWalk(documentClass.classification);
    const Walked* last = nullptr;
    side_ = {documentClass.side,
             walk.empty() ? "" : Look("TabTipoMov", "TipoMovClassifica", "Codigo", walk[0].tipo)};
    for (const Walked& row : walk) {
      if (last && last->ano == row.ano && data::SameText(last->tipo, row.tipo)) MapGap(*last, row);
      Map(row);
      last = &row;
    }
  }

  void MapGap(const Walked& last, const Walked& row) {
    for (int n = std::stoi(last.numero) + 1; n < std::stoi(row.numero); ++n) {
      const Walked missing{"", row.tipo, fmt::format("{:08}", n), row.ano};
      if (!IsOthers(missing)) Map(missing);
    }
  }

  static std::string Key(const Walked& d) {
    return fmt::format(" Tipo={} and Numero={} and Ano={}", Quoted(d.tipo), Quoted(d.numero), Quoted(d.ano));
  }

  bool IsOthers(const Walked& d) {
    if (period_.cliente.empty()) return false;
    return session::VerSeExiste(*brevant_, "select NumRegisto from MovCliente where" + Key(d) +
                                               " and Codigo<>" + Quoted(period_.cliente)) ||
           session::VerSeExiste(*brevant_, "select NumRegisto from LOG_MovTerceiro where" + Key(d) +
                                               " and Entidade<>" + Quoted(period_.cliente));
  }

  std::string Look(std::string_view table, std::string_view field, std::string_view key,
                   std::string_view value, std::string_view extra = {}) {
    data::Connection& where = table.starts_with("TabTax") || table == "TabArmazens" ? *company_ : *brevant_;
    return session::LerCampoTabela(where, table, field, {key, value},
                                   std::string(extra) + " order by NumRegisto");
  }

  void Map(const Walked& d) {
    const bool removed = !session::VerSeExiste(*brevant_, "Select NumRegisto from MovCliente where" + Key(d));
    if (!ReadHeader(d, removed)) return;
    ReadRows(removed);
    ReadLookups();
    billing::MappingConstants constants;
    constants.productDescriptionDefault = "Sem Descrição";
    billing::DocumentMapper(lookups_, constants).Map(document_, side_, [&](billing::StagedRow& row) {
      billing::CompleteRow(row, periods::Basis::Billing);
      rows_.push_back(Line(row));
      return true;
    });
  }

  /// All but the section's values, which every row repeats.
  static std::string Line(const billing::StagedRow& row) {
    std::string line;
    for (std::size_t i = 4; i < billing::kMappedColumns; ++i) line += row.Values()[i] + "|";
    return line;
  }

  bool ReadHeader(const Walked& d, bool removed) {
    const std::string columns(removed ? billing::kRemovedColumns : billing::kHeaderColumns);
    const std::string from =
        removed ? "LOG_MovTerceiro r left outer join MovCliente m on 1=0" : "MovCliente r";
    const auto row = brevant_->Query(fmt::format(
        "Select {} from {} where r.Tipo={} and r.Numero={} and r.Ano={} and r.Data>={} and r.Data<={} "
        "Order by r.Data DESC,r.NumRegisto",
        columns, from, Quoted(d.tipo), Quoted(d.numero), Quoted(d.ano), Quoted(period_.key.startDate),
        Quoted(period_.key.endDate)));
    if (row.Eof()) return false;
    document_ = {};
    document_.header = removed ? billing::RemovedHeaderOf(row, {}) : billing::HeaderOf(row);
    document_.header.codigo = d.codigo;
    document_.header.tipo = d.tipo;
    document_.header.numero = d.numero;
    document_.header.ano = d.ano;
    return true;
  }

  template <typename Take>
  void Each(const std::string& statement, Take&& take) {
    for (auto rows = brevant_->Query(statement); !rows.Eof(); rows.MoveNext()) take(rows);
  }

  void ReadRows(bool removed) {
    const billing::DocumentHeader& h = document_.header;
    const std::string byDate = fmt::format(" where Tipo={} and Numero={} and Data={} order by NumRegisto",
                                           Quoted(h.tipo), Quoted(h.numero), Quoted(h.data));
    Each(fmt::format("Select {},substring(ObsLinha,1,1000) as DescLinha from {}{}", billing::kLineColumns,
                     removed ? "LOG_MovProduto" : "MovProduto", byDate),
         [&](const auto& row) { document_.lines.push_back(billing::LineOf(row)); });
    Each(fmt::format("Select {} from MovItem{}", billing::kFreeTextColumns, byDate), [&](const auto& row) {
      if (!document_.freeText) document_.freeText = billing::FreeTextOf(row);
    });
    for (const auto& line : document_.lines) {
      Each(fmt::format("select {} from ImpostosMovProduto where CliFor='C' and Processa='S' and Tipo={} and "
                       "Numero={} and "
                       "Ano={} and Identifica={} and Produto={} order by NumRegisto",
                       billing::kChargeColumns, Quoted(h.tipo), Quoted(h.numero), Quoted(h.ano),
                       Quoted(line.identifica), Quoted(line.codigo)),
           [&](const auto& row) { document_.charges.push_back(billing::ChargeOf(row)); });
    }
    for (const char* sides : {"01", "10"}) {
      Each(fmt::format("Select Tipo{1},Ano{1},Num{1} from Atribui WHere Tipo{0}={2} and Num{0}={3} and "
                       "Ano{0}={4} order by "
                       "NumRegisto",
                       sides[0], sides[1], Quoted(h.tipo), Quoted(h.numero), Quoted(h.ano)),
           [&](const auto& row) {
             document_.links.push_back(
                 {std::string(row.Text(0)), std::string(row.Text(1)), std::string(row.Text(2))});
           });
    }
  }

  void ReadLookups() {
    const billing::DocumentHeader& h = document_.header;
    lookups_ = {};
    lookups_.types[h.tipo] = {"", Look("TabTipoMov", "AfectaCli", "Codigo", h.tipo), true, false, false};
    if (Look("Clientes", "NumRegisto", "Codigo", h.codigo) != "")
      lookups_.customers[h.codigo] = {Look("Clientes", "AutoFacturacao", "Codigo", h.codigo), ""};
    lookups_.paymentMechanisms[h.pagaComo] = Look("PagaComo", "ClassificaSaft", "Codigo", h.pagaComo);
    ReadTax(h.tabIva1, h.armazem);
    if (document_.freeText) ReadTax(document_.freeText->ivaTab, h.armazem);
    for (const auto& line : document_.lines) ReadLineLookups(line);
    for (const auto& charge : document_.charges) {
      lookups_.chargeNames[charge.codigoImposto] =
          Look("ImpostosConfig", "Descricao", "Codigo", charge.codigoImposto);
      ReadTax(charge.tabIva, "A1");
    }
  }

  void ReadTax(const std::string& table, const std::string& warehouse) {
    const std::string extra = " and " + period_.key.Condition();
    lookups_.taxes[table] = {Look("TabTaxTableGEST", "TaxType", "CodigoBrevant", table, extra),
                             Look("TabTaxTableGEST", "TaxCountryRegion", "CodigoBrevant", table, extra),
                             Look("TabTaxTableGEST", "TaxCode", "CodigoBrevant", table, extra)};
    lookups_.exemptionReasons[table] = Look("TabIva", "Saft_TaxExemptionReason", "Codigo", table);
    lookups_.regions[warehouse] = Look("TabArmazens", "Classificacao", "Armazem", warehouse);
  }

  void ReadLineLookups(const billing::DocumentLine& line) {
    ReadTax(line.ivaTabela, line.armazem);
    lookups_.orderDates.Keep(line.numEncomenda, Look("CliMovEnc", "DataPedido", "NumEnc", line.numEncomenda));
    if (line.identificaRelacionado.empty()) return;
    const auto row = brevant_->Query("Select Tipo,Numero,Data,Ano from MovProduto where Identifica=" +
                                     Quoted(line.identificaRelacionado) + " order by NumRegisto");
    if (row.Eof()) return;
    lookups_.relatedLines.Keep(
        line.identificaRelacionado,
        {fmt::format("{} {}/{}", row.Text(0), row.Text(3), row.Text(1)), std::string(row.Text(2))});
  }

  const billing::BillingPeriod& period_;
  std::unique_ptr<data::Connection> brevant_;
  std::unique_ptr<data::Connection> company_;
  billing::DocumentLookups lookups_;
  billing::MappedClass side_;
  billing::SourceDocument document_;
  std::vector<std::string> rows_;
};

class DocumentsReference : public BrevantWorld, public testing::WithParamInterface<unsigned> {
 protected:
  DocumentsReference() {
    period.key = {"2011", "2010-07-01", "2011-06-30"};
    SetBasis("F");
    Company("update TabTaxTableGEST set StartDate='2010-07-01',EndDate='2011-06-30'");
    Brevant(
        "insert into Clientes (Codigo,Pais,AutoFacturacao) values ('C2','PT',1),('','PT',1)\nGO\n"
        "insert into TabTipoMov (Codigo,Modulo,TipoMovClassifica,AfectaCli,ControloHash) values "
        "('FT2','CL','FT','C-',1),('FT2','CL','NC','C+',1)\nGO\n"
        "insert into PagaComo (Codigo,ClassificaSaft) values ('NU','NU')\nGO\n"
        "insert into ImpostosConfig (Codigo,Descricao) values ('ECO','Ecovalor')\nGO\n"
        "insert into CliMovEnc (NumEnc,DataPedido) values "
        "('1','2010-05-05'),('1','2009-01-01'),('2','2011-01-01')");
    IncludeRemoved();
  }

  int Pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
  std::string One(std::initializer_list<const char*> of) {
    return of.begin()[Pick(static_cast<int>(of.size()))];
  }
  std::string Numero() { return fmt::format("{:08}", 1 + Pick(9)); }
  /// Type, number, year and date from few enough values for all kinds of meetings.
  Record Key() {
    const std::string data = One({"2010-08-01", "2010-12-31", "2011-02-01", "2011-02-02", "2011-08-01"});
    return {{"Tipo", One({"FT1", "FT2", "ft1", "NC1", "VD1", "GR1"})},
            {"Numero", Numero()},
            {"Ano", Pick(8) == 0 ? One({"2010", "2011"}) : data.substr(0, 4)},
            {"Data", data}};
  }
  static Record Join(Record a, const Record& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
  }

  void Fill() {
    for (int i = 0; i < 25; ++i) {
      AddDocument(Join(Key(), {{"Codigo", One({"C1", "C2", "C3"})}, {"Observa", One({"", "nota"})}}));
      AddRemoved(
          Join(Key(), {{"Entidade", One({"C1", "C2"})}, {"DataSys", One({"", "2011-01-02 03:04:05"})}}));
    }
    for (int i = 0; i < 60; ++i) {
      AddLine(Line());
      AddRemovedLine(Line());
      Add("Atribui", "",
          {{"Tipo0", One({"FT1", "NC1"})},
           {"Num0", Numero()},
           {"Ano0", One({"2010", "2011"})},
           {"Tipo1", One({"FT1", "NC1"})},
           {"Num1", Numero()},
           {"Ano1", One({"2010", "2011"})}});
    }
    for (int i = 0; i < 30; ++i) {
      Add("MovItem", "ItemDesc=Serviço;Linha20=vinte;ValorInc=9;ValorDesc=1;IvaTab=0",
          Join(Key(), {{"Item", One({"S1", "S2"})}, {"Linha2", One({"", "dois"})}}));
      Add("ImpostosMovProduto", "Processa=S;Imposto=1;ValorUnitario=1;TaxaIva=6",
          {{"CliFor", One({"C", "C", "F"})},
           {"Tipo", One({"FT1", "NC1"})},
           {"Numero", Numero()},
           {"Ano", One({"2010", "2011"})},
           {"Identifica", One({"1", "2", "", "NULL"})},
           {"Produto", One({"P1", "P2"})},
           {"CodigoImposto", One({"ECO", "X"})},
           {"TabIva", One({"2", "0"})}});
    }
  }

  Record Line() {
    return Join(Key(), {{"Codigo", One({"P1", "P2", "p1"})},
                        {"ValorIliq", One({"10", "3.3333", "-1"})},
                        {"QuantNormal", One({"3", "0", "1"})},
                        {"IvaTabela", One({"2", "0", "", "NULL"})},
                        {"Identifica", One({"1", "2", "", "NULL"})},
                        {"IdentificaRelacionado", One({"", "1", "2", "9", "NULL"})},
                        {"NumEncomenda", One({"", "", "1", "2", "3"})},
                        {"NumGuia", One({"", "", "", "7"})},
                        {"DataGuia", One({"", "2011-01-15"})},
                        {"ObsLinha", One({"", "obs", "NULL"})}});
  }

  std::vector<std::string> StagedLines() {
    std::string columns;
    for (std::size_t i = 4; i < billing::kMappedColumns; ++i)
      columns += fmt::format("{}[{}]", columns.empty() ? "" : ",", billing::MappedColumns()[i].name);
    std::vector<std::string> lines = Staged(columns);
    for (std::string& line : lines) {
      std::replace(line.begin(), line.end(), '\t', '|');
      line += '|';
    }
    return lines;
  }

  std::mt19937 random_{GetParam()};
};

TEST_P(DocumentsReference, EqualsTheRoadOfOneDocumentAtATime) {
  Fill();
  for (const char* cliente : {"", "C1"}) {
    Company("delete from TabSourceDocumentsGEST");
    period.cliente = cliente;
    ASSERT_TRUE(Run()) << LastText();
    const std::vector<std::string> expected = Reference(server, period).Rows();
    EXPECT_FALSE(expected.empty());
    EXPECT_EQ(fmt::format("{}", fmt::join(StagedLines(), "\n")), fmt::format("{}", fmt::join(expected, "\n")))
        << "customer " << cliente;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, DocumentsReference, testing::Range(1U, 7U));

}  // namespace
}  // namespace korvel::test
