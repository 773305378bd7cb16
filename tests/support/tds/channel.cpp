#include "support/tds/channel.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "support/tds/wire.h"

namespace korvel::tds {
namespace {

constexpr std::uint32_t kSmallestPacket = 512;
constexpr std::uint32_t kLargestPacket = 32767;
/// Wider than any statement that this system sends.
constexpr std::size_t kLongestMessage = std::size_t{256} << 20;
constexpr std::uint8_t kLastPacket = 1;

bool IsKnown(std::uint8_t type) {
  switch (static_cast<PacketType>(type)) {
    case PacketType::Batch:
    case PacketType::Rpc:
    case PacketType::Attention:
    case PacketType::Transaction:
    case PacketType::Login:
    case PacketType::PreLogin:
      return true;
    case PacketType::Answer:
      return false;
  }
  return false;
}

}  // namespace

Channel::~Channel() {
  close(socket_);
}

bool Channel::Receive(std::string& bytes, std::size_t count) {
  bytes.resize(count);
  for (std::size_t have = 0; have < count;) {
    const ssize_t got = recv(socket_, bytes.data() + have, count - have, 0);
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0 && have > 0) throw Disconnected();
    if (got <= 0) return false;
    have += static_cast<std::size_t>(got);
  }
  return true;
}

bool Channel::ReadPacket(Message& message, bool& last) {
  std::string bytes;
  if (!Receive(bytes, kPacketHeader)) return false;
  WireReader header(bytes);
  const std::uint8_t type = header.U8();
  last = (header.U8() & kLastPacket) != 0;
  const std::size_t length = header.U16Big();
  if (!IsKnown(type) || length < kPacketHeader) throw WireError("no packet");
  message.type = static_cast<PacketType>(type);
  if (length > kPacketHeader && !Receive(bytes, length - kPacketHeader)) throw Disconnected();
  if (length > kPacketHeader) message.payload += bytes;
  return true;
}

std::optional<Message> Channel::Read() {
  Message message;
  bool last = false;
  if (!ReadPacket(message, last)) return std::nullopt;
  const PacketType type = message.type;
  while (!last) {
    if (!ReadPacket(message, last)) throw Disconnected();
    // An attention that interrupts a message ends it.
    if (message.type == PacketType::Attention) return Message{PacketType::Attention, {}};
    if (message.type != type || message.payload.size() > kLongestMessage) throw WireError("no message");
  }
  return message;
}

void Channel::Write(std::string_view bytes) {
  pending_ += bytes;
  const std::size_t room = packetSize_ - kPacketHeader;
  // The last packet stays back for Finish, even a full one.
  while (pending_.size() > room) SendPacket(room, false);
}

void Channel::Finish() {
  SendPacket(pending_.size(), true);
  packetNumber_ = 1;
}

void Channel::SendPacket(std::size_t length, bool last) {
  WireWriter packet;
  packet.U8(static_cast<std::uint8_t>(PacketType::Answer))
      .U8(last ? kLastPacket : 0)
      .U16Big(length + kPacketHeader);
  packet.U16Big(spid_).U8(packetNumber_++).U8(0).Bytes(std::string_view(pending_).substr(0, length));
  pending_.erase(0, length);
  Send(packet.Take());
}

void Channel::Send(std::string_view bytes) {
  const bool cut = bytes.size() >= allowance_;
  bytes = bytes.substr(0, allowance_);
  allowance_ -= bytes.size();
  while (!bytes.empty()) {
    const ssize_t sent = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent < 0 && errno == EINTR) continue;
    if (sent <= 0) throw Disconnected();
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  if (!cut) return;
  Shut();
  throw Disconnected();
}

void Channel::SetPacketSize(std::uint32_t size) {
  packetSize_ = std::clamp(size, kSmallestPacket, kLargestPacket);
}

bool Channel::WaitForClient(std::chrono::milliseconds time) const {
  pollfd wanted{socket_, POLLIN, 0};
  return poll(&wanted, 1, static_cast<int>(time.count())) > 0;
}

bool Channel::TakeAttention() {
  if (!WaitForClient(std::chrono::milliseconds(0))) return false;
  const auto message = Read();
  if (!message) throw Disconnected();
  if (message->type != PacketType::Attention)
    throw WireError("a request before the end of the last one's answer");
  return true;
}

void Channel::Break() {
  CutAfter((pending_.size() + kPacketHeader) / 2);
  SendPacket(pending_.size(), false);
  throw Disconnected();
}

void Channel::Shut() noexcept {
  shutdown(socket_, SHUT_RDWR);
}

}  // namespace korvel::tds
