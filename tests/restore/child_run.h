#pragma once

#include "tests/restore/loyalty_service.h"

#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

/// One till on one disk: its processes come one after the other and find what the former has left. Lines are what the
/// processes tell, but for the moments at which impacts were made and the order of attributes. Each run fails the test
/// when the process does not end as it should, with the end of the till's log. [cheque-thread]
class TillOnDisk {
public:
    /// `settings` are further lines of the section `[Vantiro]`.
    TillOnDisk(const LoyaltyService& service, const QString& settings);

    /// A process that plays the road from behind step `resumed` to its end. With 0 it starts the cheque.
    [[nodiscard]] QStringList toTheEnd(const QString& road, int resumed);
    /// A process that plays the road from its start and is killed when the step has ended.
    [[nodiscard]] QStringList killedAfter(const QString& road, int step);
    /// A process that plays the road from its start and is killed while that request of the service is unanswered.
    [[nodiscard]] QStringList killedInRequest(const QString& road, LoyaltyService& service, qsizetype request);
    /// As `toTheEnd`, but the till forgets to let the plug-in restore its state.
    [[nodiscard]] QStringList toTheEndWithoutRestoring(const QString& road, int resumed);

private:
    void start(const QStringList& arguments);
    [[nodiscard]] QStringList endedWell();
    [[nodiscard]] QStringList killed();
    [[nodiscard]] std::string log() const;

    QTemporaryDir folder;
    QProcess process;
};

/// How many steps the lines tell of.
[[nodiscard]] int stepsIn(const QStringList& lines);
