#pragma once

#include "host/facilities/tr.h"

#include <QDomDocument>
#include <QDomElement>
#include <QString>

/// Reading of replies: what several operations ask of one, and the texts of their failures.
namespace vantiro::reply {

[[nodiscard]] tr::Tr incorrectAnswer();
[[nodiscard]] tr::Tr noConnection();

/// The one element of that tag, anywhere in the document. Throws `VantiroException` with the text when there is none or
/// more than one.
[[nodiscard]] QDomElement requireSingle(const QDomDocument& document, const QString& tag, const tr::Tr& failure);

/// The attribute as a decimal integer of 32 bits, or as a number with a point. An absent attribute reads as empty text,
/// which is neither. Throw `VantiroException` with `incorrectAnswer`.
[[nodiscard]] int requireInteger(const QDomElement& element, const QString& attribute);
[[nodiscard]] double requireNumber(const QDomElement& element, const QString& attribute);

} // namespace vantiro::reply
