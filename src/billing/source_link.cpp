#include "billing/source_link.h"

namespace korvel::billing {

bool SourceLink::Open() {
  return session::AbreConnection_bln(context_, main_, session::kBrevant);
}

data::Connection& SourceLink::At(Slot slot) {
  session::ConnectionPtr& connection = slots_[static_cast<std::size_t>(slot)];
  if (!connection && !session::AbreConnection_bln(context_, connection, session::kBrevant, false, false))
    throw data::Error(data::Failure::NoServer, context_.session.gErroDescricao);
  return *connection;
}

}  // namespace korvel::billing
