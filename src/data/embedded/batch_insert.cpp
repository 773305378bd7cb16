#include "data/embedded/batch_insert.h"

#include <fmt/format.h>

#include "data/embedded/errors.h"

namespace korvel::data::embedded {
namespace {

/// Rows of one transaction when the caller has none.
constexpr std::size_t kRowsATransaction = 1000;

Insert InsertOf(std::string_view table, std::span<const std::string_view> columns) {
  Insert insert;
  insert.table.name = table;
  insert.rows.emplace_back();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    insert.columns.emplace_back(columns[i]);
    auto mark = std::make_unique<Expr>();
    mark->kind = ExprKind::Parameter;
    mark->number = static_cast<int>(i);
    insert.rows[0].push_back(std::move(mark));
  }
  return insert;
}

std::string TextOf(std::string_view table, std::span<const std::string_view> columns) {
  std::string names;
  std::string marks;
  for (const std::string_view column : columns) {
    names += fmt::format("{}[{}]", names.empty() ? "" : ",", column);
    marks += marks.empty() ? "?" : ",?";
  }
  return fmt::format("INSERT INTO [{}] ({}) VALUES ({})", table, names, marks);
}

}  // namespace

EmbeddedBatch::EmbeddedBatch(std::shared_ptr<Session> session, std::string_view table,
                             std::span<const std::string_view> columns)
    : session_(std::move(session)),
      database_(session_->Current()),
      text_(TextOf(table, columns)),
      given_(columns.size()) {
  // Every value is announced as text, so that each has a slot of its column's type, whatever comes in the row.
  const ParameterTypes types(columns.size(), Varchar(kMaxVarchar));
  Translation translation = TranslateInsert(InsertOf(table, columns), session_->Around(), types);
  need_.writes = translation.writes;
  session_->RequireFor(need_, false);
  statement_ = database_->File().Prepare(translation.sql);
  slots_ = std::move(translation.slots);
  scratch_.resize(slots_.size());
}

EmbeddedBatch::~EmbeddedBatch() {
  statement_.Reset();
  if (pending_ == 0) return;
  try {
    database_->File().Run("ROLLBACK");
  } catch (const Error&) {
    // Closing the file rolls back what is still open.
  }
}

void EmbeddedBatch::Add(Parameters row) {
  if (row.size() != given_)
    throw Failed(Code::ColumnCount, "A linha tem um número de valores diferente do de colunas");
  session_->RequireAlive();
  Store& file = database_->File();
  if (!file.InTransaction()) {
    session_->RequireFor(need_, false);
    file.Run("BEGIN IMMEDIATE");
  }
  if (session_->Values().transactionCount == 0) ++pending_;
  for (std::size_t i = 0; i < given_; ++i) Bind(i, row[i]);
  BindDefaults();
  statement_.Step();
  statement_.Reset();
  if (pending_ >= kRowsATransaction) Finish();
}

void EmbeddedBatch::Bind(std::size_t i, const Parameter& value) {
  const Slot& slot = slots_[i];
  const auto* text = std::get_if<std::string_view>(&value);
  const bool fits =
      text != nullptr &&
      (slot.type.base == Type::Text ||
       (slot.type.base == Type::Varchar && text->size() <= static_cast<std::size_t>(slot.type.length)));
  if (fits) {
    statement_.BindText(static_cast<int>(i) + 1, *text);
  } else {
    BindConverted(i, value);
  }
}

void EmbeddedBatch::BindConverted(std::size_t i, const Parameter& value) {
  const Slot& slot = slots_[i];
  if (value.IsNull() && !slot.notNull.empty()) {
    throw Failed(Code::NullRefused,
                 fmt::format("Não é possível inserir o valor NULL na coluna '{}'; a coluna não aceita nulos",
                             slot.notNull));
  }
  const Stored stored = FromParameter(value);
  const ColumnType from = ParameterType(value).value_or(slot.type);
  statement_.Bind(static_cast<int>(i) + 1,
                  Convert(stored, from, slot.type, ConvertMode::Assign, slot.style, scratch_[i]));
}

/// Slots behind the given values belong to defaults, such as the clock.
void EmbeddedBatch::BindDefaults() {
  if (slots_.size() == given_) return;
  const std::vector<Slot> rest(slots_.begin() + static_cast<std::ptrdiff_t>(given_), slots_.end());
  BindSlots(statement_, rest, {session_->Values(), {}, {}}, defaults_, static_cast<int>(given_));
}

void EmbeddedBatch::Finish() {
  statement_.Reset();
  if (pending_ == 0) return;
  database_->File().Run("COMMIT");
  pending_ = 0;
}

}  // namespace korvel::data::embedded
