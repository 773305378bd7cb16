#include <fmt/format.h>

#include <iostream>
#include <iterator>
#include <memory>
#include <optional>
#include <ostream>

#include "cli/commands.h"
#include "cli/failures.h"
#include "cli/password_option.h"
#include "toolkit/block_cipher.h"
#include "toolkit/replacing_file.h"
#include "toolkit/scramble.h"
#include "toolkit/whole_file.h"

namespace korvel::cli {

namespace {

enum class Direction { Encipher, Decipher };

/// A text without the line end that an editor or another run of this command put behind it.
std::string WithoutLineEnd(std::string text) {
  if (text.ends_with('\n')) text.pop_back();
  if (text.ends_with('\r')) text.pop_back();
  return text;
}

/// The block cipher of that name, null for any other.
std::unique_ptr<toolkit::BlockCipher> MakeCipher(const std::string& name) {
  if (name == "blowfish") return std::make_unique<toolkit::clsCrypBlowfish>();
  if (name == "twofish") return std::make_unique<toolkit::clsCrypTwofish>();
  return nullptr;
}

/// Without a method a text in the form that passwords have on the program's command line; with one a whole file.
class Cifra final : public Command {
 public:
  explicit Cifra(Direction direction) : direction_(direction) {}

  std::string_view Path() const override { return Enciphers() ? "cifra cifrar" : "cifra decifrar"; }
  std::string_view Summary() const override {
    return Enciphers() ? "Cifra uma password para a linha de comando do programa, ou um ficheiro"
                       : "Decifra o que cifra cifrar cifrou";
  }

  void Declare(CLI::App& app) override {
    app.add_option("--ficheiro", text_,
                   "Ficheiro com o texto, - para a entrada padrão; sem ele, pede-se no terminal")
        ->type_name("FICHEIRO");
    CLI::Option* method = app.add_option("--metodo", method_, "Trata um ficheiro: blowfish ou twofish")
                              ->type_name("MÉTODO")
                              ->excludes("--ficheiro");
    app.add_option("--entrada", input_, "Ficheiro a tratar")->type_name("FICHEIRO")->needs(method);
    app.add_option("--saida", output_, "Ficheiro a escrever")->type_name("FICHEIRO")->needs(method);
    app.add_flag("--substituir", replaces_, "Substitui o ficheiro de saída que já exista")->needs(method);
    key_.Declare(app, "da cifra");
  }

  bool Run(Workspace& workspace) override {
    try {
      if (method_.empty()) {
        RunText(workspace);
      } else {
        RunFile(workspace);
      }
      return true;
    } catch (const std::invalid_argument& error) {
      throw Refusal(error.what());
    } catch (const toolkit::CipherError& error) {
      throw Refusal(error.what());
    } catch (const toolkit::FileError& error) {
      throw Refusal(error.what());
    }
  }

 private:
  bool Enciphers() const { return direction_ == Direction::Encipher; }

  std::string Text(const CommandEnvironment& environment) const {
    if (!text_.empty() && text_ != "-") return WithoutLineEnd(toolkit::ReadWholeFile(toolkit::PathOf(text_)));
    if (text_.empty() && environment.askSecret) {
      if (auto typed = environment.askSecret("Texto: ")) return *typed;
      throw Refusal("Não foi dado o texto.");
    }
    return WithoutLineEnd({std::istreambuf_iterator<char>(std::cin), std::istreambuf_iterator<char>()});
  }

  void RunText(Workspace& workspace) const {
    workspace.Out() << toolkit::Encrypt(Text(workspace.Environment())) << '\n';  // its own inverse
  }

  void RunFile(Workspace& workspace) const {
    const auto cipher = MakeCipher(method_);
    if (!cipher) throw UsageError(fmt::format("A opção --metodo não aceita o valor {}.", method_));
    if (input_.empty() || output_.empty()) throw UsageError("Faltam as opções --entrada e --saida.");
    const std::string key = key_.Require(workspace.Environment());
    const auto work = Enciphers() ? &toolkit::BlockCipher::EncryptFile : &toolkit::BlockCipher::DecryptFile;
    if (!(*cipher.*work)(toolkit::PathOf(input_), toolkit::PathOf(output_), replaces_, key)) {
      throw Refusal(fmt::format("O ficheiro {} já existe; acrescente --substituir.", output_));
    }
  }

  Direction direction_;
  std::string text_;
  std::string method_;
  std::string input_;
  std::string output_;
  bool replaces_ = false;
  PasswordOption key_{"chave", "KORVEL_CHAVE"};
};

}  // namespace

std::unique_ptr<Command> MakeCifraCifrar() {
  return std::make_unique<Cifra>(Direction::Encipher);
}

std::unique_ptr<Command> MakeCifraDecifrar() {
  return std::make_unique<Cifra>(Direction::Decipher);
}

}  // namespace korvel::cli
