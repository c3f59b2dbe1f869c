#include "client/reply.h"

#include "client/exceptions.h"

#include <cmath>

namespace vantiro::reply {

tr::Tr incorrectAnswer()
{
    return tr::Tr(QStringLiteral("requestIncorrectAnswer"), QStringLiteral("Некорректный ответ от сервера"));
}

tr::Tr noConnection()
{
    return tr::Tr(QStringLiteral("requestNoConnection"), QStringLiteral("Нет связи с сервером"));
}

QDomElement requireSingle(const QDomDocument& document, const QString& tag, const tr::Tr& failure)
{
    const QDomNodeList elements = document.elementsByTagName(tag);
    if (elements.length() != 1) {
        throw VantiroException(failure);
    }
    return elements.at(0).toElement();
}

int requireInteger(const QDomElement& element, const QString& attribute)
{
    bool ok = false;
    const int value = element.attribute(attribute).toInt(&ok, 10);
    if (!ok) {
        throw VantiroException(incorrectAnswer());
    }
    return value;
}

double requireNumber(const QDomElement& element, const QString& attribute)
{
    bool ok = false;
    const double value = element.attribute(attribute).toDouble(&ok);
    if (!ok || !std::isfinite(value)) { // Qt reads "nan" and "inf" as numbers
        throw VantiroException(incorrectAnswer());
    }
    return value;
}

} // namespace vantiro::reply
