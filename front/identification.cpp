#include "front/vantiro.h"

#include "client/exceptions.h"
#include "client/reply.h"
#include "host/framework/dialog.h"

namespace {

[[nodiscard]] core::InputForm confirmationForm()
{
    core::InputForm form;
    form.title = tr::Tr(QStringLiteral("vantiroInputConfirmCodeTitle"), QStringLiteral("Ввод кода подтверждения"));
    form.message
        = tr::Tr(QStringLiteral("vantiroInputConfirmCodeMessage"), QStringLiteral("Введите код подтверждения"));
    form.scanError = tr::Tr(QStringLiteral("inputTextFormScanError"),
                            QStringLiteral("Ошибка разбора введенных данных, повторите сканирование"));
    form.okButton = tr::Tr(QStringLiteral("inputTextFormOkBtn"), QStringLiteral("ОК"));
    form.cancelButton = tr::Tr(QStringLiteral("inputTextFormCancelBtn"), QStringLiteral("Отмена"));
    form.type = 5; // a text field
    form.id = QStringLiteral("inputVantiroConfirmCode");
    form.lengthLimit = 4095;
    return form;
}

} // namespace

bool Vantiro::identifyByCard(QSharedPointer<DocumentCardRecord>& card, ECardNumberType /*type*/)
{
    logger->info("Получение информации о карте Vantiro");
    try {
        if (isOfflineMode(document)) {
            throw VantiroNoConnectionException(vantiro::reply::noConnection());
        }
        const QString number = card->getNumber().toString();
        if (!interface->isCardValid(number)) {
            return false; // no error: the card is another system's
        }
        card->setBonusBalance(interface->getCardBalance(number));
        return true;
    } catch (const VantiroNoConnectionException& exception) {
        if (!isOfflineMode(document) && document->canGoOffline()) {
            updatePluginData(document, true);
        }
        return fail(exception.tr());
    } catch (const VantiroException& exception) {
        return fail(exception.tr());
    }
}

bool Vantiro::getCardInfo(QSharedPointer<DocumentCardRecord>& card, ECardNumberType /*type*/)
{
    logger->info("Запрос информации о карте");
    try {
        card->setBonusBalance(interface->getCardBalance(card->getNumber().toString()));
        return true;
    } catch (const VantiroException& exception) {
        return fail(exception.tr());
    }
}

CardNumberResult Vantiro::getCardNumber(const loyalty::CardNumberInputData& input)
{
    if (input.type != loyalty::CardNumberInputData::phone) {
        logger->error(QStringLiteral("Система лояльности не поддерживает поиск карты по введенному типу ")
                      + QString::number(input.type));
        return BasicLoyaltySystem::getCardNumber(input);
    }

    CardNumberResult result;
    try {
        logger->info("Получение номера карты по номеру телефона '%1'", input.value);
        QString cardNumber;
        QString confirmCode;
        interface->getCardNumberAndCodeByPhone(input.value, cardNumber, confirmCode);

        const core::BasicDialog::Result answer = MockFactory<Dialog>::create()->showForm(confirmationForm());
        if (!answer.canceled()) {
            if (answer.getData() != confirmCode) { // one try: the form does not come back
                const tr::Tr wrong(QStringLiteral("vantiroIncorrectConfirmCode"),
                                   QStringLiteral("Неверный код подтверждения"));
                answer.dispatchEvent(wrong);
                throw VantiroException(wrong);
            }
            result.cardNumber = cardNumber;
        }
        result.ok = true;
    } catch (const VantiroException& exception) {
        logger->error(exception.tr().ru());
        result.error = exception.tr();
    }
    return result;
}
