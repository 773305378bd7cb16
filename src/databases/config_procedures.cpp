#include "databases/config_procedures.h"

#include <array>

namespace korvel::databases {

namespace {

// The body's "begin" closes right behind the second "if" and the rest stands outside it, deliberately kept so.
constexpr std::string_view kInsertLog = R"(CREATE PROCEDURE InsertLog
  @CodEmpresa varchar(4),
  @DescEmpresa varchar(50),
  @Modulo varchar(2),
  @Accao varchar(1),
  @Registo text,
  @FormCaption varchar(100),
  @Valor money,
  @UID varchar(20),
  @DataMov varchar(10) = '',
  @Hora varchar(5) = ''
AS
declare @Data varchar(10)
begin
  set @Data = convert(varchar(10), getdate(), 120)
  if @DataMov = '' set @DataMov = @Data
  if @Hora = '' set @Hora = convert(varchar(5), getdate(), 108)
end
insert into LogGeral (Utilizador, CodEmpresa, DescEmpresa, Modulo, Accao, FormCaption, Valor, Data, DataMov, Hora, Conteudo)
values (@UID, @CodEmpresa, @DescEmpresa, @Modulo, @Accao, @FormCaption, @Valor, @Data, @DataMov, @Hora, @Registo)
return 0
)";

constexpr std::string_view kGetAcessoIndependente = R"(CREATE PROCEDURE GetAcessoIndependente
  @Empresa varchar(4)
AS
declare @Acesso int
set @Acesso = 0
select @Acesso = isnull(AcessoIndependente, 0) from Empresas where Codigo = @Empresa
return @Acesso
)";

constexpr std::string_view kGetAcessoPrincipal = R"(CREATE PROCEDURE GetAcessoPrincipal
  @Empresa varchar(4) output
AS
select @Empresa = Codigo from Empresas where AcessoPrincipal = 1
return 0
)";

constexpr std::string_view kVerSeExisteCopiaAcessosBase = R"(CREATE PROCEDURE VerSeExisteCopiaAcessosBase
  @Chave varchar(100) output,
  @Utilizador varchar(128),
  @Empresa varchar(4),
  @Form varchar(50) output
AS
select @Chave = Chave, @Form = Form from Acessos
where Utilizador = @Utilizador and Empresa = @Empresa and Chave = @Chave
return 0
)";

constexpr std::array<ProcedureDefinition, 4> kProcedures{{
    {"InsertLog", kInsertLog},
    {"GetAcessoIndependente", kGetAcessoIndependente},
    {"GetAcessoPrincipal", kGetAcessoPrincipal},
    {"VerSeExisteCopiaAcessosBase", kVerSeExisteCopiaAcessosBase},
}};

}  // namespace

std::span<const ProcedureDefinition> ConfigProcedures() {
  return kProcedures;
}

}  // namespace korvel::databases
