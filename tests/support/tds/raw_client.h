#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "support/tds/channel.h"

namespace korvel::tds {

/// A client that says whatever a test wants, protocol or not.
class RawClient {
 public:
  /// Throws std::runtime_error when nobody listens.
  explicit RawClient(std::uint16_t port);
  ~RawClient();
  RawClient(const RawClient&) = delete;
  RawClient& operator=(const RawClient&) = delete;

  /// False when the server has closed the connection.
  bool SendBytes(std::string_view bytes);
  /// A message in packets of that many bytes, their headers included.
  bool Send(PacketType type, std::string_view payload, std::size_t packetSize = 4096);
  /// The payload of the next answer; nothing when the server closes instead, or is silent for `seconds`.
  std::optional<std::string> Answer(int seconds = 10);
  /// Takes what has arrived and forgets it. False when the server has closed.
  bool Drain();

 private:
  bool Receive(std::string& bytes, std::size_t count, int seconds);

  int socket_;
};

}  // namespace korvel::tds
