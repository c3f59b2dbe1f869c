#pragma once

#include "host/document/document_impact.h"

/// Puts a null detail under the position. Records of a till may hold one, but the contract has no way to make one.
void setNullDetail(DocumentImpact& impact, int position);
