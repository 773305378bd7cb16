#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "data/embedded/types.h"

namespace korvel::data::embedded {

/// A value as the file keeps it (see ColumnType); the text is a view.
using Stored = std::variant<Null, std::int64_t, double, std::string_view>;
/// The same with a text of its own.
using OwnedStored = std::variant<Null, std::int64_t, double, std::string>;

Stored View(const OwnedStored& value);
OwnedStored Own(const Stored& value);

enum class ConvertMode {
  Cast,    // a text too long is cut
  Assign,  // a text too long for its column is refused (native 8152)
};

/// Converts between any two types as the server does. A new text is written to `scratch` and the result views it;
/// a text that stays as it is keeps its own view. `style` is that of convert(), -1 for none.
/// Throws Error: 245, 241, 8114 for a text that is no such value, 8115 and 242 outside the range, 8152.
Stored Convert(const Stored& value, const ColumnType& from, const ColumnType& to, ConvertMode mode, int style,
               std::string& scratch);

/// A driver's parameter as a stored value of the type that ParameterType gives for it.
Stored FromParameter(const Parameter& parameter);
/// Nothing for Null.
std::optional<ColumnType> ParameterType(const Parameter& parameter);
Value ToValue(const Stored& value, const ColumnType& type);

/// Characters of a UTF-8 text.
std::size_t CountCharacters(std::string_view text);
/// The first characters of a text.
std::string_view FirstCharacters(std::string_view text, std::size_t count);

/// Multiplies or divides by a power of ten, halves away from zero; nothing outside 64 bits.
std::optional<std::int64_t> Rescale(std::int64_t units, int fromScale, int toScale);

/// Ticks of a moment and back. Throws Error (242) for a moment that the type does not have.
std::int64_t TicksFromDate(const DateTime& moment);
DateTime DateFromTicks(std::int64_t ticks);
/// The server's clock: this machine's local time.
std::int64_t TicksNow();

/// Number writing of a scaled integer: "-12.50" for (-1250, 2).
void AppendDecimal(std::string& text, std::int64_t units, int scale);
/// Money as the server's interface gives it: the shortest decimals.
void AppendMoney(std::string& text, std::int64_t units);

}  // namespace korvel::data::embedded
