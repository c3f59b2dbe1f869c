#include "host/document/document_card_record.h"

DocumentCardRecord::DocumentCardRecord() = default;
DocumentCardRecord::~DocumentCardRecord() = default;
