#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/option_lists.h"
#include "databases/backups.h"
#include "databases/companies.h"
#include "databases/company_editor.h"
#include "databases/company_lock.h"
#include "databases/version_check.h"
#include "session/connections.h"
#include "session/entry/company_list.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

using databases::CompanyCard;
using databases::CompanyUser;

/// The fields of the form that a creation and a change share.
class CardOptions {
 public:
  void Declare(CLI::App& app, bool describes) {
    CLI::Option* text = app.add_option("--descricao", description_, "Nome da empresa")->type_name("TEXTO");
    text->required(describes);
    app.add_option("--principal", main_, "Os seus acessos valem para as outras empresas")->type_name("S|N");
    app.add_option("--independente", independent_, "Os acessos desta empresa são independentes")
        ->type_name("S|N");
    users_ = app.add_option("--utilizadores", logins_, "Logins autorizados a trabalhar nesta empresa")
                 ->type_name("LOGIN,...");
  }

  /// What was not given stays as the card has it. Throws UsageError, Refusal for a login that is not there.
  void Fill(CompanyCard& card) const {
    if (!description_.empty()) card.company.description = description_;
    if (!main_.empty()) card.company.main = YesOrNo("--principal", main_);
    if (!independent_.empty()) card.company.independent = YesOrNo("--independente", independent_);
    if (users_->count() == 0) return;
    for (CompanyUser& user : card.users) user.ticked = false;
    for (const std::string& login : CodeList(logins_)) Find(card, login).ticked = true;
  }

 private:
  static CompanyUser& Find(CompanyCard& card, const std::string& login) {
    const auto found = std::ranges::find_if(
        card.users, [&](const CompanyUser& user) { return toolkit::SameIgnoringCase(user.login, login); });
    if (found == card.users.end()) throw Refusal(fmt::format("O utilizador {} não existe.", login));
    return *found;
  }

  std::string description_;
  std::string main_;
  std::string independent_;
  std::string logins_;
  CLI::Option* users_ = nullptr;
};

class EmpresaCriar final : public Command {
 public:
  std::string_view Path() const override { return "empresa criar"; }
  std::string_view Summary() const override { return "Cria uma empresa com a sua base de dados"; }
  bool MakesServer() const override { return true; }

  void Declare(CLI::App& app) override {
    code_ = app.add_option("--codigo", typed_, "Código, até quatro algarismos (o seguinte, se não for dado)")
                ->type_name("CÓDIGO");
    options_.Declare(app, true);
  }

  bool Run(Workspace& workspace) override {
    workspace.LoginAsAdministrator();
    CompanyCard card = databases::NewCompanyCard(*workspace.Open(session::kConfigDatabase));
    if (code_->count() > 0) card.company.code = typed_;
    options_.Fill(card);
    if (!databases::CreateFromCard(workspace.Context(), card)) return false;
    workspace.EnsureBaseRights();
    const std::string code = fmt::format("{:0>4}", toolkit::Trim(card.company.code));
    workspace.Out() << fmt::format("Empresa {} criada na base de dados {}.\n", code,
                                   databases::CompanyDatabase(code));
    return true;
  }

 private:
  CLI::Option* code_ = nullptr;
  std::string typed_;
  CardOptions options_;
};

class EmpresaAlterar final : public Command {
 public:
  std::string_view Path() const override { return "empresa alterar"; }
  std::string_view Summary() const override {
    return "Altera o nome, as marcas e os utilizadores da empresa de --empresa";
  }
  void Declare(CLI::App& app) override { options_.Declare(app, false); }

  bool Run(Workspace& workspace) override {
    workspace.LoginAsAdministrator();
    const std::string code = workspace.ListedCompany();
    auto card = databases::LoadCompanyCard(*workspace.Open(session::kConfigDatabase), code);
    if (!card) throw Refusal(fmt::format("A empresa {} não existe.", code));
    options_.Fill(*card);
    return databases::ChangeFromCard(workspace.Context(), *card);
  }

 private:
  CardOptions options_;
};

class EmpresaListar final : public Command {
 public:
  std::string_view Path() const override { return "empresa listar"; }
  std::string_view Summary() const override { return "Mostra as empresas a que o login acede"; }
  void Declare(CLI::App&) override {}

  bool Run(Workspace& workspace) override {
    workspace.Login();
    workspace.Out() << "Código\tDescrição\tBase de dados\tPrincipal\tIndependente\tBloqueada\tVersão\n";
    for (const session::CompanyLine& company : workspace.Companies()) {
      workspace.Out() << fmt::format("{}\t{}\t{}\t{}\t{}\t{}\t{}\n", company.code, company.description,
                                     databases::CompanyDatabase(company.code), Mark(company.main),
                                     Mark(company.independent), Mark(company.readOnly), company.version);
    }
    return true;
  }

 private:
  static std::string_view Mark(bool set) { return set ? "S" : "N"; }
};

/// A command of the menus on the company of `--empresa`, which it does not enter.
class OnCompany : public Command {
 public:
  OnCompany(std::string_view path, std::string_view summary, bool (*run)(Workspace&, const std::string&))
      : path_(path), summary_(summary), run_(run) {}

  std::string_view Path() const override { return path_; }
  std::string_view Summary() const override { return summary_; }
  void Declare(CLI::App&) override {}
  bool Run(Workspace& workspace) override {
    workspace.LoginAsAdministrator();
    return run_(workspace, workspace.ListedCompany());
  }

 private:
  std::string_view path_;
  std::string_view summary_;
  bool (*run_)(Workspace&, const std::string&);
};

bool Delete(Workspace& workspace, const std::string&) {
  return workspace.DeleteListedCompany();
}

template <bool kBlocked>
bool SetBlocked(Workspace& workspace, const std::string& code) {
  return databases::SetCompanyBlocked(workspace.Context(), code, kBlocked);
}

bool Verify(Workspace& workspace, const std::string& code) {
  for (const std::string& database :
       {databases::CompanyDatabase(code), std::string(session::kConfigDatabase)}) {
    if (!databases::VerificaBaseDados(workspace.Context(), database)) return false;
    workspace.Out() << fmt::format("{}: verificada.\n", database);
  }
  return true;
}

}  // namespace

CommandList MakeEmpresa() {
  CommandList made;
  made.push_back(std::make_unique<EmpresaCriar>());
  made.push_back(std::make_unique<EmpresaAlterar>());
  made.push_back(std::make_unique<EmpresaListar>());
  made.push_back(std::make_unique<OnCompany>(
      "empresa eliminar", "Elimina a empresa de --empresa com todos os seus dados (pede --sim)", Delete));
  made.push_back(std::make_unique<OnCompany>(
      "empresa bloquear", "Bloqueia a empresa de --empresa: só se consulta", SetBlocked<true>));
  made.push_back(std::make_unique<OnCompany>("empresa desbloquear", "Desbloqueia a empresa de --empresa",
                                             SetBlocked<false>));
  made.push_back(std::make_unique<OnCompany>(
      "empresa verificar", "Verifica os índices da empresa de --empresa e da configuração", Verify));
  return made;
}

}  // namespace korvel::cli
