#include "support/tds/raw_client.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <stdexcept>

#include "support/tds/wire.h"

namespace korvel::tds {

RawClient::RawClient(std::uint16_t port) : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(port);
  if (connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
    close(socket_);
    throw std::runtime_error("nobody listens");
  }
}

RawClient::~RawClient() {
  close(socket_);
}

bool RawClient::SendBytes(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t sent = send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (sent <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(sent));
  }
  return true;
}

bool RawClient::Send(PacketType type, std::string_view payload, std::size_t packetSize) {
  const std::size_t room = packetSize - kPacketHeader;
  WireWriter packets;
  do {
    const std::string_view part = payload.substr(0, room);
    payload.remove_prefix(part.size());
    packets.U8(static_cast<std::uint8_t>(type))
        .U8(payload.empty() ? 1 : 0)
        .U16Big(part.size() + kPacketHeader);
    packets.U32(0).Bytes(part);
  } while (!payload.empty());
  return SendBytes(packets.Take());
}

bool RawClient::Receive(std::string& bytes, std::size_t count, int seconds) {
  bytes.resize(count);
  for (std::size_t have = 0; have < count;) {
    pollfd wanted{socket_, POLLIN, 0};
    if (poll(&wanted, 1, seconds * 1000) <= 0) return false;
    const ssize_t got = recv(socket_, bytes.data() + have, count - have, 0);
    if (got <= 0) return false;
    have += static_cast<std::size_t>(got);
  }
  return true;
}

std::optional<std::string> RawClient::Answer(int seconds) {
  std::string payload;
  for (bool last = false; !last;) {
    std::string bytes;
    if (!Receive(bytes, kPacketHeader, seconds)) return std::nullopt;
    WireReader header(bytes);
    header.U8();
    last = header.U8() == 1;
    const std::size_t length = header.U16Big();
    if (!Receive(bytes, length - kPacketHeader, seconds)) return std::nullopt;
    payload += bytes;
  }
  return payload;
}

bool RawClient::Drain() {
  std::array<char, 65536> heap;
  for (;;) {
    const ssize_t got = recv(socket_, heap.data(), heap.size(), MSG_DONTWAIT);
    if (got < 0) return errno == EAGAIN || errno == EINTR;
    if (got == 0) return false;
  }
}

}  // namespace korvel::tds
