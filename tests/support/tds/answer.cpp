#include "support/tds/answer.h"

#include <algorithm>
#include <optional>
#include <variant>
#include <vector>

namespace korvel::tds {
namespace {

namespace token {
constexpr std::uint8_t kReturnStatus = 0x79, kColumns = 0x81, kError = 0xAA, kInfo = 0xAB,
                       kReturnValue = 0xAC, kLoginAck = 0xAD, kRow = 0xD1, kRowWithNulls = 0xD2,
                       kEnvironment = 0xE3;
}

constexpr std::uint8_t kCollationChange = 7, kBegin = 8, kCommit = 9, kRollback = 10;
constexpr std::uint8_t kTransactionBytes = 8;
constexpr int kUserError = 50000;
constexpr std::uint8_t kInfoSeverity = 10;

/// Versions as a server writes them, high byte first.
constexpr std::uint32_t kVersionNumbers[] = {0x71000001, 0x72090002, 0x730A0003, 0x730B0003, 0x74000004};

struct NumberedSeverity {
  int number;
  std::uint8_t severity;
};
/// Classes as SQL Server gives them; 16 for all others.
constexpr NumberedSeverity kSeverities[] = {
    {18456, 14}, {18452, 14}, {4060, 11}, {911, 16}, {102, 15}, {105, 15}, {156, 15}, {2627, 14},  {2601, 14},
    {1205, 13},  {229, 14},   {230, 14},  {262, 14}, {916, 14}, {824, 24}, {823, 24}, {15247, 16}, {596, 21}};

std::uint8_t SeverityOf(int number) {
  const auto* found =
      std::find_if(std::begin(kSeverities), std::end(kSeverities),
                   [number](const NumberedSeverity& known) { return known.number == number; });
  return found != std::end(kSeverities) ? found->severity : 16;
}

/// The column that an output value would come from.
data::Field FieldOf(const data::Value& value) {
  struct Kind {
    data::Type operator()(std::int64_t) const { return data::Type::BigInt; }
    data::Type operator()(data::Currency) const { return data::Type::Money; }
    data::Type operator()(double) const { return data::Type::Float; }
    data::Type operator()(const data::DateTime&) const { return data::Type::DateTime; }
    data::Type operator()(const std::string&) const { return data::Type::Varchar; }
    data::Type operator()(data::Null) const { return data::Type::Varchar; }
  };
  constexpr int kLongestVarchar = 8000;
  return {"", std::visit(Kind{}, static_cast<const data::Value::variant&>(value)), kLongestVarchar};
}

/// A numeric goes by its digits: as a value it would keep but four decimals.
data::Value ValueOf(const data::Recordset& rows, std::size_t column) {
  const bool byDigits = rows.Fields()[column].type == data::Type::Numeric && !rows.IsNull(column);
  return byDigits ? data::Value(rows.Text(column)) : rows.Get(column);
}

std::string NullBits(const data::Recordset& rows) {
  std::string bits((rows.Fields().size() + 7) / 8, '\0');
  for (std::size_t i = 0; i < rows.Fields().size(); ++i) {
    if (rows.IsNull(i)) bits[i / 8] = static_cast<char>(bits[i / 8] | 1 << i % 8);
  }
  return bits;
}

}  // namespace

void Answer::LoginAck() {
  const std::uint32_t number = kVersionNumbers[static_cast<std::size_t>(version_)];
  WireWriter body;
  body.U8(1).U16Big(number >> 16).U16Big(number & 0xFFFF).ByteText("Korvel").U8(9).U8(0).U16Big(5000);
  const std::string bytes = body.Take();
  out_.U8(token::kLoginAck).U16(bytes.size()).Bytes(bytes);
}

void Answer::Changed(Environment what, std::string_view now, std::string_view before) {
  WireWriter body;
  body.U8(static_cast<std::uint8_t>(what)).ByteText(now).ByteText(before);
  const std::string bytes = body.Take();
  out_.U8(token::kEnvironment).U16(bytes.size()).Bytes(bytes);
}

void Answer::Collation() {
  out_.U8(token::kEnvironment).U16(kCollation.size() + 3).U8(kCollationChange);
  out_.U8(kCollation.size()).Bytes(kCollation).U8(0);
}

void Answer::TransactionBegan(std::uint64_t number) {
  out_.U8(token::kEnvironment).U16(kTransactionBytes + 3).U8(kBegin).U8(kTransactionBytes).U64(number).U8(0);
}

void Answer::TransactionEnded(bool committed, std::uint64_t number) {
  out_.U8(token::kEnvironment).U16(kTransactionBytes + 3).U8(committed ? kCommit : kRollback);
  out_.U8(0).U8(kTransactionBytes).U64(number);
}

void Answer::Message(std::uint8_t kind, int number, std::uint8_t severity, std::string_view text) {
  WireWriter body;
  body.U32(static_cast<std::uint32_t>(number)).U8(1).U8(severity);
  body.ShortText(text).ByteText(serverName_).ByteText("");
  body.Number(1, version_ >= Version::V72 ? 4 : 2);  // line
  const std::string bytes = body.Take();
  out_.U8(kind).U16(bytes.size()).Bytes(bytes);
}

void Answer::Info(int number, std::string_view text) {
  Message(token::kInfo, number, kInfoSeverity, text);
}

void Answer::Error(const data::Error& error) {
  constexpr std::size_t kLongestText = 4000;  // bytes; a message is no place for a whole statement
  const std::string_view text = error.what();
  Message(token::kError, error.Native() != 0 ? error.Native() : kUserError, SeverityOf(error.Native()),
          text.substr(0, kLongestText));
}

void Answer::UserTypeAndFlags() {
  constexpr std::uint16_t kNullable = 1;
  out_.Number(0, version_ >= Version::V72 ? 4 : 2).U16(kNullable);
}

void Answer::Columns(std::span<const data::Field> fields) {
  out_.U8(token::kColumns).U16(fields.size());
  for (const data::Field& field : fields) {
    UserTypeAndFlags();
    WriteType(out_, field, version_);
    out_.ByteText(field.name);
  }
}

void Answer::Row(const data::Recordset& rows) {
  const std::string nulls = NullBits(rows);
  const bool marked = version_ >= Version::V73B &&
                      std::any_of(nulls.begin(), nulls.end(), [](char bits) { return bits != 0; });
  // A value that cannot be read must not leave half a row behind.
  WireWriter row;
  row.U8(marked ? token::kRowWithNulls : token::kRow);
  if (marked) row.Bytes(nulls);
  for (std::size_t i = 0; i < rows.Fields().size(); ++i) {
    if (!marked || !rows.IsNull(i)) WriteValue(row, rows.Fields()[i], ValueOf(rows, i));
  }
  out_.Bytes(row.Take());
}

void Answer::ReturnStatus(std::int64_t status) {
  out_.U8(token::kReturnStatus).U32(static_cast<std::uint32_t>(status));
}

void Answer::ReturnValue(std::size_t ordinal, std::string_view name, const data::Value& value) {
  constexpr std::uint8_t kOutput = 1;
  const data::Field field = FieldOf(value);
  out_.U8(token::kReturnValue).U16(ordinal).ByteText(name).U8(kOutput);
  UserTypeAndFlags();
  WriteType(out_, field, version_);
  WriteValue(out_, field, value);
}

void Answer::End(Done kind, std::uint16_t flags, std::int64_t count) {
  constexpr std::uint16_t kNoCommand = 0;
  out_.U8(static_cast<std::uint8_t>(kind)).U16(flags).U16(kNoCommand);
  out_.Number(static_cast<std::uint64_t>(count), version_ >= Version::V72 ? 8 : 4);
}

}  // namespace korvel::tds
