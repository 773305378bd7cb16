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
  TooManyArguments = 8144,
  NoParameter = 8145,
  NoParameters = 8146,
  ArgumentTwice = 8143,
  NotOutput = 8162,
  OutputOfConstant = 179,
  PositionAfterName = 119,
  NestedTooDeep = 217,
  NoVariable = 137,
  VariableTwice = 134,
  VariableOfText = 2739,
  MustBeFirst = 111,
  UseInProcedure = 154,
  BreakOutsideLoop = 135,
  ReturnOfValue = 178,
  NoObject = 15009,
  NoText = 15197,
  NotInTransaction = 3902,
  NotInsideTransaction = 226,
  LoginFailed = 18456,
  TooManyConnections = 17809,
  OutOfRoom = 701,
  ObjectRight = 229,
  StatementRight = 262,
  NoRightToObject = 3704,
  NoRight = 15247,
  NoRightToDatabase = 916,
  NoRightToAlterDatabase = 5011,
  NoRightToKill = 6102,
  KillOneself = 6104,
  NoProcessToKill = 6106,
  Killed = 596,
  BadPrincipalName = 15006,
  NoLogin = 15007,
  NoUser = 15008,
  UserExists = 15023,
  LoginExists = 15025,
  LoginHasUser = 15063,
  BadAccountName = 15407,
  NotAUser = 15198,
  NoRole = 15014,
  NoServerRole = 15402,
  SpecialPrincipal = 15405,
  OwnsDatabases = 15174,
  LoginConnected = 15434,
  OldPasswordWrong = 15211,
  OwnerIsUser = 15110,
  SystemDatabase = 15109,
  NotInUserTransaction = 15002,
  SingleUserTaken = 924,
  StateNotPlaced = 5061,
  StateInUse = 5070,
  SingleUserConnected = 5064,
  BadOption = 5058,
  BadLevel = 15416,
  NoDatabaseNamed = 15010,
  LockTimeout = 1222,
  Damaged = 824,
  DiskFull = 1101,
  ReadOnly = 3906,
  Input = 823,
};

/// For a connection that another one has killed.
Error KilledError();

/// An Error with the class and SQLSTATE that belong to the number.
Error Failed(Code code, const std::string& text);

/// A statement past its time.
Error OutOfTime();

/// "Sintaxe incorrecta perto de 'x'. Texto: ..."
Error SyntaxError(std::string_view near, std::string_view excerpt);

}  // namespace korvel::data::embedded
