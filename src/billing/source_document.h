#pragma once

#include <optional>
#include <string>
#include <vector>

#include "data/currency.h"

/// One sales document as the billing product holds it: plain values, NULL read as blank or zero.
namespace korvel::billing {

using data::Currency;

struct DocumentHeader {
  /// The customer whose row is looked up: blank for a removed document, which deliberately counts as one without.
  std::string codigo;
  std::string tipo;
  std::string numero;
  std::string ano;
  std::string data;      // YYYY-MM-DD
  std::string dataVenc;  // YYYY-MM-DD or blank
  /// Blank, or when the document was recorded, as YYYY-MM-DDTHH:MM:SS.
  std::string systemEntry;
  std::string pagaComo;
  Currency valor;
  Currency desconto;
  Currency iva;
  Currency totalDoc;
  Currency valorIrs;
  std::string tabIva1;
  Currency taxIva1;
  std::string contribuinte;
  std::string armazem;
  std::string hash;
  std::string hashControl;
  std::string observa;
  std::string numeroRecuperado;
  std::string serieRecuperado;
  std::string carga;
  std::string descarga;
  bool removed = false;  // lives in the log of removed documents
};

struct DocumentLine {
  std::string codigo;  // product
  std::string descricao;
  Currency quantNormal;
  std::string unidade;
  std::string tipoGuia;
  std::string numGuia;
  std::string dataGuia;
  std::string numEncomenda;
  Currency valorIliq;
  Currency totalDesconto;
  std::string ivaTabela;
  Currency ivaTaxa;
  std::string armazem;
  std::string identifica;
  std::string identificaRelacionado;
  /// The column that the parameters choose for the line's description; nothing for NULL.
  std::optional<std::string> descLinha;
};

/// A charge that stands behind a line, found by the line's `identifica` and product.
struct ExtraCharge {
  std::string identifica;
  std::string produto;
  std::string codigoImposto;
  Currency imposto;
  Currency valorUnitario;
  std::string tabIva;
  Currency taxaIva;
};

/// A document kept as free text.
struct FreeTextItem {
  std::string item;
  std::string itemDesc;
  std::string texto;  // the lines that are not blank, joined by a blank
  Currency valorInc;
  Currency valorDesc;
  std::string ivaTab;
  Currency ivaTaxa;
};

struct DocumentLink {
  std::string tipo;
  std::string ano;
  std::string numero;
};

struct SourceDocument {
  DocumentHeader header;
  std::vector<DocumentLine> lines;
  std::vector<ExtraCharge> charges;      // of all lines, in their order
  std::optional<FreeTextItem> freeText;  // looked at only without lines
  std::vector<DocumentLink>
      links;  // of types that refer to other documents: those it names, then those naming it
};

}  // namespace korvel::billing
