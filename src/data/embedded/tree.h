#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "data/embedded/types.h"

namespace korvel::data::embedded {

/// What the parser makes of a batch. Names stand as written; nothing here knows the catalogue.

struct Query;
struct Expr;
using ExprPtr = std::unique_ptr<Expr>;
using QueryPtr = std::unique_ptr<Query>;

enum class ExprKind {
  Number,  // text: as written
  String,  // text
  Null,
  Parameter,   // number: which "?" of the batch, from 0
  Name,        // names: [owner, table,] column
  Star,        // names: optional table; only in a select list and in count(*)
  Variable,    // text: "@@rowcount", or "@a" with number: which of the batch's variables, and type: its type
  Negate,      // args[0]
  Arithmetic,  // text: + - * / %
  Call,        // text: function, args; distinct
  Case,        // args: when, then, when, then ..., [else]; flag: has else. A simple case becomes comparisons
  Convert,     // args[0], type; number: style, -1 if none
  Subquery,    // query, one column
  // Conditions
  Compare,  // text: = <> < > <= >=, args
  And,
  Or,
  Not,
  Like,     // args: value, pattern, [escape]; flag: not
  In,       // args[0] against the others, or against query; flag: not
  Between,  // args: value, low, high; flag: not
  IsNull,   // args[0]; flag: not
  Exists,   // query
};

struct Expr {
  ExprKind kind;
  std::string text;
  std::vector<std::string> names;
  std::vector<ExprPtr> args;
  QueryPtr query;
  ColumnType type;
  int number = -1;
  bool flag = false;
  bool distinct = false;
};

/// database.owner.name; the first two may be empty.
struct ObjectName {
  std::string database;
  std::string owner;
  std::string name;
};

struct SelectItem {
  ExprPtr expr;
  std::string alias;  // empty: none
  int variable = -1;  // of the batch, that takes the value; -1: none
};

enum class JoinKind { Cross, Inner, Left, Right, Full };

/// A table of a FROM list: named, or a query in brackets, or two sources joined.
struct Source {
  ObjectName table;
  QueryPtr derived;
  std::string alias;
  std::unique_ptr<Source> left;
  std::unique_ptr<Source> right;
  JoinKind join = JoinKind::Cross;
  ExprPtr on;
};

struct Select {
  bool distinct = false;
  ExprPtr top;
  std::vector<SelectItem> items;
  std::vector<std::unique_ptr<Source>> from;
  ExprPtr where;
  std::vector<ExprPtr> groupBy;
  ExprPtr having;
};

struct OrderItem {
  ExprPtr expr;
  bool descending = false;
};

/// Selects joined by UNION: unionAll[i] tells how selects[i + 1] joins what stands before it.
struct Query {
  std::vector<Select> selects;
  std::vector<bool> unionAll;
  std::vector<OrderItem> orderBy;
};

struct Insert {
  ObjectName table;
  std::vector<std::string> columns;        // empty: all but the identity
  std::vector<std::vector<ExprPtr>> rows;  // a null pointer stands for DEFAULT
  QueryPtr query;                          // instead of rows
};

struct Assignment {
  std::string column;
  ExprPtr value;
};

struct Update {
  ObjectName table;
  std::vector<Assignment> assignments;
  ExprPtr where;
};

struct Delete {
  ObjectName table;
  ExprPtr where;
};

struct Truncate {
  ObjectName table;
};

struct ColumnDefinition {
  std::string name;
  ColumnType type;
  bool nullable = true;
  bool identity = false;
  std::int64_t seed = 1;
  std::string defaultText;  // T-SQL of the default, empty: none
  std::string defaultName;
};

enum class KeyKind { PrimaryKey, UniqueConstraint, Index };

/// A key or index; a constraint without a name gets one.
struct KeyDefinition {
  KeyKind kind = KeyKind::Index;
  std::string name;
  bool unique = false;
  bool clustered = false;
  std::vector<std::string> columns;
};

struct CreateTable {
  ObjectName table;
  std::vector<ColumnDefinition> columns;
  std::vector<KeyDefinition> keys;
};

struct CreateView {
  ObjectName view;
  std::vector<std::string> columns;  // empty: the query's own names
  QueryPtr query;
  std::string text;
};

struct CreateIndex {
  ObjectName table;
  KeyDefinition key;
};

/// "drop index Table.Index", "drop index Index on Table".
struct DropIndex {
  ObjectName table;
  std::string index;
};

struct DropObject {
  ObjectName name;
  bool view = false;
};

struct AddColumns {
  ObjectName table;
  std::vector<ColumnDefinition> columns;
  std::vector<KeyDefinition> keys;
};

struct AddDefault {
  ObjectName table;
  std::string name;
  std::string column;
  std::string text;
};

struct AlterColumn {
  ObjectName table;
  ColumnDefinition column;
};

struct DropColumn {
  ObjectName table;
  std::vector<std::string> columns;
};

struct DropConstraint {
  ObjectName table;
  std::string name;
};

struct CreateDatabase {
  std::string name;
};

struct DropDatabase {
  std::vector<std::string> names;
};

/// A login of the server, or an account of the operating system, which has no password here.
struct CreateLogin {
  std::string name;
  std::string password;
  std::string database;  // where it starts, blank: master
  bool windows = false;
};

struct AlterLogin {
  std::string name;
  std::string password;
  std::optional<std::string> oldPassword;
};

struct DropLogin {
  std::string name;
};

enum class DatabaseState { ReadOnly, ReadWrite, SingleUser, MultiUser };
/// What a change of state does while others have the database open.
enum class StateWait { Briefly, None, EndOthers };

struct SetDatabaseState {
  std::string database;
  std::vector<DatabaseState> states;
  StateWait wait = StateWait::Briefly;
};

struct KillProcess {
  std::int64_t spid = 0;
};

struct Use {
  std::string name;
};

enum class TransactionStep { Begin, Commit, Rollback };

/// A setting that is accepted because it states what this server does anyway, or nothing that rows can tell.
struct Accepted {};

/// A variable of a batch. Those of a procedure begin with its parameters.
struct VariableDefinition {
  std::string name;  // with its "@", in lower case
  ColumnType type;
};

/// "set @a = value", also for "declare @a int = value".
struct SetVariable {
  int variable = 0;
  ExprPtr value;
};

/// "select @a = x, @b = y from ...": every item has a variable.
struct AssignQuery {
  QueryPtr query;
};

/// Goes on at another statement unless the condition holds. "if" and "while" come down to this and Jump.
struct Branch {
  ExprPtr condition;
  std::size_t otherwise = 0;
};

struct Jump {
  std::size_t to = 0;
};

struct Return {
  ExprPtr value;  // nullptr: 0
};

/// A message for nobody: its text is only evaluated.
struct PrintText {
  ExprPtr text;
};

struct Argument {
  std::string name;  // with its "@"; empty: by position
  ExprPtr value;     // a bare word is a String; nullptr: DEFAULT
  bool output = false;
};

struct Call {
  ObjectName procedure;
  std::vector<Argument> arguments;
  int result = -1;  // variable of the batch, -1: none
};

/// Of a procedure or, with `alters`, of its new form. The text begins with CREATE either way.
struct CreateProcedure {
  ObjectName procedure;
  std::string text;
  bool alters = false;
};

struct DropProcedure {
  std::vector<ObjectName> procedures;
};

/// A device of the server by its name, or a file.
struct BackupTarget {
  std::string device;
  ExprPtr file;
};

struct BackUpDatabase {
  std::string database;
  BackupTarget target;
  bool init = false;  // an earlier backup gives way
};

struct RestoreDatabase {
  std::string database;
  BackupTarget target;
  bool replace = false;  // whatever stands there gives way
};

/// "dbcc command(arguments)", and "update statistics" as the command "statistics".
struct Dbcc {
  std::string command;  // in lower case
  std::vector<std::string> arguments;
};

using Statement =
    std::variant<Accepted, QueryPtr, Insert, Update, Delete, Truncate, CreateTable, CreateView, CreateIndex,
                 DropIndex, DropObject, AddColumns, AddDefault, AlterColumn, DropColumn, DropConstraint,
                 CreateDatabase, DropDatabase, CreateLogin, AlterLogin, DropLogin, SetDatabaseState,
                 KillProcess, Use, TransactionStep, SetVariable, AssignQuery, Branch, Jump, Return, PrintText,
                 Call, CreateProcedure, DropProcedure, BackUpDatabase, RestoreDatabase, Dbcc>;

/// A visitor of statements made of functions.
template <typename... Handlers>
struct Overloaded : Handlers... {
  using Handlers::operator()...;
};
template <typename... Handlers>
Overloaded(Handlers...) -> Overloaded<Handlers...>;

/// Statements in a row, run one after the other but for Branch, Jump and Return.
struct Batch {
  std::vector<Statement> statements;
  std::vector<VariableDefinition> variables;
  int parameters = 0;
};

struct ProcedureParameter {
  ExprPtr defaultValue;  // nullptr: must be given
  bool output = false;
};

/// Its parameters are the first variables of its body.
struct StoredProcedure {
  std::vector<ProcedureParameter> parameters;
  Batch body;
};

}  // namespace korvel::data::embedded
