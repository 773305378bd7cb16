#pragma once

#include <chrono>
#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace korvel::tds {

/// The packet types of the protocol that this server knows.
enum class PacketType : std::uint8_t {
  Batch = 1,
  Rpc = 3,
  Answer = 4,
  Attention = 6,
  Transaction = 14,
  Login = 16,
  PreLogin = 18,
};

/// A client's message, its packets joined.
struct Message {
  PacketType type = PacketType::Batch;
  std::string payload;
};

/// The client has gone, or the channel was shut.
class Disconnected : public std::runtime_error {
 public:
  Disconnected() : runtime_error("disconnected") {}
};

/// A socket that carries messages in packets. It owns the socket.
class Channel {
 public:
  Channel(int socket, std::uint16_t spid) : socket_(socket), spid_(spid) {}
  ~Channel();
  Channel(const Channel&) = delete;
  Channel& operator=(const Channel&) = delete;

  /// The next message; nothing where the client has closed between two of them.
  /// Throws WireError for bytes that are no packet, Disconnected in the middle of a message.
  std::optional<Message> Read();
  /// Adds to the answer under way; packets go as they fill.
  void Write(std::string_view bytes);
  /// Sends the last packet of the answer.
  void Finish();

  /// Bytes of a packet with its header, both ways kept within what the protocol allows.
  void SetPacketSize(std::uint32_t size);
  std::uint32_t PacketSize() const { return packetSize_; }
  std::uint16_t Spid() const { return spid_; }

  /// Waits; true when the client sends something (or goes) in the meantime.
  bool WaitForClient(std::chrono::milliseconds time) const;
  /// Takes an attention that has arrived off the channel; false when there is none. Throws Disconnected.
  bool TakeAttention();

  /// The connection breaks when that many more bytes have been sent.
  void CutAfter(std::size_t bytes) { allowance_ = bytes; }
  /// Sends half of what waits and breaks the connection. Throws Disconnected.
  [[noreturn]] void Break();
  /// Breaks the connection at once; may be called by another thread while the channel lives.
  void Shut() noexcept;

 private:
  bool Receive(std::string& bytes, std::size_t count);
  bool ReadPacket(Message& message, bool& last);
  void SendPacket(std::size_t length, bool last);
  void Send(std::string_view bytes);

  int socket_;
  std::uint16_t spid_;
  std::uint32_t packetSize_ = 4096;
  std::uint8_t packetNumber_ = 1;
  std::size_t allowance_ = std::numeric_limits<std::size_t>::max();
  std::string pending_;
};

}  // namespace korvel::tds
