#pragma once

#include "till/delivery/delivery.h"
#include "till/desk/checkout.h"
#include "till/script/service_control.h"
#include "till/store/document_states.h"

#include <QList>
#include <QString>

#include <functional>

namespace crash {

/// What the cashier of a story works with.
struct Desk {
    till::Checkout& checkout;
    till::Delivery& delivery;
    const till::ServiceControl& service;
    int base = 0; // the documents of this run have the numbers behind it

    [[nodiscard]] int numberOf(int document) const
    {
        return base + document;
    }
};

/// A step brings something about, and does nothing where that stands already: the step in which the till was killed is
/// done again, as a cashier does who looks at what the till shows. Throws what the till throws, and
/// `std::runtime_error` when the till does not do what it has to.
using Step = std::function<void(const Desk&)>;

/// How a document of the story ends, wherever the till was killed. Documents are counted from 1.
struct Ending {
    int document = 0;
    till::store::DocumentState state = till::store::DocumentState::closed;
    int lines = 0; // those taken off among them
    bool hasCard = false;
};

struct Story {
    QString name;
    QList<Step> steps;
    QList<Ending> endings;
    bool losesSpendings = false; // replies about points are lost on purpose
    bool isFirstStart = false; // on a till without a store
};

/// The ten stories, and the till's very first start.
[[nodiscard]] const QList<Story>& stories();

/// The most documents of one story, and hence the distance between the bases of two runs.
inline constexpr int documentsOfRun = 10;

} // namespace crash
