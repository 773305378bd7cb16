#include "data/editable_recordset.h"

#include "contract/contract.h"

namespace korvel::test {
namespace {

using data::EditableRecordset;
using data::Value;

class EditableContract : public Contract {
 protected:
  void SetUp() override {
    Contract::SetUp();
    if (IsSkipped()) return;
    Db().Execute("create table fichas (" + Server().IdentityColumn() +
                 ", nome varchar(40) null, saldo money null)");
    Db().Execute("insert into fichas (nome) values ('primeira')");
  }
  Value Read(const char* column, std::int64_t key) {
    return Db()
        .Query(std::string("select ") + column + " from fichas where NumRegisto=?", {key})
        .Get(std::size_t{0});
  }
};
INSTANTIATE_TEST_SUITE_P(Drivers, EditableContract, kAllDrivers, DriverName);

TEST_P(EditableContract, ANewRecordGetsItsKeyAndKeepsIt) {
  if (Lacks(Feature::TSql)) GTEST_SKIP();
  auto record = EditableRecordset::AddNew(Db(), "fichas");
  record.Set("nome", "d'Água");
  record.Set("nome", "D'Água");
  record.Set("saldo", data::Currency::FromUnits(-5));
  const std::int64_t key = record.Update();
  EXPECT_EQ(key, 2);
  record.Set("saldo", data::Null());
  EXPECT_EQ(record.Update(), key) << "the same record is changed from now on";
  EXPECT_EQ(Read("nome", key), Value("D'Água"));
  EXPECT_TRUE(Read("saldo", key).IsNull());
  EXPECT_EQ(Number("select count(*) from fichas"), 2);
}

TEST_P(EditableContract, AnExistingRecordChangesAlone) {
  Db().Execute("insert into fichas (nome) values ('segunda')");
  auto record = EditableRecordset::Edit(Db(), "fichas", 2);
  EXPECT_EQ(record.Update(), 2) << "nothing assigned, nothing sent";
  record.Set("nome", "mudada");
  EXPECT_EQ(record.Update(), 2);
  EXPECT_EQ(Read("nome", 1), Value("primeira"));
  EXPECT_EQ(Read("nome", 2), Value("mudada"));
}

TEST_P(EditableContract, ARecordThatHasGoneIsAnError) {
  auto record = EditableRecordset::Edit(Db(), "fichas", 99);
  record.Set("nome", "ninguém");
  EXPECT_TRUE(ErrorOf([&] { record.Update(); }));
  EXPECT_EQ(Number("select count(*) from fichas where nome='ninguém'"), 0);
}

}  // namespace
}  // namespace korvel::test
