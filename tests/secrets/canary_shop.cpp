#include "tests/secrets/canary_shop.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace {

constexpr int patience = 60'000; // milliseconds
constexpr auto ownersAlone = QFile::ReadOwner | QFile::WriteOwner;

[[nodiscard]] QByteArray contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

}

CanaryShop::CanaryShop()
{
    for (const QString& name : { u"config"_s, u"service"_s, u"said"_s }) {
        EXPECT_TRUE(QDir(folder.path()).mkdir(name));
        EXPECT_TRUE(QFile::setPermissions(path(name), ownersAlone | QFile::ExeOwner));
    }
    QByteArray rules = contentOf(QStringLiteral(VANTIRO_EXAMPLES "/rules.yaml"));
    rules.replace("user: till", "user: '" + user + '\'').replace("password: secret", "password: '" + password + '\'');
    EXPECT_TRUE(rules.contains(user) && rules.contains(password));
    EXPECT_EQ(write(u"service/rules.yaml"_s, rules), path(u"service/rules.yaml"_s));
}

CanaryShop::~CanaryShop()
{
    for (const End& end : ends) {
        end.process->terminate();
        EXPECT_TRUE(end.process->waitForFinished(patience));
    }
}

QString CanaryShop::path(const QString& name) const
{
    return folder.filePath(name);
}

QString CanaryShop::write(const QString& name, const QByteArray& content) const
{
    QFile file(path(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(file.setPermissions(ownersAlone));
    EXPECT_EQ(file.write(content), content.size());
    return file.fileName();
}

void CanaryShop::startEnd(const QString& name)
{
    auto process = std::make_unique<QProcess>();
    process->setStandardErrorFile(path(u"service/"_s + name + u".log"_s));
    process->start(QStringLiteral(VANTIRO_SANDBOX_PROGRAM),
                   { u"--rules"_s, path(u"service/rules.yaml"_s), u"--state"_s, path(u"service/state.sqlite"_s),
                     u"--name"_s, name });
    while (!process->canReadLine() && process->waitForReadyRead(patience)) { }
    // "vantiro-sandbox NAME: service URL control URL"
    const QStringList words = QString::fromUtf8(process->readLine()).trimmed().split(u' ');
    ASSERT_EQ(words.size(), 6) << words.join(u' ').toStdString();
    ends.push_back({ name, words[3], words[5], std::move(process) });
}

void CanaryShop::startService()
{
    startEnd(u"first"_s);
    startEnd(u"second"_s);
}

QStringList CanaryShop::sandboxes() const
{
    QStringList arguments;
    for (const End& end : ends) {
        arguments += { u"--sandbox"_s, end.name + u'=' + end.service + u',' + end.control };
    }
    return arguments;
}

QStringList CanaryShop::hosts() const
{
    QStringList addresses;
    for (const End& end : ends) {
        addresses.append(end.service);
    }
    return addresses;
}

void CanaryShop::configure(const QStringList& addresses)
{
    const QByteArray text = "[Vantiro]\nhosts=" + addresses.join(u',').toUtf8() + "\ntimeout=2\nuser=" + user
        + "\npassword=" + password + "\ncheckCouponPrefix=vantiro-\npositionCouponPrefix=line-\n\n[Till]\nslips="
        + path(u"slips"_s).toUtf8() + "\ndeliveryTimeout=2\n";
    EXPECT_EQ(write(u"config/till.ini"_s, text), path(u"config/till.ini"_s));
}

int CanaryShop::till(const QStringList& arguments, const QByteArray& input)
{
    ++runs;
    QProcess process;
    process.setWorkingDirectory(folder.path());
    process.setStandardOutputFile(path(u"said/%1.out"_s.arg(runs)));
    process.setStandardErrorFile(path(u"said/%1.err"_s.arg(runs)));
    QStringList all
        = arguments + QStringList { u"--data"_s, path(u"till"_s), u"--config"_s, path(u"config/till.ini"_s) };
    if (arguments.constFirst() != u"doctor" && arguments.constFirst() != u"slip") {
        all += { u"--log-level"_s, u"trace"_s };
    }
    process.start(QStringLiteral(VANTIRO_TILL_PROGRAM), all);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(patience)) {
        ADD_FAILURE() << "the till does not end: " << arguments.join(u' ').toStdString();
        process.kill();
        process.waitForFinished();
    }
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}

int CanaryShop::play(const QByteArray& script)
{
    return till(QStringList { u"play"_s, u"-"_s, u"--wire"_s } + sandboxes(), script);
}

std::string CanaryShop::said() const
{
    return (contentOf(path(u"said/%1.out"_s.arg(runs))) + contentOf(path(u"said/%1.err"_s.arg(runs)))).toStdString();
}

std::string CanaryShop::leaks() const
{
    QStringList found = search.foundBelow(folder.path());
    found.removeIf([](const QString& line) {
        return line.startsWith(u"config/till.ini: ") || line.startsWith(u"service/rules.yaml: ");
    });
    return found.join(u'\n').toStdString();
}

std::string CanaryShop::open() const
{
    return openToOthers(search, folder.path()).join(u'\n').toStdString();
}
