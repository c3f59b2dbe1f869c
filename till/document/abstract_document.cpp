#include "host/document/abstract_document.h"

AbstractDocument::AbstractDocument() = default;
AbstractDocument::~AbstractDocument() = default;
