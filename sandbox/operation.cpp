#include "sandbox/operation.h"

#include <algorithm>

namespace sandbox {

const std::vector<OperationForm>& operationForms()
{
    static const std::vector<OperationForm> forms {
        { Operation::isCardValid, "IsCardValid", { cardParameter } },
        { Operation::getCardBalance, "GetCardBalance", { cardParameter } },
        { Operation::ping, "Ping", {} },
        { Operation::getDiscounts, "GetDiscounts", { chequeParameter } },
        { Operation::getMessages, "GetMessages", { chequeParameter } },
        { Operation::getCardDiscountAmount, "GetCardDiscountAmount", { cardParameter, chequeParameter } },
        { Operation::subtractBonus, "SubtractBonus45", { cardParameter, amountParameter, chequeParameter } },
        { Operation::cancelSubtractBonus,
          "CancelSubtractBonus",
          { cardParameter, amountParameter, chequeParameter },
          false },
        { Operation::accrual, "Accrual", { chequeParameter } },
        { Operation::offlineAccrual, "OfflineAccrual", { chequeParameter } },
        { Operation::getVerifyCode, "GetVerifyCode", { cardParameter } },
        { Operation::isCouponValid, "IsCouponValid", { couponParameter } },
    };
    return forms;
}

const OperationForm& formOf(Operation operation)
{
    return *std::ranges::find(operationForms(), operation, &OperationForm::operation);
}

const OperationForm* findOperation(std::string_view name)
{
    const auto found = std::ranges::find(operationForms(), name, &OperationForm::name);
    return found == operationForms().end() ? nullptr : &*found;
}

}
