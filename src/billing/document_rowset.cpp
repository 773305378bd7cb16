#include "billing/document_rowset.h"

#include <fmt/format.h>

#include "toolkit/text.h"

namespace korvel::billing {
namespace {

enum Header : std::size_t {
  kTipo,
  kNumero,
  kData,
  kCodigo,
  kAno,
  kDataVenc,
  kDataSys,
  kPagaComo,
  kValor,
  kDesconto,
  kIva,
  kTotalDoc,
  kValorIrs,
  kTabIva1,
  kTaxIva1,
  kContribuinte,
  kArmazem,
  kHash,
  kHashControl,
  kObserva,
  kNumeroRecuperado,
  kSerieRecuperado,
  kCarga,
  kDescarga,
  kPresente,
};

enum Line : std::size_t {
  kLineCodigo = 3,
  kDescricao,
  kQuantNormal,
  kUnidade,
  kTipoGuia,
  kNumGuia,
  kDataGuia,
  kNumEncomenda,
  kValorIliq,
  kTotalDesconto,
  kIvaTabela,
  kIvaTaxa,
  kLineArmazem,
  kIdentifica,
  kIdentificaRelacionado,
  kDescLinha,
};

enum Charge : std::size_t {
  kChargeIdentifica = 2,
  kProduto,
  kCodigoImposto,
  kImposto,
  kValorUnitario,
  kChargeTabIva,
  kChargeTaxaIva,
};

enum FreeText : std::size_t {
  kItem = 3,
  kItemDesc,
  kValorInc,
  kValorDesc,
  kItemIvaTab,
  kItemIvaTaxa,
  kLinha1,
};
constexpr std::size_t kFreeTextLines = 20;

std::string TextAt(const data::Recordset& row, std::size_t column) {
  return std::string(row.Text(column));
}

/// All in which present and removed documents do not differ.
DocumentHeader CommonHeaderOf(const data::Recordset& row) {
  DocumentHeader header;
  header.tipo = row.Text(kTipo);
  header.numero = row.Text(kNumero);
  header.ano = row.Text(kAno);
  header.data = row.Text(kData);
  header.dataVenc = row.Text(kDataVenc);
  header.pagaComo = row.Text(kPagaComo);
  header.valor = row.Money(kValor);
  header.desconto = row.Money(kDesconto);
  header.iva = row.Money(kIva);
  header.totalDoc = row.Money(kTotalDoc);
  header.valorIrs = row.Money(kValorIrs);
  header.tabIva1 = row.Text(kTabIva1);
  header.taxIva1 = row.Money(kTaxIva1);
  header.contribuinte = row.Text(kContribuinte);
  header.armazem = row.Text(kArmazem);
  header.hash = row.Text(kHash);
  header.hashControl = row.Text(kHashControl);
  header.observa = row.Text(kObserva);
  header.numeroRecuperado = row.Text(kNumeroRecuperado);
  header.serieRecuperado = row.Text(kSerieRecuperado);
  header.carga = row.Text(kCarga);
  header.descarga = row.Text(kDescarga);
  return header;
}

}  // namespace

const std::string_view kHeaderColumns =
    "Tipo,Numero,Data,Codigo,Ano,DataVenc,DataSys,PagaComo,Valor,Desconto,IVA,TotalDoc,ValorIRS,TabIva1,"
    "TaxIva1,"
    "Contribuinte,Armazem,Hash,HashControl,substring(Observa,1,1000) as "
    "MObserva,NumeroRecuperado,SerieRecuperado,"
    "Carga,Descarga";

const std::string_view kRemovedColumns =
    "r.Tipo,r.Numero,r.Data,r.Entidade as Codigo,r.Ano,r.DataVenc,r.DataSys,r.PagaComo,r.ValorIliq as Valor,"
    "r.Desconto,r.IVA,r.TotalDoc,r.ValorIRS,r.TabIva1,r.TaxaIva1 as TaxIva1,'Desconhecido' as "
    "Contribuinte,r.Armazem,"
    "r.Hash,r.HashControl,substring(r.Observa,1,1000) as MObserva,'' as NumeroRecuperado,'' as "
    "SerieRecuperado,"
    "'' as Carga,'' as Descarga,m.NumRegisto as Presente";

const std::string_view kLineColumns =
    "Tipo,Numero,Data,Codigo,Descricao,QuantNormal,Unidade,TipoGuia,NumGuia,DataGuia,NumEncomenda,ValorIliq,"
    "TotalDesconto,IvaTabela,IvaTaxa,Armazem,Identifica,IdentificaRelacionado";

const std::string_view kChargeColumns =
    "Tipo,Numero,Identifica,Produto,CodigoImposto,Imposto,ValorUnitario,TabIva,TaxaIva";

const std::string_view kFreeTextColumns =
    "Tipo,Numero,Data,Item,ItemDesc,ValorInc,ValorDesc,IvaTab,IvaTaxa,Linha1,Linha2,Linha3,Linha4,Linha5,"
    "Linha6,Linha7,"
    "Linha8,Linha9,Linha10,Linha11,Linha12,Linha13,Linha14,Linha15,Linha16,Linha17,Linha18,Linha19,Linha20";

std::string_view LineDescription(std::string_view descLinhaDoc) {
  return toolkit::SameIgnoringCase(descLinhaDoc, "ObsLinha") ? "substring(ObsLinha,1,1000)" : "Descricao";
}

std::string_view CodigoOf(const data::Recordset& header) {
  return header.Text(kCodigo);
}

std::string_view DataOf(const data::Recordset& row) {
  return row.Text(kData);
}

std::string_view AnoOf(const data::Recordset& header) {
  return header.Text(kAno);
}

bool IsPresent(const data::Recordset& removed) {
  return !removed.IsNull(kPresente);
}

DocumentHeader HeaderOf(const data::Recordset& row) {
  DocumentHeader header = CommonHeaderOf(row);
  header.codigo = row.Text(kCodigo);
  if (!row.IsNull(kDataSys)) header.systemEntry = row.Date(kDataSys).IsoText();
  return header;
}

DocumentHeader RemovedHeaderOf(const data::Recordset& row, const toolkit::DateMarks& marks) {
  DocumentHeader header = CommonHeaderOf(row);
  header.removed = true;
  header.systemEntry = SystemEntryOf(row.Text(kDataSys), marks);
  return header;
}

DocumentLine LineOf(const data::Recordset& row) {
  DocumentLine line;
  line.codigo = row.Text(kLineCodigo);
  line.descricao = row.Text(kDescricao);
  line.quantNormal = row.Money(kQuantNormal);
  line.unidade = row.Text(kUnidade);
  line.tipoGuia = row.Text(kTipoGuia);
  line.numGuia = row.Text(kNumGuia);
  line.dataGuia = row.Text(kDataGuia);
  line.numEncomenda = row.Text(kNumEncomenda);
  line.valorIliq = row.Money(kValorIliq);
  line.totalDesconto = row.Money(kTotalDesconto);
  line.ivaTabela = row.Text(kIvaTabela);
  line.ivaTaxa = row.Money(kIvaTaxa);
  line.armazem = row.Text(kLineArmazem);
  line.identifica = row.Text(kIdentifica);
  line.identificaRelacionado = row.Text(kIdentificaRelacionado);
  if (!row.IsNull(kDescLinha)) line.descLinha = TextAt(row, kDescLinha);
  return line;
}

ExtraCharge ChargeOf(const data::Recordset& row) {
  return {TextAt(row, kChargeIdentifica), TextAt(row, kProduto),
          TextAt(row, kCodigoImposto),    row.Money(kImposto),
          row.Money(kValorUnitario),      TextAt(row, kChargeTabIva),
          row.Money(kChargeTaxaIva)};
}

FreeTextItem FreeTextOf(const data::Recordset& row) {
  FreeTextItem item{TextAt(row, kItem),     TextAt(row, kItemDesc), {},
                    row.Money(kValorInc),   row.Money(kValorDesc),  TextAt(row, kItemIvaTab),
                    row.Money(kItemIvaTaxa)};
  for (std::size_t i = 0; i < kFreeTextLines; ++i) {
    const std::string_view line = row.Text(kLinha1 + i);
    if (toolkit::IsBlank(line)) continue;
    if (!item.texto.empty()) item.texto += ' ';
    item.texto += line;
  }
  return item;
}

std::string SystemEntryOf(std::string_view text, const toolkit::DateMarks& marks) {
  text = toolkit::Trim(text);
  if (const auto moment = data::DateTime::FromText(text)) return moment->IsoText();
  const std::string_view day = text.substr(0, text.find(' '));
  const auto date = toolkit::FormataData(day, {}, marks, {});
  if (!date || day.size() < 8) return {};
  const auto moment = data::DateTime::FromText(date->neutral + std::string(text.substr(day.size())));
  return moment ? moment->IsoText() : date->neutral + "T00:00:00";
}

}  // namespace korvel::billing
