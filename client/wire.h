#pragma once

#include <QDomDocument>
#include <QDomElement>
#include <QString>

/// The names of the wire, and the body that every request is built on.
namespace vantiro::wire {

inline const QString soapNamespace = QStringLiteral("http://schemas.xmlsoap.org/soap/envelope/");
inline const QString serviceNamespace = QStringLiteral(VANTIRO_SERVICE_NAMESPACE); // ends in a slash

inline const QString chequeTag = QStringLiteral("tem:cheque");
inline const QString cardNumberTag = QStringLiteral("tem:discountCardNumber");
inline const QString amountTag = QStringLiteral("tem:amount");
inline const QString couponNumberTag = QStringLiteral("tem:couponNumber");

/// A request in the making: a document of its own and the body of one operation in it. The body is appended to the
/// document by the exchange, with the envelope around it; a request is used for one exchange.
class Request {
public:
    /// A body with the one child `tem:<operation>`.
    explicit Request(const QString& operation);

    /// Appends a parameter that holds the text. Parameters stand in the order of the calls.
    Request& addText(const QString& tag, const QString& text);
    /// Appends `tem:cheque`, which holds the text of a cheque as it stands, in a CDATA section.
    Request& addCheque(const QString& chequeText);

    [[nodiscard]] QDomDocument& getDocument();
    [[nodiscard]] const QDomElement& getBody() const;

private:
    QDomDocument document;
    QDomElement body;
    QDomElement operation;
};

} // namespace vantiro::wire
