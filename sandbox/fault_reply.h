#pragma once

#include "sandbox/fault_plan.h"

#include <string>

namespace httplib {
struct Response;
}

namespace sandbox {

/// Makes of a proper reply what the fault wants it to be. [any-thread]
void spoilReply(const Fault& fault, httplib::Response& response);

}
