#include <fmt/format.h>

#include <algorithm>
#include <ostream>

#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/option_lists.h"
#include "cli/password_option.h"
#include "security/password.h"
#include "security/user_card.h"
#include "security/users.h"
#include "session/connections.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

using security::UserCard;
using security::UserCompany;

/// The login that a command is about.
class UserOption {
 public:
  void Declare(CLI::App& app, const std::string& help) {
    app.add_option("--utilizador", login_, help)->required()->type_name("LOGIN");
  }
  const std::string& Login() const { return login_; }

 private:
  std::string login_;
};

/// Which companies a user sees, as the form's `optTodas` and `optAlgumas` with its list.
class CompaniesOption {
 public:
  void Declare(CLI::App& app) {
    CLI::Option* all = app.add_flag("--todas", all_, "Acede a todas as empresas");
    some_ = app.add_option("--empresas", codes_, "Só acede a estas empresas; vazio: a nenhuma")
                ->type_name("CÓDIGO,...")
                ->excludes(all);
  }

  /// Leaves the card as it is when neither option was given.
  void Fill(UserCard& card) const {
    if (all_) card.allCompanies = true;
    if (some_->count() == 0) return;
    card.allCompanies = false;
    for (UserCompany& company : card.companies) company.ticked = false;
    for (const std::string& code : CodeList(codes_)) Find(card, code).ticked = true;
  }

 private:
  static UserCompany& Find(UserCard& card, const std::string& code) {
    const auto found = std::ranges::find(card.companies, code, &UserCompany::code);
    if (found == card.companies.end()) throw Refusal(fmt::format("A empresa {} não existe.", code));
    return *found;
  }

  bool all_ = false;
  std::string codes_;
  CLI::Option* some_ = nullptr;
};

void SetPassword(UserCard& card, const std::string& password) {
  card.password = card.confirmation = password;
}

class UtilizadorCriar final : public Command {
 public:
  std::string_view Path() const override { return "utilizador criar"; }
  std::string_view Summary() const override { return "Cria um login e diz a que empresas acede"; }

  void Declare(CLI::App& app) override {
    user_.Declare(app, "O novo login");
    app.add_flag("--admin", admin_, "Com acesso a tarefas administrativas");
    companies_.Declare(app);
    password_.Declare(app, "do novo utilizador");
  }

  bool Run(Workspace& workspace) override {
    const std::string password = password_.Require(workspace.Environment());
    workspace.LoginAsAdministrator();
    if (!security::MayCreateUser(workspace.Context())) return false;
    UserCard card = security::NewUserCard(*workspace.Open(session::kConfigDatabase));
    card.login = user_.Login();
    card.admin = admin_;
    SetPassword(card, password);
    companies_.Fill(card);
    if (!security::CreateFromCard(workspace.Context(), card)) return false;
    workspace.Out() << fmt::format("Utilizador {} criado.\n", card.login);
    return true;
  }

 private:
  UserOption user_;
  CompaniesOption companies_;
  PasswordOption password_{"nova-password", "KORVEL_NOVA_PASSWORD"};
  bool admin_ = false;
};

class UtilizadorAlterar final : public Command {
 public:
  std::string_view Path() const override { return "utilizador alterar"; }
  std::string_view Summary() const override {
    return "Altera as empresas, as tarefas ou a password de um login";
  }

  void Declare(CLI::App& app) override {
    user_.Declare(app, "O login a alterar");
    app.add_option("--admin", admin_, "Com ou sem acesso a tarefas administrativas")->type_name("S|N");
    companies_.Declare(app);
    password_.Declare(app, "do utilizador");
  }

  bool Run(Workspace& workspace) override {
    const auto password = password_.Read(workspace.Environment());
    workspace.LoginAsAdministrator();
    if (!security::MayChangeUser(workspace.Context(), user_.Login())) return false;
    auto card = security::LoadUserCard(*workspace.Open(session::kConfigDatabase), *workspace.Open("master"),
                                       user_.Login());
    if (!card) throw Refusal(fmt::format("O utilizador {} não existe.", user_.Login()));
    if (!admin_.empty()) card->admin = YesOrNo("--admin", admin_);
    if (password) SetPassword(*card, *password);
    companies_.Fill(*card);
    return security::ChangeFromCard(workspace.Context(), *card);
  }

 private:
  UserOption user_;
  CompaniesOption companies_;
  PasswordOption password_{"nova-password", "KORVEL_NOVA_PASSWORD"};
  std::string admin_;
};

class UtilizadorEliminar final : public Command {
 public:
  std::string_view Path() const override { return "utilizador eliminar"; }
  std::string_view Summary() const override { return "Elimina um login (pede --sim)"; }
  void Declare(CLI::App& app) override { user_.Declare(app, "O login a eliminar"); }

  bool Run(Workspace& workspace) override {
    workspace.LoginAsAdministrator();
    return security::EliminaUtilizador(workspace.Context(), user_.Login());
  }

 private:
  UserOption user_;
};

class UtilizadorListar final : public Command {
 public:
  std::string_view Path() const override { return "utilizador listar"; }
  std::string_view Summary() const override { return "Mostra os logins do servidor"; }
  void Declare(CLI::App&) override {}

  bool Run(Workspace& workspace) override {
    workspace.LoginAsAdministrator();
    workspace.Out() << "Login\tTipo\tAdministrador do servidor\n";
    const auto users =
        security::ListUsers(*workspace.Open("master"), *workspace.Open(session::kConfigDatabase));
    for (const security::UserLine& user : users) {
      workspace.Out() << fmt::format("{}\t{}\t{}\n", user.login, security::KindText(user),
                                     user.sysAdmin ? "S" : "N");
    }
    return true;
  }
};

class UtilizadorPassword final : public Command {
 public:
  std::string_view Path() const override { return "utilizador password"; }
  std::string_view Summary() const override { return "Muda a password do login com que se entra"; }
  void Declare(CLI::App& app) override { password_.Declare(app, "nova"); }

  bool Run(Workspace& workspace) override {
    const std::string password = password_.Require(workspace.Environment());
    workspace.Login();
    const auto context = workspace.Context();
    return security::AlteraPassword(context, {context.session.gPassword, password, password});
  }

 private:
  PasswordOption password_{"nova-password", "KORVEL_NOVA_PASSWORD"};
};

}  // namespace

CommandList MakeUtilizador() {
  CommandList made;
  made.push_back(std::make_unique<UtilizadorCriar>());
  made.push_back(std::make_unique<UtilizadorAlterar>());
  made.push_back(std::make_unique<UtilizadorEliminar>());
  made.push_back(std::make_unique<UtilizadorListar>());
  made.push_back(std::make_unique<UtilizadorPassword>());
  return made;
}

}  // namespace korvel::cli
