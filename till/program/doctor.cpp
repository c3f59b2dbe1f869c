#include "till/facilities/log_setup.h"
#include "till/program/commands.h"
#include "till/program/doctor_checks.h"

#include <cstdio>

namespace till {

int doctor(const Places& places)
{
    // A till that runs has its log to itself, and whatever would be logged here is a finding anyway.
    setUpLogging({ .file = {}, .console = false });
    const bool isSound = diagnosis::examine(places, [](const diagnosis::Finding& finding) {
        const QByteArray line = diagnosis::lineOf(finding).toUtf8() + '\n';
        std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
        std::fflush(stdout); // what follows may take the whole timeout
    });
    return isSound ? 0 : 1;
}

} // namespace till
