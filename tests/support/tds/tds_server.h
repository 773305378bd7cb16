#pragma once

#include <cstdint>
#include <filesystem>
#include <list>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "support/tds/session.h"

namespace korvel::tds {

/// A SQL Server for tests: it listens on 127.0.0.1 and hands each statement to an embedded server, one thread a
/// connection. Clients enter with the embedded server's logins; as `sa` with a blank password they make a server that
/// is not there. Its destructor cuts every connection and waits for its threads.
class TdsServer {
 public:
  /// Throws std::runtime_error when no port is to be had.
  TdsServer(std::filesystem::path embeddedFolder, std::string serverName);
  ~TdsServer();
  TdsServer(const TdsServer&) = delete;
  TdsServer& operator=(const TdsServer&) = delete;

  std::uint16_t Port() const { return port_; }
  /// "127.0.0.1,PORT", as a Data Source.
  std::string Address() const;
  Faults& Switches() { return faults_; }

  /// Stops listening, cuts the connections, ends the threads. Safe to call twice.
  void Stop();
  /// Cuts the connections that there are and goes on listening.
  void CutConnections();

  /// Connections that are being served.
  std::size_t Connections();
  /// Logins that succeeded so far, without their passwords.
  std::vector<Login> Logins();
  /// Every message that clients have sent so far.
  std::vector<Message> Messages();

 private:
  struct Client;

  void Accept();
  void Serve(Client& client);
  void Reap(bool all);

  Faults faults_;
  SessionSettings settings_;
  int listener_ = -1;
  std::uint16_t port_ = 0;
  std::uint16_t lastSpid_ = 50;

  std::mutex mutex_;  // guards what follows
  std::list<std::unique_ptr<Client>> clients_;
  std::vector<Login> logins_;
  std::vector<Message> messages_;
  bool stopped_ = false;

  std::thread acceptor_;
};

}  // namespace korvel::tds
