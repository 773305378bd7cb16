#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace korvel::test {

/// Checks documents against a published schema.
class SchemaCheck {
 public:
  /// The schema of the audit file, where the build says that it lies. Throws std::runtime_error when it cannot be used.
  SchemaCheck();
  ~SchemaCheck();
  SchemaCheck(const SchemaCheck&) = delete;
  SchemaCheck& operator=(const SchemaCheck&) = delete;

  /// What the schema finds fault with, one text a fault in the order of the document; empty for a valid one.
  std::vector<std::string> Faults(std::string_view document) const;

 private:
  struct Schema;
  std::unique_ptr<Schema> schema_;
};

}  // namespace korvel::test
