#include "host/framework/event.h"

#include "host/facilities/tr.h"

#include <algorithm>

namespace {

// A variant compares texts of this class by nothing at all and finds them unequal to themselves.
bool isSame(const QVariant& left, const QVariant& right)
{
    const QMetaType text = QMetaType::fromType<tr::Tr>();
    if (left.metaType() == text && right.metaType() == text) {
        const auto leftText = left.value<tr::Tr>();
        const auto rightText = right.value<tr::Tr>();
        return leftText.getKey() == rightText.getKey() && leftText.ru() == rightText.ru();
    }
    return left == right;
}

}

Event::Event()
    : code {}
{
}

Event::Event(EActivityListener::Event eventCode)
    : code(eventCode)
{
}

Event::Event(EActivityListener::Event eventCode, const QMap<QString, QVariant>& eventArguments)
    : code(eventCode)
    , arguments(eventArguments)
{
}

Event& Event::addArgument(const QString& name, const QVariant& value)
{
    arguments.insert(name, value);
    return *this;
}

EActivityListener::Event Event::getCode() const
{
    return code;
}

bool Event::contains(const QString& name) const
{
    return arguments.contains(name);
}

QVariant Event::value(const QString& name, const QVariant& defaultValue) const
{
    return arguments.value(name, defaultValue);
}

bool Event::operator==(const Event& other) const
{
    return code == other.code
        && std::equal(arguments.constKeyValueBegin(), arguments.constKeyValueEnd(),
                      other.arguments.constKeyValueBegin(), other.arguments.constKeyValueEnd(),
                      [](const auto& left, const auto& right) {
                          return left.first == right.first && isSame(left.second, right.second);
                      });
}
