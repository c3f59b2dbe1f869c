#include "tests/reports/slip_client.h"

#include <QFile>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <functional>
#include <iostream>
#include <random>

// Whether a slip is well-formed is judged by `xmllint`, which shares no code with the client: whatever the client has
// not printed as plain text must be XML to it as well.

namespace {

constexpr unsigned seed = 20260131;
constexpr int cases = 4000;
constexpr int patience = 60'000; // milliseconds

// Without a colon, an encoding or an escape: there the judge has rules of its own, or the slip changes on its way.
const QString wholeSlip = QStringLiteral(R"(<?xml version="1.0"?>
<!-- чек № 5 -->
<doc>
 <center><f2>Магазин «Вантиро»</f2></center>
 <line symbols="-="/>
 <pair left="Списано" right='10.00'/>
 <left>Баланс <f1>123.45</f1> баллов &#62; 100</left>
 <br/><?print x?>
 <qrcode><![CDATA[a=1&b=2]]></qrcode>
</doc>)");

const QString stray = QStringLiteral("<>&\"'/=;!?-] x1#[\n");

/// One or two of: a character gone, one put in or in place of another, two turned, a piece gone or repeated.
QString damaged(std::mt19937& engine)
{
    const auto below
        = [&engine](qsizetype count) { return static_cast<qsizetype>(engine() % static_cast<unsigned>(count)); };
    QString slip = wholeSlip;
    for (qsizetype times = 1 + below(2); times > 0; --times) {
        const qsizetype at = below(slip.size() - 20);
        const QChar character = stray.at(below(stray.size()));
        switch (below(6)) {
        case 0:
            slip.remove(at, 1);
            break;
        case 1:
            slip.insert(at, character);
            break;
        case 2:
            slip[at] = character;
            break;
        case 3:
            std::swap(slip[at], slip[at + 1]);
            break;
        case 4:
            slip.remove(at, 1 + below(20));
            break;
        default:
            slip.insert(at, slip.mid(at, 1 + below(20)));
        }
    }
    return slip;
}

/// What the judge has to say against the texts; empty when all of them are well-formed.
std::string objections(const QStringList& texts)
{
    const QTemporaryDir folder;
    QStringList arguments { QStringLiteral("--noout"), QStringLiteral("--nonet") };
    for (const QString& text : texts) {
        const QString name = QString::number(arguments.size()) + QStringLiteral(".xml");
        QFile file(folder.filePath(name));
        const QByteArray bytes = text.toUtf8();
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            return "cannot write " + name.toStdString();
        }
        arguments.append(name);
    }
    QProcess judge;
    judge.setWorkingDirectory(folder.path());
    judge.start(QStringLiteral("xmllint"), arguments, QIODevice::ReadOnly);
    if (!judge.waitForFinished(patience)) {
        judge.kill();
        judge.waitForFinished(patience);
        return "xmllint: " + judge.errorString().toStdString();
    }
    if (judge.exitStatus() == QProcess::NormalExit && judge.exitCode() == 0) {
        return {};
    }
    return "refused: " + judge.readAllStandardError().left(2000).toStdString();
}

/// Whether the slip that waits is the one for a text that is no XML.
bool isPlain(const SlipClient& client)
{
    const QDomElement root = client.lastReport.documentElement();
    return root.childNodes().length() == 1 && root.firstChildElement().tagName() == QStringLiteral("noformat");
}

}

TEST(JudgeOfSlips, SaysNo)
{
    EXPECT_EQ(objections({ wholeSlip }), "");
    EXPECT_EQ(objections({ wholeSlip, wholeSlip.chopped(1) }).substr(0, 8), "refused:");
    EXPECT_EQ(objections({ QStringLiteral("<doc>&nbsp;</doc>"), wholeSlip }).substr(0, 8), "refused:");
}

TEST(JudgeOfSlips, AgreesWithWhatIsReadAsXml)
{
    std::cout << "seed " << seed << ", " << cases << " slips\n";
    std::mt19937 engine(seed);
    SlipClient client;
    QStringList readAsXml;
    int printedWhole = 0;
    for (int i = 0; i < cases; ++i) {
        const QString slip = damaged(engine);
        client.fill(slip);
        if (isPlain(client)) {
            ASSERT_EQ(readable(client.lastReport.documentElement().text()), readable(slip)) << "slip " << i;
            ++printedWhole;
        } else {
            readAsXml.append(client.removeEscapeFromXml(slip));
        }
    }

    EXPECT_GT(printedWhole, cases / 4);
    EXPECT_GT(readAsXml.size(), cases / 8);
    constexpr qsizetype atOnce = 500;
    for (qsizetype i = 0; i < readAsXml.size(); i += atOnce) {
        EXPECT_EQ(objections(readAsXml.mid(i, atOnce)), "");
    }
}
