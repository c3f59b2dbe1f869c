#pragma once

#include "till/program/doctor_finding.h"
#include "till/program/doctor_settings.h"

#include <functional>

namespace till::diagnosis {

/// Asks the server as the plug-in would: its name, the connection, its certificate, a ping, the credentials. What needs
/// a connection is left out when there is none. Credentials go to a server only when it could be verified, or when it
/// has no TLS. Each finding is told as soon as it is there. The server must be usable.
/// [any-thread] [blocks: four times the timeout at the longest]
void checkServer(const Server& server, const ServiceSettings& settings,
                 const std::function<void(const Finding&)>& tell);

} // namespace till::diagnosis
