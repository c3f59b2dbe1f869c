#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// Looks for secrets in whatever form a program may have written them: as they are, in base64 wherever the secret
/// begins in what was encoded, percent-encoded, in hexadecimal, escaped for XML and JSON, and all of these in UTF-16. A
/// value.
class SecretSearch {
public:
    /// Each with a name of its own; a secret has eight bytes at least, or it would be found by chance.
    struct Secret {
        QString name;
        QByteArray bytes;
    };

    explicit SecretSearch(const QList<Secret>& secrets);

    /// What of them the bytes hold: "password in base64", each once, in alphabetical order.
    [[nodiscard]] QStringList foundIn(const QByteArray& bytes) const;

    /// The same for every file below the folder, hidden ones too, and for their names: "till/till.log: user as it is".
    [[nodiscard]] QStringList foundBelow(const QString& folder) const;

private:
    struct Form {
        QString name;
        QByteArray bytes;
    };

    QList<Form> forms;
};

/// The files below the folder that hold a secret and that others may read, and the folders on the way to them that
/// others may look into: "till 755".
[[nodiscard]] QStringList openToOthers(const SecretSearch& search, const QString& folder);
