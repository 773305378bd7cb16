#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "demo/books.h"
#include "support/scripted_world.h"

namespace korvel::demo {

/// A server with filled databases "Lunder" and "Brevant".
class Books {
 public:
  explicit Books(std::int64_t lines, int year = 2025) {
    server.Run("master", "create database Lunder\nGO\ncreate database Brevant");
    const auto lunder = server.Open("Lunder");
    const auto brevant = server.Open("Brevant");
    summary = FillBooks(*lunder, *brevant, {.year = year, .lines = lines}, server.progress);
  }
  std::vector<std::string> Lunder(std::string_view query) { return server.Rows("Lunder", query); }
  std::vector<std::string> Brevant(std::string_view query) { return server.Rows("Brevant", query); }

  test::TestServer server;
  BooksSummary summary;
};

}  // namespace korvel::demo
