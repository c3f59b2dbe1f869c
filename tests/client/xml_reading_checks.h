#pragma once

#include "client/outside_xml.h"

#include <gtest/gtest.h>

#include <string>

/// What came of reading a text from outside.
namespace xml_reading_checks {

using vantiro::XmlReading;

inline void expectRead(const XmlReading& reading)
{
    EXPECT_TRUE(reading.ok) << reading.errorText.toStdString();
    EXPECT_FALSE(reading.document.isNull());
    EXPECT_EQ(reading.errorText, QString());
    EXPECT_EQ(reading.line, 0);
    EXPECT_EQ(reading.column, 0);
}

inline void expectRefused(const XmlReading& reading, const QString& errorText, qint64 line, qint64 column)
{
    EXPECT_FALSE(reading.ok);
    EXPECT_TRUE(reading.document.isNull());
    EXPECT_EQ(reading.errorText.toStdString(), errorText.toStdString());
    EXPECT_EQ(reading.line, line);
    EXPECT_EQ(reading.column, column);
}

inline void expectRefused(const XmlReading& reading, const char* errorText, qint64 line = 1, qint64 column = 1)
{
    expectRefused(reading, QString::fromLatin1(errorText), line, column);
}

/// Text of the root element.
[[nodiscard]] inline std::string contentOf(const XmlReading& reading)
{
    EXPECT_TRUE(reading.ok) << reading.errorText.toStdString();
    return reading.document.documentElement().text().toStdString();
}

} // namespace xml_reading_checks
