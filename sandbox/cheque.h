#pragma once

#include "sandbox/money.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sandbox {

struct LineDiscount {
    int id = 0; // 0 when it is none of this service's
    Kopecks amount = 0;
};

struct ChequeLine {
    int number = 0;
    bool takesPoints = false;
    bool earnsPoints = false;
    bool takesDiscounts = false;
    std::int64_t quantity = 0; // thousandths
    Kopecks amount = 0; // points that were spent on the line are still in it
    Kopecks minAmount = 0;
    Kopecks bonus = 0; // points spent on the line
    std::string item;
    std::vector<LineDiscount> discounts;
    std::vector<std::string> coupons;
};

struct ChequeCard {
    std::string number;
    Kopecks spent = 0; // points spent on the cheque
};

/// By these a return names its sale.
struct SaleReference {
    std::string number;
    std::string openTime;
};

enum class ChequeStatus { open, closed, canceled };
enum class ChequeType { sale, back, other };

struct Cheque {
    std::string uid; // empty when the till has none
    std::string number;
    std::string shift;
    std::string openTime;
    std::string closeTime;
    ChequeType type = ChequeType::other;
    ChequeStatus status = ChequeStatus::open;
    Kopecks amount = 0; // points that were spent are no longer in it
    std::optional<ChequeCard> card; // the loyalty card; certificates are left out
    std::optional<SaleReference> sale;
    std::vector<ChequeLine> lines;
    std::vector<std::string> coupons;
    std::string canonical; // the same for every text of the same cheque

    [[nodiscard]] Kopecks spent() const
    {
        return card ? card->spent : 0;
    }
};

/// The words of the format: "Sale", "Return" or nothing; "Open", "Closed", "Canceled". [any-thread]
[[nodiscard]] std::string_view wordOf(ChequeType type);
[[nodiscard]] std::string_view wordOf(ChequeStatus status);

/// Reads the text of a cheque. Throws `Refusal` when it is not well-formed, or when an element or an attribute that the
/// format requires is missing or malformed. What the format does not know is passed over. [any-thread]
[[nodiscard]] Cheque readCheque(std::string_view text);

}
