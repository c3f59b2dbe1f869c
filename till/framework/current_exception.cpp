#include "till/framework/current_exception.h"

#include <exception>

namespace till {

QString currentExceptionText()
{
    try {
        throw;
    } catch (const std::exception& exception) {
        return QString::fromUtf8(exception.what());
    } catch (...) {
        return QStringLiteral("неизвестное исключение");
    }
}

}
