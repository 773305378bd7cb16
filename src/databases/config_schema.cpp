#include "databases/config_schema.h"

#include <array>

#include "databases/default_hosts.h"

namespace korvel::databases {

namespace {

using Column = ColumnDefinition;
using Key = KeyDefinition;

constexpr std::string_view kLogin = "varchar(128)";
constexpr std::string_view kNonclusteredKey = "PRIMARY KEY NONCLUSTERED";
constexpr std::string_view kNumber = "[NumRegisto]";

constexpr std::array<Column, 9> kAcessos{{
    {"Utilizador", kLogin},
    {"Chave", "varchar(100)"},
    {"Chave1", "varchar(100)"},
    {"Form", "varchar(50)"},
    {"Ctrl", "varchar(50)"},
    {"CtrlCap", "varchar(50)"},
    {"Value", "smallint"},
    {"Empresa", "varchar(4)"},
    {"Caption", "varchar(100)"},
}};
constexpr std::array<Key, 2> kAcessosKeys{{
    {"IX_Acessos", "UNIQUE NONCLUSTERED", "[Empresa], [Utilizador], [Chave]"},
    {"IX_Acessos_2", "UNIQUE NONCLUSTERED", "[Utilizador], [Chave], [Empresa]"},
}};

constexpr std::array<Column, 1> kAdmins{{{"Uid", "varchar(20)"}}};

constexpr std::array<Column, 6> kEmpresas{{
    {"Codigo", "varchar(4)"},
    {"Descricao", "varchar(50)"},
    {"Utilizador", kLogin},
    {"DataSys", "datetime DEFAULT getdate()"},
    {"AcessoPrincipal", "smallint"},
    {"AcessoIndependente", "smallint"},
}};

constexpr std::array<Column, 2> kUserDatabases{{{"LoginName", kLogin}, {"Db_Name", "varchar(128)"}}};
constexpr std::array<Key, 2> kUserDatabasesKeys{{
    {"PK_UserDatabases", kNonclusteredKey, kNumber},
    {"IX_UserDatabases", "UNIQUE CLUSTERED", "[LoginName], [Db_Name]"},
}};

constexpr std::array<Column, 3> kUserManagement{{
    {"LoginName", kLogin},
    {"AdminTasks", "smallint"},
    {"AllDatabases", "smallint"},
}};
constexpr std::array<Key, 2> kUserManagementKeys{{
    {"PK_UserManagement", kNonclusteredKey, kNumber},
    {"IX_UserManagement", "UNIQUE CLUSTERED", "[LoginName]"},
}};

constexpr std::array<Column, 2> kUsersEmpresas{{{"Login", "varchar(20)"}, {"DBName", "varchar(20)"}}};
constexpr std::array<Key, 1> kUsersEmpresasKeys{{{"PK_UsersEmpresas", kNonclusteredKey, kNumber}}};

constexpr std::array<Column, 11> kLogGeral{{
    {"Utilizador", kLogin},
    {"CodEmpresa", "varchar(4)"},
    {"DescEmpresa", "varchar(50)"},
    {"Modulo", "varchar(2)"},
    {"Accao", "varchar(1)"},
    {"FormCaption", "varchar(100)"},
    {"Valor", "money"},
    {"Data", "varchar(10)"},
    {"DataMov", "varchar(10)"},
    {"Hora", "varchar(10)"},
    {"Conteudo", "text"},
}};
constexpr std::array<Key, 1> kLogGeralKeys{{{"PK_LogGeral", kNonclusteredKey, kNumber}}};

constexpr std::array<Column, 1> kConfigura{{{"PathBackup", "text"}}};

constexpr std::array<Column, 17> kEntidade{{
    {"NomeEntidade", "varchar(50)"},
    {"Morada", "varchar(50)"},
    {"Local", "varchar(50)"},
    {"CodigoPostal", "varchar(50)"},
    {"Telefones", "varchar(50)"},
    {"Contribuinte", "varchar(50)"},
    {"Utilizador", kLogin},
    {"DataSys", "smalldatetime"},
    {"SMTPServer", "varchar(50)", Stage::Parameters, kSmtpHostLiteral},
    {"SMTPLogin", "varchar(50)", Stage::Parameters},
    {"SMTPPassword", "varchar(50)", Stage::Parameters},
    {"EmailOrigem", "varchar(50)", Stage::Parameters, "''"},
    {"FtpUser", "varchar(20)", Stage::Parameters, "''"},
    {"FtpPWD", "varchar(20)", Stage::Parameters, "''"},
    {"FTPPath", "varchar(20)", Stage::Parameters, "''"},
    {"FtpServer", "varchar(30)", Stage::Parameters, kFtpHostLiteral},
    {"Versao", "varchar(50)", Stage::Version, "''"},
}};

constexpr std::array<Column, 1> kConfigActualiza{{{"Versao", "varchar(50)", Stage::Version}}};

constexpr std::array<TableDefinition, 10> kConfigTables{{
    {"Acessos", Stage::Base, kAcessos, {}, false, kAcessosKeys},
    {"Admins", Stage::Base, kAdmins, "PK_Admins"},
    {"Empresas", Stage::Base, kEmpresas},
    {"UserDatabases", Stage::Base, kUserDatabases, {}, false, kUserDatabasesKeys},
    {"UserManagement", Stage::Base, kUserManagement, {}, false, kUserManagementKeys},
    {"UsersEmpresas", Stage::Base, kUsersEmpresas, {}, false, kUsersEmpresasKeys},
    {"LogGeral", Stage::Base, kLogGeral, {}, false, kLogGeralKeys},
    {"Configura", Stage::Base, kConfigura, "PK_Configura"},
    {"Entidade", Stage::Base, kEntidade},
    {"Actualiza", Stage::Version, kConfigActualiza, {}, true},
}};

}  // namespace

std::span<const TableDefinition> ConfigSchema() {
  return kConfigTables;
}

}  // namespace korvel::databases
