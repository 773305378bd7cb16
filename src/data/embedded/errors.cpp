#include "data/embedded/errors.h"

#include <algorithm>
#include <iterator>

#include <fmt/format.h>

namespace korvel::data::embedded {
namespace {

struct CodeClass {
  Code code;
  Failure failure;
  const char* sqlState;
};

/// Every other number is a refused statement, "42000".
constexpr CodeClass kClasses[] = {
    {Code::NoTable, Failure::NoTable, "42S02"},
    {Code::NoColumn, Failure::Statement, "42S22"},
    {Code::ColumnCount, Failure::Statement, "21S01"},
    {Code::ObjectExists, Failure::Statement, "42S01"},
    {Code::IndexExists, Failure::Statement, "42S11"},
    {Code::ColumnTwice, Failure::Statement, "42S21"},
    {Code::NoObjectToDrop, Failure::Statement, "42S02"},
    {Code::DuplicateConstraint, Failure::Integrity, "23000"},
    {Code::DuplicateIndex, Failure::Integrity, "23000"},
    {Code::DuplicateOnCreate, Failure::Integrity, "23000"},
    {Code::NullRefused, Failure::Integrity, "23000"},
    {Code::Truncated, Failure::Truncation, "22001"},
    {Code::ArithmeticOverflow, Failure::Truncation, "22003"},
    {Code::DateRange, Failure::Conversion, "22007"},
    {Code::DivisionByZero, Failure::Statement, "22012"},
    {Code::Conversion, Failure::Conversion, "22018"},
    {Code::NumericConversion, Failure::Conversion, "22018"},
    {Code::DateConversion, Failure::Conversion, "22007"},
    {Code::LoginFailed, Failure::WrongLogin, "28000"},
    {Code::CannotOpenDatabase, Failure::NoServer, "42000"},
    {Code::LockTimeout, Failure::Timeout, "HYT00"},
    {Code::Damaged, Failure::NoServer, "HY000"},
    {Code::Input, Failure::NoServer, "HY000"},
    {Code::DiskFull, Failure::NoServer, "HY000"},
};

}  // namespace

Error Failed(Code code, const std::string& text) {
  const auto* found = std::find_if(std::begin(kClasses), std::end(kClasses),
                                   [code](const CodeClass& entry) { return entry.code == code; });
  const bool listed = found != std::end(kClasses);
  return Error(listed ? found->failure : Failure::Statement, static_cast<int>(code),
               listed ? found->sqlState : "42000", text);
}

Error SyntaxError(std::string_view near, std::string_view excerpt) {
  return Failed(Code::Syntax,
                fmt::format("Sintaxe incorrecta perto de '{}', no texto \"{}\"", near, excerpt));
}

}  // namespace korvel::data::embedded
