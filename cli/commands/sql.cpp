#include <fmt/format.h>

#include <fstream>
#include <ostream>
#include <sstream>

#include "cli/commands.h"
#include "cli/failures.h"
#include "databases/sql_admin.h"
#include "toolkit/progress_scope.h"
#include "toolkit/text.h"

namespace korvel::cli {

namespace {

std::string ReadScript(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream content;
  if (file.peek() != std::ifstream::traits_type::eof()) content << file.rdbuf();
  // An empty script is one too; a folder opens like a file and fails only when it is read.
  if (!file.is_open() || file.bad() || content.fail()) {
    throw Refusal(fmt::format("Não foi possível ler o ficheiro {}.", path));
  }
  std::string text = std::move(content).str();
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.erase(0, kByteOrderMark.size());
  return text;
}

/// Values stay on their line and in their column: tabs, line ends and backslashes are written as escapes.
void PutEscaped(std::ostream& out, std::string_view value) {
  for (const char c : value) {
    switch (c) {
      case '\t':
        out << "\\t";
        break;
      case '\n':
        out << "\\n";
        break;
      case '\r':
        out << "\\r";
        break;
      case '\\':
        out << "\\\\";
        break;
      default:
        out << c;
    }
  }
}

void PutHeader(std::ostream& out, const data::Recordset& rows) {
  std::string_view separator;
  for (const data::Field& field : rows.Fields()) {
    out << separator;
    PutEscaped(out, field.name);
    separator = "\t";
  }
  out << '\n';
}

void PutRow(std::ostream& out, const data::Recordset& rows) {
  for (std::size_t i = 0; i < rows.Fields().size(); ++i) {
    if (i > 0) out << '\t';
    PutEscaped(out, rows.IsNull(i) ? std::string_view("NULL") : rows.Text(i));
  }
  out << '\n';
}

class Sql final : public Command {
 public:
  std::string_view Path() const override { return "sql"; }
  std::string_view Summary() const override {
    return "Executa um script SQL (lotes separados por linhas GO)";
  }

  /// A script for `master` may be the first thing that a server is asked.
  bool MakesServer() const override { return toolkit::SameIgnoringCase(database_, "master"); }

  void Declare(CLI::App& app) override {
    app.add_option("--base-dados", database_, "Base de dados")->required()->type_name("NOME");
    file_ = app.add_option("--ficheiro", path_, "Ficheiro com o script")->type_name("FICHEIRO");
    text_ = app.add_option("--texto", script_, "O próprio script")->type_name("SQL")->excludes(file_);
  }

  bool Run(Workspace& workspace) override {
    if (file_->count() + text_->count() == 0) throw UsageError("Falta a opção --ficheiro ou --texto.");
    if (toolkit::IsBlank(database_)) throw Refusal("Não definiu a Base de Dados!");
    const std::string script = file_->count() > 0 ? ReadScript(path_) : script_;
    // A refused login is told in the words of the login form.
    workspace.Open("master");
    const auto connection = workspace.Open(database_);
    for (const std::string_view batch : databases::ScriptBatches(script))
      RunBatch(workspace, *connection, batch);
    return true;
  }

 private:
  void RunBatch(Workspace& workspace, data::Connection& connection, std::string_view batch) {
    data::Recordset rows = connection.Query(batch);
    do {
      if (!rows.Fields().empty()) PrintSet(workspace, rows);
    } while (rows.NextRecordset());
  }

  void PrintSet(Workspace& workspace, data::Recordset& rows) {
    std::ostream& out = workspace.Out();
    if (printed_) out << '\n';
    printed_ = true;
    PutHeader(out, rows);
    for (; !rows.Eof(); rows.MoveNext()) {
      PutRow(out, rows);
      if (workspace.Interrupted()) throw toolkit::Cancelled();
    }
  }

  std::string database_;
  std::string path_;
  std::string script_;
  CLI::Option* file_ = nullptr;
  CLI::Option* text_ = nullptr;
  bool printed_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeSql() {
  return std::make_unique<Sql>();
}

}  // namespace korvel::cli
