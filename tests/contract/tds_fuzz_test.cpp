#include <gtest/gtest.h>

#include <fmt/format.h>

#include <chrono>
#include <thread>

#include "contract/contract.h"
#include "data/odbc/open.h"
#include "support/fuzz.h"
#include "support/tds/raw_client.h"
#include "support/tds/tds_server.h"
#include "support/temp_folder.h"

namespace korvel::test {
namespace {

using tds::Message;
using tds::PacketType;
using tds::Version;

/// What FreeTDS says to a server in a conversation that has every kind of message and of value.
std::vector<Message> RealConversation(tds::TdsServer& server) {
  const auto db = data::OpenOdbc("FreeTDS", {server.Address(), "master", "sa", false, {}}, "", 10);
  db->Execute("create table t (n int, q numeric(10,2), m money, f float, d datetime, s varchar(50), x text)");
  db->BeginTrans();
  db->Execute("insert into t values (?,?,?,?,?,?,?)",
              {1, data::Currency::FromUnits(125'000), data::Currency::FromUnits(-1), 1.5,
               data::DateTime{2009, 2, 28}, "olá € '?'", std::string_view("texto")});
  db->Execute("insert into t (n, s) values (?, ?)", {data::Null(), data::Null()});
  db->CommitTrans();
  db->Query("select * from t where n=? or s like ? order by n", {1, "%o%"});
  db->Execute("update t set x='" + std::string(9000, 'x') + "' where 1=2; select * from t");
  db->BeginTrans();
  db->RollbackTrans();
  ErrorOf([&] { db->Execute("select * fro t"); });
  return server.Messages();
}

/// Every message by the reader of its kind, and now and then by another one's.
void Read(PacketType type, std::string_view payload, Version version) {
  switch (type) {
    case PacketType::PreLogin:
      tds::ReadPreLogin(payload);
      break;
    case PacketType::Login:
      tds::ReadLogin(payload);
      break;
    case PacketType::Batch:
      tds::ReadBatch(payload, version);
      break;
    case PacketType::Rpc:
      tds::ReadRpcs(payload, version);
      break;
    case PacketType::Transaction:
      tds::ReadTransaction(payload);
      break;
    case PacketType::Answer:
    case PacketType::Attention:
      break;
  }
}

class TdsFuzz : public testing::Test {
 protected:
  static constexpr int kSharers = 2;  // tests of the one reader

  TempFolder folder;
  tds::TdsServer server{folder.Path(), "RUIDO"};
  std::vector<Message> heard = RealConversation(server);
};

TEST_F(TdsFuzz, TheRealConversationIsRead) {
  std::map<PacketType, int> kinds;
  for (const Message& message : heard) {
    EXPECT_NO_THROW(Read(message.type, message.payload, Version::V74));
    ++kinds[message.type];
  }
  for (const PacketType type : {PacketType::PreLogin, PacketType::Login, PacketType::Batch, PacketType::Rpc,
                                PacketType::Transaction}) {
    EXPECT_GT(kinds[type], 0) << static_cast<int>(type);
  }
}

TEST_F(TdsFuzz, SpoiltMessagesAreReadOrRefused) {
  Fuzz fuzz(20080403, kSharers);
  int refused = 0;
  while (fuzz.Goes()) {
    const Message& message = fuzz.OneOf(heard);
    const std::string payload = fuzz.Chance(10) ? fuzz.Bytes(fuzz.Below(300))
                                                : fuzz.Mutated(message.payload, fuzz.OneOf(heard).payload);
    const PacketType type = fuzz.Chance(10) ? fuzz.OneOf(heard).type : message.type;
    SCOPED_TRACE(fmt::format("round {}, type {}", fuzz.Rounds(), static_cast<int>(type)));
    try {
      Read(type, payload, static_cast<Version>(fuzz.Below(5)));
    } catch (const tds::WireError&) {
      ++refused;
    }
  }
  EXPECT_GT(refused, 0);
  EXPECT_LT(refused, fuzz.Rounds());
}

/// A client that has entered by the real conversation's own login.
std::unique_ptr<tds::RawClient> Entered(const tds::TdsServer& server, const std::vector<Message>& heard) {
  auto client = std::make_unique<tds::RawClient>(server.Port());
  for (const Message& message : heard) {
    if (message.type != PacketType::PreLogin && message.type != PacketType::Login) continue;
    client->Send(message.type, message.payload);
    if (!client->Answer()) return nullptr;
    if (message.type == PacketType::Login) break;
  }
  return client;
}

TEST_F(TdsFuzz, TheServerOutlivesEveryClient) {
  Fuzz fuzz(20080404, kSharers);
  std::unique_ptr<tds::RawClient> client;
  while (fuzz.Goes()) {
    const Message& message = fuzz.OneOf(heard);
    if (client == nullptr && fuzz.Chance(3)) {
      client = std::make_unique<tds::RawClient>(server.Port());
    } else if (client == nullptr) {
      client = Entered(server, heard);
      ASSERT_NE(client, nullptr) << "round " << fuzz.Rounds();
    }
    const std::string payload = fuzz.Chance(4) ? message.payload : fuzz.Mutated(message.payload);
    const bool sent = fuzz.Chance(20) ? client->SendBytes(fuzz.Bytes(1 + fuzz.Below(600)))
                                      : client->Send(message.type, payload, 9 + fuzz.Below(600));
    if (!sent || !client->Drain() || fuzz.Chance(12)) client.reset();
  }
  client.reset();
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (server.Connections() > 0 && std::chrono::steady_clock::now() < end)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_EQ(server.Connections(), 0U) << "no session hangs";
  EXPECT_NE(Entered(server, heard), nullptr) << "the server goes on";
}

}  // namespace
}  // namespace korvel::test
