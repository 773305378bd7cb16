#pragma once

#include <string_view>

namespace korvel::data::embedded {

class Store;

/// Name of the collation of every text column.
constexpr std::string_view kCollation = "KORVEL";

/// Gives a file the collation and the functions that translated statements call:
///   t_conv(value, from, to, mode and style)   conversion between packed types
///   t_notnull(value, column)                  refuses NULL (native 515)
///   t_add, t_sub, t_mul, t_div, t_mod         exact arithmetic on scaled integers, with the type's bounds
///   t_fdiv(a, b)                              division of doubles
///   t_fact(name, text, text)                  what the server tells of a session (server_facts.h)
///   t_like(value, pattern[, escape])          LIKE, and the text functions t_len, t_left, t_upper, ...
void RegisterFunctions(Store& store);

}  // namespace korvel::data::embedded
