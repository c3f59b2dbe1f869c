#include "till/facilities/http_failure.h"

#include <cerrno>

using namespace Qt::StringLiterals;

namespace till {

HttpFailure failureOf(CURLcode code, long systemError)
{
    switch (code) {
    case CURLE_OK:
        return HttpFailure::none;
    case CURLE_URL_MALFORMAT:
        return HttpFailure::unusableAddress;
    case CURLE_COULDNT_RESOLVE_HOST:
        return HttpFailure::hostNotFound;
    case CURLE_COULDNT_CONNECT:
        return systemError == ECONNREFUSED ? HttpFailure::refused : HttpFailure::unreachable;
    case CURLE_OPERATION_TIMEDOUT:
        return HttpFailure::timedOut;
    case CURLE_PEER_FAILED_VERIFICATION:
    case CURLE_SSL_CACERT_BADFILE:
    case CURLE_SSL_ISSUER_ERROR:
    case CURLE_SSL_INVALIDCERTSTATUS:
        return HttpFailure::untrusted;
    case CURLE_SSL_CONNECT_ERROR:
    case CURLE_SSL_CIPHER:
    case CURLE_SSL_CERTPROBLEM:
    case CURLE_SSL_CLIENTCERT:
        return HttpFailure::tls;
    case CURLE_GOT_NOTHING:
    case CURLE_PARTIAL_FILE:
    case CURLE_RECV_ERROR:
    case CURLE_SEND_ERROR:
        return HttpFailure::brokenOff;
    case CURLE_UNSUPPORTED_PROTOCOL: // the scheme was looked at before, so this is the version in the reply
    case CURLE_WEIRD_SERVER_REPLY:
    case CURLE_BAD_CONTENT_ENCODING:
    case CURLE_FILESIZE_EXCEEDED:
    case CURLE_WRITE_ERROR:
        return HttpFailure::notHttp;
    default:
        return HttpFailure::other;
    }
}

tr::Tr reasonOf(HttpFailure failure, std::chrono::seconds timeout)
{
    switch (failure) {
    case HttpFailure::none:
        return {};
    case HttpFailure::noAddress:
        return { u"restClientNoAddress"_s, u"адрес сервера не задан"_s };
    case HttpFailure::unusableAddress:
        return { u"restClientUnusableAddress"_s, u"адрес сервера непригоден, нужен полный адрес http или https"_s };
    case HttpFailure::unusableHeader:
        return { u"restClientUnusableHeader"_s, u"непригодный заголовок запроса"_s };
    case HttpFailure::hostNotFound:
        return { u"restClientHostNotFound"_s, u"имя сервера не найдено"_s };
    case HttpFailure::refused:
        return { u"restClientRefused"_s, u"сервер отказал в соединении"_s };
    case HttpFailure::unreachable:
        return { u"restClientUnreachable"_s, u"соединение с сервером не установлено"_s };
    case HttpFailure::timedOut:
        return tr::Tr(u"restClientTimedOut"_s, u"ответ не пришёл целиком за %1 с"_s)
            .arg(tr::Tr(QString::number(timeout.count())));
    case HttpFailure::untrusted:
        return { u"restClientUntrusted"_s, u"сертификат сервера не вызывает доверия"_s };
    case HttpFailure::tls:
        return { u"restClientTls"_s, u"защищённое соединение не установлено"_s };
    case HttpFailure::brokenOff:
        return { u"restClientBrokenOff"_s, u"соединение оборвалось до конца ответа"_s };
    case HttpFailure::notHttp:
        return { u"restClientNotHttp"_s, u"ответ сервера нарушает правила HTTP"_s };
    case HttpFailure::other:
        break;
    }
    return { u"restClientFailed"_s, u"запрос не выполнен"_s };
}

tr::Tr reasonOfStatus(int status)
{
    return tr::Tr(u"restClientStatus"_s, u"сервер ответил кодом HTTP %1"_s).arg(tr::Tr(QString::number(status)));
}

tr::Tr reasonOfSize(int status)
{
    return tr::Tr(u"restClientTooLarge"_s, u"ответ сервера с кодом HTTP %1 слишком велик и не принят"_s)
        .arg(tr::Tr(QString::number(status)));
}

tr::Tr failureText(const QString& address, const tr::Tr& reason, const QString& detail)
{
    if (address.isEmpty()) {
        return reason;
    }
    if (detail.isEmpty()) {
        return tr::Tr(u"restClientFailure"_s, u"%1: %2"_s).arg(tr::Tr(address)).arg(reason);
    }
    return tr::Tr(u"restClientFailureDetail"_s, u"%1: %2 (%3)"_s).arg(tr::Tr(address)).arg(reason).arg(tr::Tr(detail));
}

}
