#include "host/document/back_by_sale_document.h"

BackBySaleDocument::BackBySaleDocument() = default;
BackBySaleDocument::~BackBySaleDocument() = default;
