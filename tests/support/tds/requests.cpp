#include "support/tds/requests.h"

namespace korvel::tds {
namespace {

constexpr std::uint16_t kNumbered = 0xFFFF;
constexpr std::uint8_t kByReference = 1;
constexpr std::uint8_t kNextCall = 0xFF;
constexpr std::uint8_t kNextCallOfOld = 0x80;
constexpr std::uint8_t kBeginsNext = 1;
constexpr std::size_t kMostParameters = 4096;

/// Newer clients put headers in front of a request: a total length that counts itself, and what it covers.
void SkipHeaders(WireReader& in, Version version) {
  if (version < Version::V72) return;
  const std::uint32_t length = in.U32();
  if (length < 4) throw WireError("no length of headers");
  in.Bytes(length - 4);
}

RpcParameter ReadParameter(WireReader& in) {
  RpcParameter parameter;
  parameter.name = in.ByteText();
  parameter.output = (in.U8() & kByReference) != 0;
  const WireType type = ReadType(in);
  parameter.value = ReadValue(in, type);
  return parameter;
}

bool StartsNextCall(const WireReader& in) {
  WireReader ahead = in;
  const std::uint8_t mark = ahead.U8();
  return mark == kNextCall || mark == kNextCallOfOld;
}

ProcedureId NumberedProcedure(std::uint16_t number) {
  switch (static_cast<ProcedureId>(number)) {
    case ProcedureId::ExecuteSql:
    case ProcedureId::Prepare:
    case ProcedureId::Execute:
    case ProcedureId::PrepExec:
    case ProcedureId::Unprepare:
      return static_cast<ProcedureId>(number);
    case ProcedureId::None:
      break;
  }
  throw WireError("a procedure that this server does not know");
}

Rpc ReadRpc(WireReader& in) {
  Rpc rpc;
  const std::uint16_t length = in.U16();
  if (length == kNumbered) {
    rpc.id = NumberedProcedure(in.U16());
  } else {
    rpc.name = in.Text(length);
  }
  in.U16();  // flags
  while (!in.AtEnd() && !StartsNextCall(in)) {
    if (rpc.parameters.size() == kMostParameters) throw WireError("too many parameters");
    rpc.parameters.push_back(ReadParameter(in));
  }
  return rpc;
}

}  // namespace

std::string ReadBatch(std::string_view payload, Version version) {
  WireReader in(payload);
  SkipHeaders(in, version);
  if (in.Left() % 2 != 0) throw WireError("half a character");
  return in.Text(in.Left() / 2);
}

std::vector<Rpc> ReadRpcs(std::string_view payload, Version version) {
  WireReader in(payload);
  SkipHeaders(in, version);
  std::vector<Rpc> calls;
  do {
    calls.push_back(ReadRpc(in));
    if (!in.AtEnd()) in.U8();  // the mark between two calls
  } while (!in.AtEnd());
  return calls;
}

TransactionRequest ReadTransaction(std::string_view payload) {
  WireReader in(payload);
  SkipHeaders(in, Version::V72);
  TransactionRequest request;
  const std::uint16_t step = in.U16();
  request.step = static_cast<TransactionStep>(step);
  switch (request.step) {
    case TransactionStep::Begin:
      in.U8();  // isolation level
      request.name = in.Text(in.U8() / 2);
      return request;
    case TransactionStep::Commit:
    case TransactionStep::Rollback:
      request.name = in.Text(in.U8() / 2);
      request.beginsNext = (in.U8() & kBeginsNext) != 0;
      return request;
    case TransactionStep::Save:
      request.name = in.Text(in.U8() / 2);
      return request;
  }
  throw WireError("a transaction request that this server does not know");
}

}  // namespace korvel::tds
