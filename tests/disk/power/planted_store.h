#pragma once

#include "tests/disk/power/story.h"

#include <QSqlDatabase>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

/// A way to keep a store that is wrong. A plain value.
struct Defect {
    QString name;
    QStringList pragmas; // instead of the till's own
    bool folderSynchronised = true;
    bool answersEarly = false; // before the transaction is committed
};

/// The first is none: the till's settings, done by the store below. It must pass where the others must fail.
[[nodiscard]] const std::vector<Defect>& defects();

/// The till's tables, kept by code of this test with a defect in it. It proves that the search for losses of power
/// finds some. Throws `std::runtime_error` when the database fails. [cheque-thread]
class PlantedStore {
public:
    PlantedStore(const QString& root, const QString& folder, const Defect& defect);
    ~PlantedStore();

    /// Carries the command out; `done` is called when its caller would be told that it is done.
    void perform(const Command& command, const std::function<void()>& done);

private:
    Q_DISABLE_COPY_MOVE(PlantedStore)

    void makeFolders() const;
    void open();
    void close();
    void run(const QString& statement, const QVariantList& values = {}) const;
    void store(const Command& command) const;

    QString root;
    QString folder;
    Defect defect;
    QSqlDatabase database;
};
