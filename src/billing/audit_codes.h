#pragma once

#include <string>
#include <string_view>

/// Codes and fixed texts by which documents and master data name each other in the audit file.
namespace korvel::billing {

inline constexpr std::string_view kUnknown = "Desconhecido";
/// The tax number of buyers without one.
inline constexpr std::string_view kFinalConsumer = "999999990";
/// A postal code that says nothing.
inline constexpr std::string_view kNoPostalCode = "0000000000";
/// The product of documents without lines.
inline constexpr std::string_view kNoProduct = "S/Produto";

/// The product that stands for an extra charge.
std::string ChargeProduct(std::string_view codigoImposto);

/// A tax number as it identifies a customer; one without a digit is the final consumer.
std::string CustomerIdOf(std::string_view contribuinte);

}  // namespace korvel::billing
