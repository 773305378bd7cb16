#include "support/tds/tds_server.h"

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <utility>

namespace korvel::tds {
namespace {

constexpr int kBacklog = 16;
/// Rooms for what the tests replay; a long run does not keep all that it hears.
constexpr std::size_t kKeptMessages = 4096;

sockaddr_in AnyLocalPort() {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

/// Listens on a free port of this machine; gives the port.
std::uint16_t Listen(int socket) {
  sockaddr_in address = AnyLocalPort();
  socklen_t length = sizeof address;
  auto* raw = reinterpret_cast<sockaddr*>(&address);
  if (bind(socket, raw, length) != 0 || listen(socket, kBacklog) != 0 ||
      getsockname(socket, raw, &length) != 0) {
    throw std::runtime_error("no port to listen on");
  }
  return ntohs(address.sin_port);
}

}  // namespace

struct TdsServer::Client {
  Client(int socket, std::uint16_t spid) : channel(socket, spid) {}

  Channel channel;
  std::atomic<bool> served{false};
  std::thread thread;
};

TdsServer::TdsServer(std::filesystem::path embeddedFolder, std::string serverName) {
  settings_.embeddedFolder = std::move(embeddedFolder);
  settings_.serverName = std::move(serverName);
  settings_.entered = [this](const Login& login) {
    const std::lock_guard lock(mutex_);
    logins_.push_back(login);
  };
  settings_.received = [this](const Message& message) {
    const std::lock_guard lock(mutex_);
    if (messages_.size() < kKeptMessages) messages_.push_back(message);
  };
  listener_ = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  port_ = Listen(listener_);
  acceptor_ = std::thread([this] { Accept(); });
}

TdsServer::~TdsServer() {
  Stop();
}

std::string TdsServer::Address() const {
  return "127.0.0.1," + std::to_string(port_);
}

void TdsServer::Accept() {
  for (;;) {
    const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    if (socket < 0) return;
    Reap(false);
    auto client = std::make_unique<Client>(socket, ++lastSpid_);
    const std::lock_guard lock(mutex_);
    if (stopped_) return;
    Client& served = *clients_.emplace_back(std::move(client));
    served.thread = std::thread([this, &served] { Serve(served); });
  }
}

void TdsServer::Serve(Client& client) {
  try {
    Session(client.channel, settings_, faults_).Run();
  } catch (const std::exception& error) {
    std::fprintf(stderr, "TDS: a sessão %d acabou: %s\n", int{client.channel.Spid()}, error.what());
  }
  // The client hears of the end now; the socket goes with the Client.
  client.channel.Shut();
  client.served = true;
}

void TdsServer::Reap(bool all) {
  std::list<std::unique_ptr<Client>> gone;
  {
    const std::lock_guard lock(mutex_);
    for (auto client = clients_.begin(); client != clients_.end();) {
      const auto next = std::next(client);
      if (all || (*client)->served) gone.splice(gone.end(), clients_, client);
      client = next;
    }
  }
  for (const auto& client : gone) client->channel.Shut();
  for (const auto& client : gone) client->thread.join();
}

void TdsServer::CutConnections() {
  Reap(true);
}

void TdsServer::Stop() {
  {
    const std::lock_guard lock(mutex_);
    if (std::exchange(stopped_, true)) return;
  }
  shutdown(listener_, SHUT_RDWR);
  acceptor_.join();
  close(listener_);
  Reap(true);
}

std::size_t TdsServer::Connections() {
  const std::lock_guard lock(mutex_);
  return static_cast<std::size_t>(
      std::count_if(clients_.begin(), clients_.end(), [](const auto& client) { return !client->served; }));
}

std::vector<Login> TdsServer::Logins() {
  const std::lock_guard lock(mutex_);
  return logins_;
}

std::vector<Message> TdsServer::Messages() {
  const std::lock_guard lock(mutex_);
  return messages_;
}

}  // namespace korvel::tds
