#pragma once

#include <string>
#include <vector>

#include "data/embedded/parser_base.h"

namespace korvel::data::embedded {

/// Statements: those that read and change rows and settings (parser.cpp), and definitions (parser_definition.cpp).
class BatchParser : public ExpressionParser {
 public:
  using ExpressionParser::ExpressionParser;

  Batch Run();

 private:
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
  Statement SetOption();
  Call Procedure();
  ExprPtr ArgumentValue();
};

}  // namespace korvel::data::embedded
