#include "till/printing/slip_folder.h"

#include "host/facilities/log_manager.h"
#include "host/facilities/logger.h"
#include "till/printing/escpos_form.h"
#include "till/printing/picture_form.h"
#include "till/printing/slip_reader.h"
#include "till/printing/terminal_form.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <exception>
#include <functional>

namespace till {

namespace {

    constexpr int columns = 42; // paper of 80 mm

    [[nodiscard]] QString& currentFolder()
    {
        static QString folder;
        return folder;
    }

    void logFailure(const QString& file, const QString& reason)
    {
        Log4Qt::LogManager::logger(QStringLiteral("till"), QStringLiteral("slips"))
            ->error(QStringLiteral("%1 was not written: %2").arg(file, reason));
    }

    /// The number behind the highest one that a file of the folder has.
    [[nodiscard]] qint64 nextNumber(const QDir& folder)
    {
        constexpr qint64 most = 999'999'999; // a longer number is another program's name
        qint64 highest = 0;
        for (const QString& name :
             folder.entryList({ QStringLiteral("slip-*") }, QDir::AllEntries | QDir::Hidden | QDir::System)) {
            const qint64 number = name.sliced(5).section(u'.', 0, 0).toLongLong();
            highest = number > most ? highest : std::max(highest, number);
        }
        return highest + 1;
    }

    void writeNew(const QString& name, const QByteArray& bytes)
    {
        QFile file(name);
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            logFailure(name, file.errorString());
            return;
        }
        if (file.write(bytes) != bytes.size() || !file.flush()) {
            logFailure(name, file.errorString());
            file.remove(); // half a slip is none
        }
    }

    void keep(const QString& name, const std::function<QByteArray()>& render)
    {
        try {
            writeNew(name, render());
        } catch (const std::exception& failure) {
            logFailure(name, QString::fromUtf8(failure.what()));
        }
    }

    void keepIn(const QDir& folder, const QString& printForm)
    {
        if (!folder.mkpath(QStringLiteral("."))) {
            logFailure(folder.path(), QStringLiteral("the folder cannot be made"));
            return;
        }
        const QString name
            = folder.filePath(QStringLiteral("slip-%1").arg(nextNumber(folder), 3, 10, QLatin1Char('0')));
        const Slip slip = readSlip(printForm);
        keep(name + QStringLiteral(".txt"),
             [&] { return renderForTerminal(slip, columns).output.join(u'\n').toUtf8() + '\n'; });
        keep(name + QStringLiteral(".png"), [&] { return renderAsPicture(slip, columns).output; });
        keep(name + QStringLiteral(".escpos"), [&] { return renderForPrinter(slip, columns).output; });
        if (slip.kind == SlipKind::printForm) {
            keep(name + QStringLiteral(".xml"), [&] { return printForm.toUtf8(); });
        }
    }

} // namespace

void setSlipFolder(const QString& folder)
{
    currentFolder() = folder;
}

void keepSlip(const QString& printForm) noexcept
try {
    if (!currentFolder().isEmpty()) {
        keepIn(QDir(currentFolder()), printForm);
    }
} catch (const std::exception& failure) {
    logFailure(currentFolder(), QString::fromUtf8(failure.what())); // memory is short; the slip itself is printed
}

} // namespace till
