#include "demo/catalogue.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <stdexcept>
#include <utility>

#include "demo/brevant_schema.h"
#include "demo/table_writer.h"

namespace korvel::demo {

namespace {

struct CodeName {
  std::string_view code;
  std::string_view name;
};
constexpr CodeName kGroups[] = {{"PAO", "Pão & padaria"},
                                {"PAS", "Pastelaria"},
                                {"BEB", "Bebidas"},
                                {"SER", "Serviços"},
                                {"ACT", "Activos do imobilizado"}};
constexpr CodeName kFamilies[] = {{"TRI", "Trigo"},
                                  {"MIL", "Milho & centeio"},
                                  {"DOC", "Doces d'ovos"},
                                  {"AGU", "Águas"},
                                  {"GER", "Geral"}};
constexpr CodeName kSubFamilies[] = {{"FRE", "Fresco"}, {"EMB", "Embalado"}, {"GER", "Geral"}};
constexpr CodeName kSituations[] = {{"A", "Activo"}, {"D", "Descontinuado"}};

struct Goods {
  std::string_view name;
  std::string_view group;
  std::string_view family;
  std::string_view subFamily;
  Rate rate;
  Cents price;  // of the smallest size
};
constexpr Goods kGoods[] = {
    {"Pão de mistura", "PAO", "TRI", "FRE", Rate::Reduced, 95},
    {"Broa de milho", "PAO", "MIL", "FRE", Rate::Reduced, 140},
    {"Pão d'água", "PAO", "TRI", "FRE", Rate::Reduced, 75},
    {"Folar da Páscoa", "PAS", "DOC", "FRE", Rate::Normal, 690},
    {"Pastel de nata", "PAS", "DOC", "FRE", Rate::Normal, 110},
    {"Queijada da Graciosa", "PAS", "DOC", "EMB", Rate::Normal, 125},
    {"Massa sovada", "PAS", "TRI", "FRE", Rate::Normal, 480},
    {"Água mineral", "BEB", "AGU", "EMB", Rate::Intermediate, 85},
    {"Sumo de ananás", "BEB", "GER", "EMB", Rate::Intermediate, 165},
};
constexpr std::string_view kSizes[] = {"pequeno", "médio", "grande", "familiar", "caixa de 6", "caixa de 12"};

Product GoodsOf(std::size_t index) {
  const Goods& goods = kGoods[index % std::size(kGoods)];
  const std::size_t size = index / std::size(kGoods);
  Product made;
  made.code = fmt::format("{}{:05}", goods.group, index + 1);
  made.description = fmt::format("{} {}", goods.name, kSizes[size % std::size(kSizes)]);
  if (size >= std::size(kSizes)) made.description += fmt::format(" - lote {}", size / std::size(kSizes));
  made.byWeight = goods.group == "PAO" && size % 2 == 1;
  made.unit = made.byWeight ? "kg" : "Uni";
  made.group = goods.group;
  made.family = goods.family;
  made.subFamily = goods.subFamily;
  made.rate = goods.rate;
  made.price = goods.price * static_cast<Cents>(size % std::size(kSizes) + 1);
  return made;
}

Product Special(std::string code, std::string description, std::string_view group, Rate rate, Cents price) {
  Product made;
  made.code = std::move(code);
  made.description = std::move(description);
  made.unit = "Uni";
  made.group = group;
  made.family = made.subFamily = "GER";
  made.rate = rate;
  made.price = price;
  made.service = group == "SER";
  return made;
}

void WriteNames(data::Connection& brevant, const databases::TableDefinition& table,
                std::span<const CodeName> rows) {
  TableWriter names(brevant, table);
  for (const CodeName& row : rows) names.Add({row.code, row.name});
  names.Finish();
}

void WriteProducts(data::Connection& brevant, const std::vector<Product>& products) {
  TableWriter produtos(brevant, brevant::kProdutos);
  for (const Product& product : products) {
    produtos.Add({product.code, product.description, product.service, product.carriage, product.group,
                  product.family, product.subFamily, "A"});
  }
  produtos.Finish();
}

}  // namespace

Catalogue::Catalogue(std::int64_t count) {
  const std::size_t goods = std::max<std::size_t>(static_cast<std::size_t>(count), 2 * std::size(kGoods));
  for (std::size_t i = 0; i < goods; ++i) {
    products_.push_back(GoodsOf(i));
    byRate_[static_cast<std::size_t>(products_.back().rate)].push_back(i);
  }
  products_.push_back(Special("PORTES", "Portes de entrega", "SER", Rate::Normal, 500));
  products_.back().carriage = true;
  products_.push_back(Special("FORMACAO", "Curso de panificação", "SER", Rate::Exempt, 7500));
  byRate_[static_cast<std::size_t>(Rate::Exempt)].push_back(products_.size() - 1);
  products_.push_back(Special("EQUIPUSADO", "Equipamento usado de padaria", "ACT", Rate::Normal, 120000));
  products_.push_back(Special("SEMNOME", "", "PAS", Rate::Normal, 350));
}

const Product& Catalogue::Pick(Rate rate, Random& random) const {
  const auto& places = byRate_[static_cast<std::size_t>(rate)];
  return products_[places[static_cast<std::size_t>(random.Below(static_cast<std::int64_t>(places.size())))]];
}

const Product& Catalogue::Named(std::string_view code) const {
  const auto found = std::ranges::find(products_, code, &Product::code);
  if (found == products_.end()) throw std::out_of_range("no product " + std::string(code));
  return *found;
}

void WriteCatalogue(data::Connection& brevant, const Catalogue& catalogue) {
  const CodeName items[] = {{kCatering.code, kCatering.description},
                            {kConsulting.code, kConsulting.description}};
  const CodeName charges[] = {{kBagCharge.code, kBagCharge.description},
                              {kPackagingCharge.code, kPackagingCharge.description}};
  WriteProducts(brevant, catalogue.Products());
  WriteNames(brevant, brevant::kTabGrupoPro, kGroups);
  WriteNames(brevant, brevant::kTabFamPro, kFamilies);
  WriteNames(brevant, brevant::kTabSubFamPro, kSubFamilies);
  WriteNames(brevant, brevant::kTabSituacao, kSituations);
  WriteNames(brevant, brevant::kTabItem, items);
  WriteNames(brevant, brevant::kImpostosConfig, charges);
}

}  // namespace korvel::demo
