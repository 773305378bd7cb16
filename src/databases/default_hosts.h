#pragma once

#include <string_view>

/// The hosts of mail and FTP that stand in for those that nobody has set.
namespace korvel::databases {

inline constexpr std::string_view kSmtpHostLiteral = "'smtp.korvel.pt'";
inline constexpr std::string_view kFtpHostLiteral = "'ftp.korvel.pt'";

inline constexpr std::string_view kDefaultSmtpHost = kSmtpHostLiteral.substr(1, kSmtpHostLiteral.size() - 2);
inline constexpr std::string_view kDefaultFtpHost = kFtpHostLiteral.substr(1, kFtpHostLiteral.size() - 2);

}  // namespace korvel::databases
