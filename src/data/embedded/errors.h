#pragma once

#include <string>
#include <string_view>

#include "data/error.h"

namespace korvel::data::embedded {

/// The server's own numbers, as SQL Server gives them.
enum class Code : int {
  Syntax = 102,
  ColumnCount = 213,
  AmbiguousColumn = 209,
  NoColumn = 207,
  NoTable = 208,
  NoFunction = 195,
  ArithmeticOverflow = 8115,
  DivisionByZero = 8134,
  DuplicateConstraint = 2627,
  DuplicateIndex = 2601,
  DuplicateOnCreate = 1505,
  NullRefused = 515,
  IdentityInsert = 544,
  IdentityUpdate = 8102,
  Conversion = 245,
  DateConversion = 241,
  NumericConversion = 8114,
  DateRange = 242,
  TypesDoNotMatch = 402,
  OperandType = 8117,
  TextNotComparable = 306,
  NotGrouped = 8120,
  Aggregate = 147,
  NoType = 2715,
  TooManyTables = 1104,
  Truncated = 8152,
  ObjectExists = 2714,
  IndexExists = 1913,
  ColumnTwice = 2705,
  NoObjectToDrop = 3701,
  NoConstraint = 3728,
  InUse = 3702,
  ColumnInUse = 5074,
  NoColumnToAlter = 4924,
  CannotAlter = 4928,
  ViewNotWritable = 4405,
  NullableKey = 8111,
  KeyExists = 1779,
  NoDatabase = 911,
  CannotOpenDatabase = 4060,
  DatabaseExists = 1801,
  BadName = 1038,
  NoProcedure = 2812,
  ProcedureArguments = 201,
  NotInTransaction = 3902,
  NotInsideTransaction = 226,
  LoginFailed = 18456,
  LockTimeout = 1222,
  Damaged = 824,
  DiskFull = 1101,
  ReadOnly = 3906,
  Input = 823,
};

/// An Error with the class and SQLSTATE that belong to the number.
Error Failed(Code code, const std::string& text);

/// "Sintaxe incorrecta perto de 'x'. Texto: ..."
Error SyntaxError(std::string_view near, std::string_view excerpt);

}  // namespace korvel::data::embedded
