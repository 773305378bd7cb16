#include "security/activity_log.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "security/log_listing.h"
#include "security_world.h"

namespace korvel::security {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kLine =
    "select Utilizador,CodEmpresa,DescEmpresa,Modulo,Accao,FormCaption,Valor,DataMov,Hora,Conteudo from "
    "LogGeral order by NumRegisto";

class ActivityLog : public testing::Test, protected test::SecurityWorld {
 protected:
  ActivityLog() {
    server.session.gCodEmpresa = "0001";
    server.session.gDescEmpresa = "Padaria D'Avila";
  }
  /// A line as if it had been written then.
  void Add(std::string_view user, std::string_view company, std::string_view codes, std::string_view data,
           std::string_view hora, std::string_view text) {
    const auto blank = codes.find(' ');
    Config()->Execute(
        "insert into LogGeral (Utilizador,CodEmpresa,DescEmpresa,Modulo,Accao,FormCaption,Valor,Data,"
        "DataMov,Hora,Conteudo) values (?,?,?,?,?,?,?,?,?,?,?)",
        {user, company, "Nome", codes.substr(0, blank), codes.substr(blank + 1), "Janela",
         data::Currency::FromUnits(1234500), data, data, hora, text});
  }
  std::vector<std::string> Found(const LogFilter& filter, std::string_view company = "0001") {
    std::vector<std::string> texts;
    for (const LogEntry& entry : SearchLog(*Config(), company, filter)) texts.push_back(entry.conteudo);
    return texts;
  }
};

TEST_F(ActivityLog, LineHasItsMovementOrTheServersDateAndTime) {
  ASSERT_TRUE(InsertLog(context, {.module = module::kTables,
                                  .action = action::kNew,
                                  .text = "2010 - Padaria D'Avila",
                                  .caption = "Header's",
                                  .value = data::Currency::FromUnits(125000),
                                  .dataMov = "2010-12-31",
                                  .hora = "23:59"}));
  EXPECT_THAT(Rows(kLine), ElementsAre("ana\t0001\tPadaria D'Avila\tTB\tN\tHeader's\t12.5\t2010-12-31\t"
                                       "23:59\t2010 - Padaria D'Avila"));
  EXPECT_EQ(One("select count(*) from LogGeral where Data=convert(varchar(10),getdate(),120)"), "1")
      << "when it was written, not when the movement was";
  ASSERT_TRUE(InsertLog(context, {module::kLogIn, action::kLogIn, "Entrou na Empresa 0001", "Log In"}));
  EXPECT_EQ(One("select count(*) from LogGeral where DataMov=Data and Hora like '[0-2][0-9]:[0-5][0-9]'"),
            "1");
}

TEST_F(ActivityLog, TooLongTextsAreCutAndOtherCompaniesNamed) {
  server.session.gUtilizador = "MAQUINA\\utilizador-comprido";
  server.session.gDescEmpresa = std::string(60, 'x');
  const std::string text(9000, 'y');
  ASSERT_TRUE(InsertLog(context, {.module = "UTX",
                                  .action = "AB",
                                  .text = text,
                                  .caption = std::string(70, 'c') + std::string(70, 'd'),
                                  .company = "0002"}));
  EXPECT_THAT(
      Rows("select Utilizador,CodEmpresa,len(DescEmpresa),Modulo,Accao,len(FormCaption) from LogGeral"),
      ElementsAre("MAQUINA\\utilizador-c\t0002\t50\tUT\tA\t100"));
  EXPECT_EQ(One("select Conteudo from LogGeral"), text);
}

TEST_F(ActivityLog, FailureIsSilentAndLeavesTheErrorOutputs) {
  server.session.gErroNumero = 7;
  server.session.gErroDescricao = "antes";
  Script("drop procedure InsertLog");
  EXPECT_FALSE(InsertLog(context, {module::kTables, action::kDelete, "x", "y"}));
  server.Run("master", "drop database KorvelConfig");
  EXPECT_FALSE(InsertLog(context, {module::kTables, action::kDelete, "x", "y"}));
  EXPECT_THAT(server.dialogs.messages, IsEmpty());
  EXPECT_THAT(server.dialogs.alerts, IsEmpty());
  EXPECT_EQ(server.session.gErroNumero, 7);
  EXPECT_EQ(server.session.gErroDescricao, "antes");
}

TEST(LogFilter, OpensOnTheLastThreeDays) {
  const LogFilter filter = DefaultLogFilter(test::FixedClock({2026, 3, 1, 10, 0, 0, 0}));
  EXPECT_EQ(filter.dataInicial, "2026-02-27");
  EXPECT_EQ(filter.dataFinal, "2026-03-01");
}

TEST_F(ActivityLog, Filters) {
  Add("ana", "0001", "TB N", "2026-01-10", "09:00", "a");
  Add("rui", "0001", "TB E", "2026-01-11", "10:30", "b");
  Add("ana", "0001", "G P", "2026-01-12", "11:00", "c");
  Add("o'neil", "0001", "I I", "2026-01-12", "23:00", "d");
  Add("ana", "0002", "TB N", "2026-01-11", "10:00", "outra");
  const struct {
    LogFilter filter;
    std::vector<std::string> found;
  } cases[] = {
      {{}, {"a", "b", "c", "d"}},
      {{.modulo = "TB"}, {"a", "b"}},
      {{.accao = "E"}, {"b"}},
      {{.modulo = "TB", .accao = "P"}, {}},
      {{.dataInicial = "2026-01-11", .dataFinal = "2026-01-12"}, {"b", "c", "d"}},
      {{.dataFinal = "2026-01-10"}, {"a"}},
      {{.utilizador = "ANA"}, {"a", "c"}},
      {{.utilizador = "todos"}, {"a", "b", "c", "d"}},
      {{.utilizador = "o'neil"}, {"d"}},
      {{.utilizador = "x' or '1'='1"}, {}},
      {{.horaInicial = "10:00", .horaFinal = "11:00"}, {"b", "c"}},
  };
  for (const auto& [filter, found] : cases) EXPECT_EQ(Found(filter), found);
  EXPECT_THAT(Found({}, "0002"), ElementsAre("outra"));
  EXPECT_THAT(Found({}, "0001' or '1'='1"), IsEmpty());
}

TEST_F(ActivityLog, ListingIsGroupedByUserThenCompany) {
  const auto line = [](std::string user, std::string company, std::string module, std::string action,
                       std::string text) {
    return LogEntry{
        user,         company, "Nome",  module, action, "Janela", data::Currency::FromUnits(12345000),
        "2026-01-12", "",      "09:00", text};
  };
  const std::vector<LogEntry> entries{
      line("rui", "0001", "TB", "N", "1"), line("Ana", "0002", "TB", "E", "2"),
      line("ana", "0001", "G", "P", "3"),  line("rui", "0001", "T", "T", "4"),
      line("ANA", "0002", "UT", "A", "5"), line("ana", "0001", "I", "I", "6")};
  EXPECT_FALSE(MakeLogListing(context, {}, {}));
  EXPECT_EQ(server.dialogs.LastText(), "Não Existem Registos a Imprimir !");
  EXPECT_EQ(server.dialogs.LastTitle(), "Informação :");
  const LogFilter filter{
      .accao = "E", .dataInicial = "2026-01-10", .horaInicial = "08:00", .horaFinal = "09:00"};
  const auto listing = MakeLogListing(context, filter, entries);
  ASSERT_TRUE(listing);
  std::vector<std::string> lines;
  for (const LogOfUser& user : listing->users) {
    lines.push_back(user.title);
    for (const LogOfCompany& company : user.companies) {
      lines.push_back(company.title);
      for (const LogCells& cells : company.lines) lines.push_back(cells[0] + "|" + cells[4] + "|" + cells[2]);
    }
  }
  EXPECT_THAT(lines,
              ElementsAre("Utilizador : ana", "Empresa : 0001 - Nome", "G|Não Def.|3", "I|Não Def.|6",
                          "Empresa : 0002 - Nome", "Tabelas|Eliminação|2", "UT|Alteração|5",
                          "Utilizador : rui", "Empresa : 0001 - Nome", "Tabelas|Novo|1", "Todos|Todas|4"));
  EXPECT_THAT(listing->users.front().companies.front().lines.front(),
              ElementsAre("G", "Janela", "3", "1.234,50", "Não Def.", "12-01-2026", "09:00"));
  EXPECT_THAT(
      listing->head,
      ElementsAre(testing::Pair("Acção : ", "Eliminação"), testing::Pair("Módulo : ", "Todos"),
                  testing::Pair("Utilizador :", "Todos"), testing::Pair("Data Inicial :", "10-01-2026"),
                  testing::Pair("Data Final :", ""), testing::Pair("Hora :", "08:00 - 09:00")));
}

}  // namespace
}  // namespace korvel::security
