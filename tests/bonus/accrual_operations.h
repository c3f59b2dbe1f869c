#pragma once

#include "tests/bonus/bonus_client.h"
#include "tests/support/sample_cheque.h"

#include <QByteArray>
#include <QString>

#include <array>
#include <functional>
#include <ostream>
#include <string>

/// One of the four pairs of accruals, as the tests of both forms go through them: what is called, with a document that
/// it is made for, and what it must log and send.
struct AccrualPair {
    std::string name;
    std::function<QSharedPointer<AbstractDocument>()> document;
    std::function<void(BonusClient&, const QSharedPointer<AbstractDocument>&)> online;
    std::function<void(BonusClient&, const QSharedPointer<AbstractDocument>&)> offline;
    QByteArray cheque;
    QString onlineLog;
    QString offlineLog;
    QString buildingLog; // the line that the building of the cheque writes; empty when it writes none
    QString closingLog; // empty when there is none
    bool keepsSlip;
};

void PrintTo(const AccrualPair& pair, std::ostream* out);

/// Accrual of a sale with its card, points, coupons and a certificate; reversal of a return and of a return against a
/// sale; any cheque; cancelled cheque.
[[nodiscard]] const std::array<AccrualPair, 5>& accrualPairs();
