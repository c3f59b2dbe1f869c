#pragma once

#include "till/document/cheque.h"

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>

// Records that can be told whole from torn, for the child that writes them and for the test that finds them. Their
// sizes differ, from a part of a page of the database to several.

[[nodiscard]] inline QString numberedText(int number)
{
    return QString(number * 977 % 9000, QChar(u'а' + number % 32));
}

[[nodiscard]] inline QJsonObject numberedMessage(int number)
{
    return { { QStringLiteral("number"), number }, { QStringLiteral("body"), numberedText(number) } };
}

/// The version of one document that has the number everywhere: head, lines, plug-in data, plug-in JSON.
[[nodiscard]] inline QSharedPointer<till::Cheque> numberedVersion(int number)
{
    till::ChequeHead head;
    head.number = number;
    auto document = QSharedPointer<till::Cheque>::create(head, QStringLiteral("kept"));
    for (int line = 0; line < 1 + number % 40; ++line) {
        till::LineFields fields;
        fields.code = QString::number(number);
        fields.price = number;
        document->addLine(fields);
    }
    document->setValue(QStringLiteral("Vantiro"), QStringLiteral("number"), number);
    document->setPluginDataJson(numberedText(number));
    return document;
}
