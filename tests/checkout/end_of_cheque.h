#pragma once

#include "tests/checkout/checkout_till.h"

#include <QString>
#include <QStringList>

#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

/// The till dies where this is thrown: nothing catches it.
struct Crash : std::runtime_error {
    Crash();
};

/// A cheque up to its last step, and that step.
struct EndStory {
    const char* rule;
    void (*prepare)(class EndOfCheque& till, int number);
    bool cancels = false;
    bool offline = false; // the service goes down before the last step
};

void PrintTo(const EndStory& story, std::ostream* stream);

/// Ends cheques in every way, over and over in one store; each cheque has a number of its own. [cheque-thread]
class EndOfCheque : public CheckoutTill, public testing::WithParamInterface<EndStory> {
public:
    using CheckoutTill::openSale;
    using CheckoutTill::openSaleWithCard;
    using CheckoutTill::scan;
    using CheckoutTill::service;
    using CheckoutTill::till;

protected:
    /// Brings the cheque of the number up to its last step.
    void prepare(int number);
    /// The last step; false when the document is not at its end.
    [[nodiscard]] bool finish();
    /// Goes on after a restart as the cashier would: the document that comes back is brought to its end.
    void restoreAndFinish();

    /// The state of the document of the number, and whether the till has one open: "closed", "closing, open".
    [[nodiscard]] std::string state(int number) const;
    /// What the service was told or will be told of that cheque, by post and by the queue, each as its text with the
    /// identity and the number replaced; posts that nobody answered are left out. `identities` gets the different
    /// identities that stood there.
    [[nodiscard]] QStringList toldOf(int number, QStringList* identities);

    int posts = 0; // since the last step began
    int crashAt = -1; // dies within this post of it

private:
    qsizetype firstQueued = 0;
    QStringList answered;
};

extern const std::vector<EndStory> endStories;
