#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <variant>

#include "data/currency.h"
#include "data/date_time.h"

/// Statement texts composed from names and values. New code binds its values instead.
namespace korvel::toolkit {

/// A value of a composed statement: nothing, a boolean, a number, a date or a text.
using StatementValue =
    std::variant<std::monostate, bool, std::int64_t, data::Currency, data::DateTime, std::string_view>;

/// "INSERT INTO <tabela> (<f1>,<f2>) VALUES (<v1> , <v2> )". Money is written by CurToSQL, True as -1, False as
/// 0, dates and texts between single quotes. Inner quotes are NOT doubled, which is deliberate: a text that
/// may hold one must come with its quotes doubled already. Nothing is written for an empty value, which the
/// server then refuses.
std::string InsertSQL(std::string_view tabela, std::span<const std::string_view> campos,
                      std::span<const StatementValue> valores);
/// "UPDATE <tabela> SET <f1>=<v1>,<f2>=<v2><where>", values as above.
std::string UpdateSQL(std::string_view tabela, std::span<const std::string_view> campos,
                      std::span<const StatementValue> valores, std::string_view where);

}  // namespace korvel::toolkit
