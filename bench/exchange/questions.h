#pragma once

#include "bench/common/canned_server.h"
#include "bench/exchange/stub_client.h"
#include "bench/long_cheque.h"
#include "bonus/vantiro_bonus_interface.h"

#include <QNetworkAccessManager>

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// One question to the service over real sockets, asked again and again. What it needs is made beforehand.
struct Question {
    std::string name; // a peer is called `what:how`
    std::function<void()> ask; // throws when no good answer came
};

/// The questions, each as the client asks it through the till's `RestClient`, and as its peers post the bytes that the
/// client has sent: libcurl over a connection of its own each time, Qt's network client over the one that it keeps, and
/// the same without keeping it. A client made by gSOAP asks the same in its own bytes. The peers take the bytes of the
/// reply and look at nothing. [cheque-thread] [blocks]
class Questions {
public:
    Questions();

    [[nodiscard]] const std::vector<Question>& all() const;

private:
    struct Service {
        explicit Service(int lineCount);

        /// What goes over the wire when that is asked once.
        [[nodiscard]] WireRequest sentBy(const std::function<void()>& ask);

        CannedServer server;
        StubClient stub;
        VantiroBonusInterface client;
        LongCheque cheque;
    };

    void add(const std::string& name, Service& service, const std::function<void()>& ask);
    void postThroughQt(const QUrl& url, const WireRequest& request, bool keepsConnection);

    std::vector<std::unique_ptr<Service>> services;
    QNetworkAccessManager manager;
    std::vector<Question> questions;
};
