#pragma once

#include "sandbox/cheque.h"
#include "sandbox/cheque_book.h"

#include <string>

namespace sandbox {

struct ReturnedPoints {
    Kopecks earned = 0; // to take back
    Kopecks spent = 0; // to give back
};

/// Finds the goods of a return among the lines of its sale, by the code of the goods, and marks them as returned. Each
/// line gives its points by the share of its quantity, so that parts add up to the whole exactly, however they come.
/// More than was sold changes nothing, and is told in the note. Runs inside the caller's transaction.
[[nodiscard]] ReturnedPoints takeBackGoods(ChequeBook& cheques, const std::string& sale, const Cheque& back,
                                           std::string& note);

}
