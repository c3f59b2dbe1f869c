#pragma once

#include "bench/long_cheque.h"

#include <QString>

#include <functional>
#include <string>
#include <vector>

/// Makes one text that goes to the server, from the document to the finished text. [cheque-thread]
using TextMaker = std::function<QString()>;

/// One way to make the text. What it works on is made beforehand and not timed; the cheque outlives the maker.
struct ChequeForm {
    std::string name;
    std::function<TextMaker(const LongCheque&)> prepare;
};

/// Every form of the cheque through the client, and last a whole request with one. Asks no server.
[[nodiscard]] const std::vector<ChequeForm>& chequeForms();
