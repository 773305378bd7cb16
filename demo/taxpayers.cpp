#include "demo/taxpayers.h"

#include <fmt/format.h>

#include <array>
#include <string_view>

namespace korvel::demo {

namespace {

struct Town {
  std::string_view name;
  std::string_view district;
  int postalArea;  // first four digits of the postal code
};

constexpr Town kTowns[] = {
    {"Lisboa", "Lisboa", 1200},
    {"Porto", "Porto", 4050},
    {"Braga", "Braga", 4700},
    {"Évora", "Évora", 7000},
    {"Coimbra", "Coimbra", 3000},
    {"Setúbal", "Setúbal", 2900},
    {"Viana do Castelo", "Viana do Castelo", 4900},
    {"Póvoa de Varzim", "Porto", 4490},
    {"São João da Madeira", "Aveiro", 3700},
    {"Vila Nova de Famalicão", "Braga", 4760},
    {"Olhão", "Faro", 8700},
    {"Ponta Delgada", "Açores", 9500},
    {"Angra do Heroísmo", "Açores", 9700},
    {"Funchal", "Madeira", 9000},
    {"Câmara de Lobos", "Madeira", 9300},
    {"Torres Vedras", "Lisboa", 2560},
};

constexpr std::string_view kStreets[] = {
    "Rua da Conceição",  "Avenida da República",  "Travessa do Forno",  "Praça de São Tiago",
    "Rua D'Ávila",       "Largo da Misericórdia", "Rua dos Mercadores", "Estrada Nacional",
    "Rua Brito & Cunha", "Beco do Açougue",
};

constexpr std::string_view kSurnames[] = {
    "Magalhães", "D'Ávila",  "Conceição", "Sá",      "Guimarães", "d'Orey", "Simões",
    "Araújo",    "Brandão",  "Quintão",   "Falcão",  "Esteves",   "Luís",   "Antão",
    "Müller",    "Peñalver", "Gonçalves", "Vilhena", "Bragança",  "Ferrão",
};

constexpr std::string_view kTrades[] = {
    "Padaria",  "Construções", "Electricidade", "Têxteis",    "Livraria",    "Auto-Peças",
    "Cerâmica", "Transportes", "Drogaria",      "Confecções", "Informática", "Pastelaria",
    "Móveis",   "Serralharia", "Óptica",        "Farmácia",
};

constexpr std::string_view kForeignCountries[] = {"ES", "FR", "DE", "IT"};

std::string CompanyName(const Town& town, Random& random) {
  const std::string_view trade = random.Pick(kTrades);
  const std::string_view first = random.Pick(kSurnames);
  const std::string_view second = random.Pick(kSurnames);
  switch (random.Below(5)) {
    case 0:
      return fmt::format("{} & {}, Lda", first, second);
    case 1:
      return fmt::format("{} {} & Filhos, S.A.", trade, first);
    case 2:
      return fmt::format("{} de {}, Lda", trade, town.name);
    case 3:
      return fmt::format("Irmãos {}, Lda", first);
    default:
      return fmt::format("{} {} Unipessoal, Lda", trade, second);
  }
}

Taxpayer PortugueseCompany(std::int64_t eightDigits, Random& random) {
  const Town& town = random.Pick(kTowns);
  Taxpayer made;
  made.taxNumber = PortugueseTaxNumber(eightDigits);
  made.country = "PT";
  made.name = CompanyName(town, random);
  made.street = random.Pick(kStreets);
  made.doorNumber = fmt::format("{}", random.Between(1, 480));
  made.town = town.name;
  const auto place = random.Between(1, 999);
  made.postalCode = fmt::format("{:04}-{:03}", town.postalArea + random.Below(90), place);
  made.district = town.district;
  made.telephone = fmt::format("2{:08}", random.Below(100000000));
  made.mail = fmt::format("geral{}@exemplo.pt", eightDigits % 100000);
  return made;
}

void MoveAbroad(Taxpayer& company, std::int64_t index, Random& random) {
  company.country = random.Pick(kForeignCountries);
  company.taxNumber = fmt::format("B{:08}", 41000000 + index * 17);
  company.town = "Sevilla";
  company.postalCode = fmt::format("{:05}", 41000 + random.Below(99));
  company.district.clear();
}

/// What careless typing leaves in real books: blanks in numbers, lower-case or missing countries, missing
/// addresses. A customer without a country would come out as "DESCONHECIDO", which the schema does not take.
void MakeUntidy(Taxpayer& company, Kind kind, std::int64_t index) {
  if (index % 17 == 5) company.taxNumber.insert(3, " ");
  if (index % 19 == 7) company.country = "pt";
  if (index % 23 == 9 && kind == Kind::Supplier) company.country.clear();
  if (index % 29 == 11) company.mail.clear();
  if (index % 31 == 13) company.postalCode.clear();
}

constexpr std::size_t kPersons = 24;

Taxpayer FinalConsumer() {
  Taxpayer nobody;
  nobody.taxNumber = "999999990";
  nobody.country = "PT";
  nobody.name = "Consumidor final";
  return nobody;
}

}  // namespace

std::string PortugueseTaxNumber(std::int64_t eightDigits) {
  const std::string digits = fmt::format("{:08}", eightDigits);
  int sum = 0;
  for (std::size_t i = 0; i < 8; ++i) sum += (digits[i] - '0') * static_cast<int>(9 - i);
  const int remainder = sum % 11;
  const int check = remainder < 2 ? 0 : 11 - remainder;
  return digits + static_cast<char>('0' + check);
}

std::string PostalCodeOf(const Taxpayer& who) {
  return who.postalCode.empty() ? std::string(kNoPostalCode) : who.postalCode;
}

std::string AddressOf(const Taxpayer& who) {
  return who.street.empty() ? "Desconhecida" : who.street + ", " + who.doorNumber;
}

std::vector<Taxpayer> MakePersons(Kind kind, std::string_view country) {
  std::vector<Taxpayer> made(kPersons);
  for (std::size_t i = 0; i < kPersons; ++i) {
    Taxpayer& who = made[i];
    const Town& town = kTowns[i % std::size(kTowns)];
    const std::int64_t firstNumber = kind == Kind::Customer ? 20100000 : 21700000;
    who.taxNumber = PortugueseTaxNumber(firstNumber + static_cast<std::int64_t>(i) * 101);
    who.country = i % 3 == 0 ? country : "PT";
    who.name = fmt::format("Particular n.º {}", i + 1);
    who.street = kStreets[i % std::size(kStreets)];
    who.doorNumber = fmt::format("{}", i + 1);
    who.town = town.name;
    if (i % 7 != 5) who.postalCode = fmt::format("{:04}-{:03}", town.postalArea, i + 1);
  }
  if (kind == Kind::Customer) made.front() = FinalConsumer();
  return made;
}

std::vector<Taxpayer> MakeTaxpayers(Kind kind, std::int64_t count, Random& random) {
  const std::int64_t firstNumber = kind == Kind::Customer ? 50010000 : 50400000;
  std::vector<Taxpayer> made;
  made.reserve(static_cast<std::size_t>(count));
  for (std::int64_t i = 0; i < count; ++i) {
    Taxpayer company = PortugueseCompany(firstNumber + i * 13, random);
    if (i % 11 == 3) {
      MoveAbroad(company, firstNumber + i, random);
    } else {
      MakeUntidy(company, kind, i);
    }
    company.selfBilling = kind == Kind::Customer && i % 97 == 2;
    made.push_back(std::move(company));
  }
  return made;
}

}  // namespace korvel::demo
