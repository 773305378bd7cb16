#pragma once

#include <cstdint>

#include "data/embedded/types.h"

namespace korvel::data::embedded {

/// Arithmetic on the scaled integers of exact types. Every result is checked against the bounds of its type:
/// throws Error 8115 outside them and 8134 for a division by zero.
std::int64_t Add(std::int64_t a, std::int64_t b, const ColumnType& type);
std::int64_t Subtract(std::int64_t a, std::int64_t b, const ColumnType& type);
/// a*b divided by 10 to the power of `drop`, halves away from zero.
std::int64_t Multiply(std::int64_t a, std::int64_t b, int drop, const ColumnType& type);
/// a times 10 to the power of `raise`, divided by b, cut towards zero.
std::int64_t Divide(std::int64_t a, std::int64_t b, int raise, const ColumnType& type);
std::int64_t Remainder(std::int64_t a, std::int64_t b);
double Divide(double a, double b);
/// Rounded to `decimals` places, which may be negative, halves away from zero.
std::int64_t Round(std::int64_t units, int decimals, const ColumnType& type);

}  // namespace korvel::data::embedded
