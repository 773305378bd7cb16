#include "data/odbc/open.h"

#include "data/odbc/connection_text.h"
#include "data/odbc/odbc_connection.h"

namespace korvel::data {

std::unique_ptr<Connection> OpenOdbc(const std::string& driver, const ConnectionString& target,
                                     std::string_view password, int timeoutSeconds) {
  return odbc::OpenText(odbc::ConnectionText(driver, target, password), timeoutSeconds);
}

}  // namespace korvel::data
