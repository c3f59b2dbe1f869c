#include "till/printing/escpos_form.h"
#include "till/printing/picture_form.h"
#include "till/printing/slip_reader.h"
#include "till/printing/terminal_form.h"
#include "till/program/commands.h"
#include "till/program/surroundings.h"

#include <QByteArrayView>
#include <QFile>
#include <QStringDecoder>

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace till {

namespace {

    constexpr qint64 largestFile = 16 * 1024 * 1024;

    [[nodiscard]] QString shownName(const SlipOptions& options)
    {
        return options.file == u"-" ? QStringLiteral("standard input") : options.file;
    }

    [[nodiscard]] QString readFile(const SlipOptions& options)
    {
        const QString name = shownName(options);
        QFile file(options.file);
        const bool opened
            = options.file == u"-" ? file.open(stdin, QIODevice::ReadOnly) : file.open(QIODevice::ReadOnly);
        if (!opened) {
            throw CommandError(QStringLiteral("%1 cannot be read: %2").arg(name, file.errorString()));
        }
        const QByteArray bytes = file.read(largestFile + 1);
        if (file.error() != QFileDevice::NoError) {
            throw CommandError(QStringLiteral("%1 cannot be read: %2").arg(name, file.errorString()));
        }
        if (bytes.size() > largestFile) {
            throw CommandError(QStringLiteral("%1 is larger than 16 MiB, which no slip is").arg(name));
        }
        QStringDecoder decoder(QStringDecoder::Utf8);
        QString text = decoder(bytes);
        if (decoder.hasError() || text.contains(QChar::Null)) {
            throw CommandError(QStringLiteral("%1 is no text in UTF-8; name a print form or a plain text").arg(name));
        }
        return text;
    }

    [[nodiscard]] Slip readSlipFile(const SlipOptions& options)
    {
        Slip slip = readSlip(readFile(options));
        if (slip.kind == SlipKind::serviceForm) {
            throw CommandError(
                QStringLiteral("%1 is the service's own form (root doc or docs), which the plug-in alone turns "
                               "into a print form: play a sale with the key slips=FOLDER in the section [Till] of "
                               "the configuration, and take slip-NNN.xml from that folder")
                    .arg(shownName(options)));
        }
        return slip;
    }

    void checkOptions(const SlipOptions& options)
    {
        if (options.columns != 32 && options.columns != 42 && options.columns != 48) {
            throw CommandError(
                QStringLiteral("there is no paper of %1 columns; use 32, 42 or 48").arg(options.columns));
        }
        const bool isText = options.format == u"text";
        if (!isText && options.format != u"png" && options.format != u"escpos") {
            throw CommandError(
                QStringLiteral("there is no format \"%1\"; use text, png or escpos").arg(options.format));
        }
        if (!isText && options.output.isEmpty() && ::isatty(STDOUT_FILENO) != 0) {
            throw CommandError(
                QStringLiteral("%1 is nothing for a terminal; name a new file with --output FILE").arg(options.format));
        }
    }

    [[nodiscard]] Rendered<QByteArray> render(const Slip& slip, const SlipOptions& options)
    {
        if (options.format == u"escpos") {
            return renderForPrinter(slip, options.columns);
        }
        if (options.format == u"text") {
            Rendered<QStringList> lines = renderForTerminal(slip, options.columns);
            return { lines.output.join(u'\n').toUtf8() + '\n', std::move(lines.findings) };
        }
        try {
            return renderAsPicture(slip, options.columns);
        } catch (const PictureError& error) {
            throw CommandError(QString::fromUtf8(error.what()));
        }
    }

    void write(const QByteArray& bytes, const SlipOptions& options)
    {
        QFile file(options.output);
        if (options.output.isEmpty()) {
            if (!file.open(stdout, QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
                throw CommandError(
                    QStringLiteral("the slip cannot be written to standard output: %1").arg(file.errorString()));
            }
            return;
        }
        // What is there already is not ours to overwrite.
        if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) {
            throw CommandError(
                file.exists()
                    ? QStringLiteral("%1 is there already; name a new file with --output FILE").arg(options.output)
                    : QStringLiteral("%1 cannot be written: %2").arg(options.output, file.errorString()));
        }
        if (file.write(bytes) != bytes.size() || !file.flush()) {
            const QString reason = file.errorString();
            file.remove();
            throw CommandError(QStringLiteral("%1 cannot be written: %2").arg(options.output, reason));
        }
    }

    void tell(const QList<SlipFinding>& findings, const QString& name)
    {
        constexpr qsizetype most = 100;
        const auto say = [&](const QString& place, const QString& text) {
            std::fprintf(stderr, "%s: %s\n", qUtf8Printable(place), qUtf8Printable(text));
        };
        for (const SlipFinding& finding : findings.first(std::min(most, findings.size()))) {
            say(finding.line > 0 ? QStringLiteral("%1:%2").arg(name, QString::number(finding.line)) : name,
                finding.text);
        }
        if (findings.size() > most) {
            say(name, QStringLiteral("and %1 findings more").arg(findings.size() - most));
        }
    }

} // namespace

int slip(const SlipOptions& options)
{
    checkOptions(options);
    const Rendered<QByteArray> rendered = render(readSlipFile(options), options);
    write(rendered.output, options);
    tell(rendered.findings, shownName(options));
    return rendered.findings.isEmpty() ? 0 : 1;
}

} // namespace till
