#include "till/facilities/http_request.h"

#include <QStringList>

#include <algorithm>
#include <new>

using namespace Qt::StringLiterals;

namespace till {

namespace {

bool isTokenCharacter(QChar character)
{
    const char16_t code = character.unicode();
    return (code >= u'a' && code <= u'z') || (code >= u'A' && code <= u'Z') || (code >= u'0' && code <= u'9')
        || QStringView(u"!#$%&'*+-.^_`|~").contains(character);
}

bool isUsableName(const QString& name)
{
    // These frame the request, which the client does itself; and libcurl would send a request with "Expect" again
    // after a refusal.
    static const QStringList reserved { u"content-length"_s, u"expect"_s, u"transfer-encoding"_s };
    return !name.isEmpty() && std::ranges::all_of(name, isTokenCharacter)
        && !reserved.contains(name, Qt::CaseInsensitive);
}

bool isUsableValue(const QString& value)
{
    return std::ranges::none_of(
        value, [](QChar character) { return character == u'\r' || character == u'\n' || character == QChar::Null; });
}

void append(HeaderLines& lines, const QByteArray& line)
{
    curl_slist* const longer = curl_slist_append(lines.get(), line.constData());
    if (longer == nullptr) {
        throw std::bad_alloc();
    }
    // The list's first element stays what it was, apart from the very first line.
    if (lines == nullptr) {
        lines.reset(longer);
    }
}

}

void FreeHeaderLines::operator()(curl_slist* lines) const
{
    curl_slist_free_all(lines);
}

HttpFailure unusablePart(const QUrl& url, const QHash<QString, QString>& headers)
{
    if (url.isEmpty()) {
        return HttpFailure::noAddress;
    }
    const bool isAbsolute = url.isValid() && !url.host().isEmpty();
    if (!isAbsolute || (url.scheme() != u"http"_s && url.scheme() != u"https"_s)) {
        return HttpFailure::unusableAddress;
    }
    for (auto header = headers.cbegin(); header != headers.cend(); ++header) {
        if (!isUsableName(header.key()) || !isUsableValue(header.value())) {
            return HttpFailure::unusableHeader;
        }
    }
    return HttpFailure::none;
}

QByteArray requestAddress(const QUrl& url)
{
    return url.toEncoded(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
}

QString shownAddress(const QUrl& url)
{
    if (!url.isValid() || url.host().isEmpty()) {
        return {};
    }
    return url.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
}

HeaderLines headerLines(const QHash<QString, QString>& headers)
{
    QStringList names = headers.keys();
    names.sort();

    HeaderLines lines;
    for (const QString& name : names) {
        const QString value = headers.value(name);
        // libcurl drops a header without a value unless its name ends in a semicolon.
        const QString line = value.trimmed().isEmpty() ? name + u';' : name + u": "_s + value;
        append(lines, line.toUtf8());
    }
    for (const QString& own : QStringList { u"Accept"_s, u"Content-Type"_s }) {
        if (!names.contains(own, Qt::CaseInsensitive)) {
            append(lines, (own + u':').toUtf8());
        }
    }
    append(lines, "Expect:");
    return lines;
}

}
