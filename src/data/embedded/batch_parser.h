#pragma once

#include <string>
#include <vector>

#include "data/embedded/parser_base.h"

namespace korvel::data::embedded {

/// Statements: those that read and change rows and settings (parser.cpp), definitions (parser_definition.cpp), variables,
/// control of flow and procedures (parser_program.cpp), and the files of databases (parser_storage.cpp).
class BatchParser : public ExpressionParser {
 public:
  using ExpressionParser::ExpressionParser;

  Batch Run();
  /// A text that begins with CREATE PROCEDURE.
  StoredProcedure RunProcedure();

 private:
  struct Loop {
    std::size_t start;
    std::vector<std::size_t> leaves;  // jumps to behind it
  };

  Batch TakeBatch();
  void Statements();
  void ParseStatement();
  /// A statement that is part of another one.
  void InnerStatement();
  void Block();
  void If();
  void While();
  void LeaveLoop(bool forGood);
  void Declare();
  void ParseSelect();
  void ParseReturn();
  bool StartsValue() const;
  template <typename Step>
  std::size_t Add(Step step);
  /// Lets a Branch or Jump go on at the statement that comes next.
  void LandHere(std::size_t step);
  bool StartsProcedure() const;
  CreateProcedure ParseCreateProcedure();
  ObjectName ProcedureHead(std::vector<ProcedureParameter>& parameters);
  ProcedureParameter Parameter();
  void ProcedureOptions();
  Call ParseCall();
  Argument CallArgument();
  ExprPtr ArgumentValue();

  BackUpDatabase ParseBackUp();
  RestoreDatabase ParseRestore();
  BackupTarget Target();
  void TargetOption();
  Dbcc ParseDbcc();
  std::string DbccArgument();
  Dbcc ParseStatistics();

  Statement OneStatement();
  Statement Data();
  Statement Definition();
  Insert ParseInsert();
  std::vector<ExprPtr> ValueRow();
  Update ParseUpdate();
  Delete ParseDelete();
  Statement Create();
  CreateTable ParseCreateTable();
  void TableElement(std::vector<ColumnDefinition>& columns, std::vector<KeyDefinition>& keys);
  ColumnDefinition Column();
  bool ColumnOption(ColumnDefinition& column, std::string& constraint);
  void IdentityOption(ColumnDefinition& column);
  std::string DefaultText();
  KeyDefinition Key(std::string name);
  void SkipStorage();
  CreateView ParseCreateView();
  CreateIndex ParseCreateIndex();
  Statement Drop();
  Statement Alter();
  Statement AlterAdd(ObjectName table);
  Statement AlterDrop(ObjectName table);
  Statement Transaction();
  // Over the server itself (parser_server.cpp).
  CreateLogin ParseCreateLogin();
  void LoginOption(CreateLogin& create);
  AlterLogin ParseAlterLogin();
  SetDatabaseState ParseAlterDatabase();
  DatabaseState ExpectState();
  std::string ExpectText();
  Statement SetOption();

  Batch batch_;
  std::vector<Loop> loops_;
  int blocks_ = 0;
  bool inProcedure_ = false;
};

}  // namespace korvel::data::embedded
