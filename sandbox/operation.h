#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace sandbox {

enum class Operation {
    isCardValid,
    getCardBalance,
    ping,
    getDiscounts,
    getMessages,
    getCardDiscountAmount,
    subtractBonus,
    cancelSubtractBonus,
    accrual,
    offlineAccrual,
    getVerifyCode,
    isCouponValid
};

/// The names of parameters.
inline constexpr std::string_view cardParameter = "discountCardNumber";
inline constexpr std::string_view chequeParameter = "cheque";
inline constexpr std::string_view amountParameter = "amount";
inline constexpr std::string_view couponParameter = "couponNumber";

struct OperationForm {
    Operation operation;
    std::string_view name;
    std::vector<std::string_view> parameters; // all required, once each, in this order
    bool hasResult = true; // a Result element inside the Response element
};

/// What the contract says of each operation. [any-thread]
[[nodiscard]] const std::vector<OperationForm>& operationForms();
[[nodiscard]] const OperationForm& formOf(Operation operation);

/// The operation of that exact name; null when there is none. [any-thread]
[[nodiscard]] const OperationForm* findOperation(std::string_view name);

}
