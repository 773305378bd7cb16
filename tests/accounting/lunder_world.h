#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "periods/period.h"
#include "support/scripted_world.h"

namespace korvel::test {

/// A line of Lunder's journal to be inserted; texts as they stand, `valor` a number text, "NULL" a NULL.
struct MovDiario {
  std::string contaSp = "2111";
  std::string afecta = "D";
  std::string valor = "10";
  std::string numero = "1FAC";
  std::string data = "2010-03-05";
  std::string diario = "V";
  std::string descricao = "Venda";
  std::string utilizador = "ana";
  std::string dataSys = "2010-03-06 10:20:30";
  std::string contribuinte = "";
  std::string valRecap = "0";
  std::string integracao = "0";
  std::string tipoMovSaft = "N";
};

/// A server with a company whose accounting product's database is made, empty but for its journals "SI", "V" and
/// "EN", and a period of 2010 of the accounting kind.
class LunderWorld : public testing::Test {
 protected:
  LunderWorld();

  void Lunder(std::string_view script) { server.Run("LunderDemo", script); }
  void Company(std::string_view script) { server.Run("Korvel0001", script); }
  std::vector<std::string> Staged(std::string_view query) { return server.Rows("Korvel0001", query); }
  void AddAccount(std::string_view contaSp, std::string_view titulo, std::string_view tipo = "M");
  void AddLines(const std::vector<MovDiario>& lines);
  /// Stages accounts without a balance.
  void StageAccounts(const std::vector<std::string>& codes);
  std::string LastText() const { return server.dialogs.LastText(); }

  TestServer server;
  periods::PeriodKey period{"2010", "2010-01-01", "2010-12-31"};
};

}  // namespace korvel::test
