#include <memory>

#include "data/embedded/batch_parser.h"

namespace korvel::data::embedded {

BackUpDatabase BatchParser::ParseBackUp() {
  BackUpDatabase backup;
  ExpectWord("database");
  backup.database = ExpectName();
  ExpectWord("to");
  backup.target = Target();
  if (!TakeWord("with")) return backup;
  do {
    if (TakeWord("init") || TakeWord("format")) {
      backup.init = true;
    } else if (!TakeWord("noinit")) {
      TargetOption();
    }
  } while (TakeSymbol(","));
  return backup;
}

RestoreDatabase BatchParser::ParseRestore() {
  RestoreDatabase restore;
  ExpectWord("database");
  restore.database = ExpectName();
  ExpectWord("from");
  restore.target = Target();
  if (!TakeWord("with")) return restore;
  do {
    if (TakeWord("replace")) {
      restore.replace = true;
    } else if (!TakeWord("recovery")) {
      TargetOption();
    }
  } while (TakeSymbol(","));
  return restore;
}

/// A device, or Disk='<file>'. Between double quotes the file is a text too: callers set QUOTED_IDENTIFIER OFF for it.
BackupTarget BatchParser::Target() {
  BackupTarget target;
  if (!TakeWord("disk")) {
    target.device = ExpectName();
    return target;
  }
  ExpectSymbol("=");
  if (Peek().kind == TokenKind::Quoted) {
    target.file = std::make_unique<Expr>();
    target.file->kind = ExprKind::String;
    target.file->text = Next().text;
  } else {
    const TokenKind kind = Peek().kind;
    if (kind != TokenKind::String && kind != TokenKind::Variable && kind != TokenKind::Parameter) Fail();
    target.file = Value();
  }
  return target;
}

/// What changes neither the backup nor what it is for.
void BatchParser::TargetOption() {
  if (TakeWord("stats")) {
    if (TakeSymbol("=")) ExpectInteger();
  } else if (TakeWord("name") || TakeWord("description")) {
    ExpectSymbol("=");
    if (Peek().kind != TokenKind::String) Fail();
    Next();
  } else if (!TakeWord("skip") && !TakeWord("noskip") && !TakeWord("nounload")) {
    Fail();
  }
}

Dbcc BatchParser::ParseDbcc() {
  Dbcc dbcc;
  dbcc.command = LowerName(ExpectName());
  if (TakeSymbol("(") && !TakeSymbol(")")) {
    do {
      dbcc.arguments.push_back(DbccArgument());
    } while (TakeSymbol(","));
    ExpectSymbol(")");
  }
  if (TakeWord("with")) {
    do {
      ExpectName();
    } while (TakeSymbol(","));
  }
  return dbcc;
}

/// A name may stand bare, between brackets or as a text.
std::string BatchParser::DbccArgument() {
  if (Peek().kind == TokenKind::String || Peek().kind == TokenKind::Number) return Next().text;
  const std::size_t start = Offset();
  ExpectObjectName();
  return TextFrom(start);
}

/// "update statistics Table [index]".
Dbcc BatchParser::ParseStatistics() {
  const std::size_t start = Offset();
  ExpectObjectName();
  Dbcc dbcc{"statistics", {TextFrom(start)}};
  if (IsName()) Next();
  return dbcc;
}

}  // namespace korvel::data::embedded
