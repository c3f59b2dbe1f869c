#include "tests/secrets/secret_search.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStringEncoder>

#include <gtest/gtest.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

struct Text {
    QString name;
    QByteArray bytes;
};

/// The part of the base64 text that is the same whatever stands before and behind the secret, when it begins at that
/// place of a group of three bytes.
[[nodiscard]] QByteArray base64At(int place, const QByteArray& secret, QByteArray::Base64Options options)
{
    const QByteArray encoded = (QByteArray(place, 'x') + secret).toBase64(options | QByteArray::OmitTrailingEquals);
    const qsizetype first = (place * 8 + 5) / 6;
    const qsizetype end = (place + secret.size()) * 8 / 6;
    return encoded.mid(first, end - first);
}

[[nodiscard]] QByteArray percentEncoded(const QByteArray& secret, bool all)
{
    return all ? "%" + secret.toHex('%').toUpper() : secret.toPercentEncoding();
}

[[nodiscard]] QList<Text> texts(const QByteArray& secret)
{
    QList<Text> list { { u"as it is"_s, secret },
                       { u"in hexadecimal"_s, secret.toHex() },
                       { u"in hexadecimal"_s, secret.toHex().toUpper() },
                       { u"in hexadecimal"_s, secret.toHex(' ') },
                       { u"escaped for XML"_s, QString::fromUtf8(secret).toHtmlEscaped().toUtf8() },
                       { u"escaped for JSON"_s, QByteArray(secret).replace('/', "\\/") } };
    for (const bool all : { false, true }) {
        list.append({ u"percent-encoded"_s, percentEncoded(secret, all) });
        list.append({ u"percent-encoded"_s, percentEncoded(secret, all).toLower() });
    }
    for (int place = 0; place < 3; ++place) {
        const QByteArray encoded = base64At(place, secret, QByteArray::Base64Encoding);
        list.append({ u"in base64"_s, encoded });
        list.append({ u"in base64"_s, base64At(place, secret, QByteArray::Base64UrlEncoding) });
        list.append({ u"in base64, percent-encoded"_s, encoded.toPercentEncoding() });
        list.append({ u"in base64, escaped for JSON"_s, QByteArray(encoded).replace('/', "\\/") });
    }
    return list;
}

[[nodiscard]] QByteArray utf16(const QByteArray& text, QStringConverter::Encoding encoding)
{
    QStringEncoder encoder(encoding);
    return encoder.encode(QString::fromUtf8(text));
}

[[nodiscard]] QByteArray contentOf(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

[[nodiscard]] QStringList filesBelow(const QString& folder)
{
    QStringList files;
    QDirIterator walk(folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        files.append(walk.next());
    }
    files.sort();
    return files;
}

[[nodiscard]] QString modeOf(const QString& path)
{
    struct stat status { };
    EXPECT_EQ(::stat(QFile::encodeName(path).constData(), &status), 0) << path.toStdString();
    constexpr unsigned permissions = 0777;
    return QString::number(status.st_mode & permissions, 8);
}

}

SecretSearch::SecretSearch(const QList<Secret>& secrets)
{
    for (const Secret& secret : secrets) {
        EXPECT_GE(secret.bytes.size(), 8) << secret.name.toStdString();
        QSet<QByteArray> known;
        for (const Text& text : texts(secret.bytes)) {
            if (known.contains(text.bytes)) {
                continue; // another way of writing that changes nothing here
            }
            known.insert(text.bytes);
            const QString name = secret.name + u' ' + text.name;
            forms.append({ name, text.bytes });
            forms.append({ name + u" in UTF-16"_s, utf16(text.bytes, QStringConverter::Utf16LE) });
            forms.append({ name + u" in UTF-16"_s, utf16(text.bytes, QStringConverter::Utf16BE) });
        }
    }
}

QStringList SecretSearch::foundIn(const QByteArray& bytes) const
{
    QStringList found;
    for (const Form& form : forms) {
        if (bytes.contains(form.bytes)) {
            found.append(form.name);
        }
    }
    found.removeDuplicates();
    found.sort();
    return found;
}

QStringList SecretSearch::foundBelow(const QString& folder) const
{
    QStringList found;
    for (const QString& file : filesBelow(folder)) {
        const QString name = QDir(folder).relativeFilePath(file);
        for (const QString& form : foundIn(name.toUtf8()) + foundIn(contentOf(file))) {
            found.append(name + u": "_s + form);
        }
    }
    return found;
}

QStringList openToOthers(const SecretSearch& search, const QString& folder)
{
    QStringList open;
    for (const QString& file : filesBelow(folder)) {
        if (search.foundIn(contentOf(file)).isEmpty()) {
            continue;
        }
        const QString name = QDir(folder).relativeFilePath(file);
        if (modeOf(file) != u"600") {
            open.append(name + u' ' + modeOf(file));
        }
        const QString place = QFileInfo(file).absolutePath();
        if (modeOf(place) != u"700") {
            open.append(QDir(folder).relativeFilePath(place) + u' ' + modeOf(place));
        }
    }
    open.removeDuplicates();
    return open;
}
