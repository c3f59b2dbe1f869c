#include "tests/reports/slip_client.h"

#include "tests/support/sorted_attributes.h"

#include <gtest/gtest.h>

std::string SlipClient::printForm(const QString& slip) const
{
    return readable(sortedAttributes(transformReport(documentOf(slip)).toString(1)));
}

QList<std::string> SlipClient::printForms(const QString& slips) const
{
    QList<std::string> texts;
    for (const QDomDocument& form : transformReports(documentOf(slips))) {
        texts.append(readable(sortedAttributes(form.toString(1))));
    }
    return texts;
}

void SlipClient::fill(const QString& text)
{
    fillReport(documentOf(QStringLiteral("<AccrualResponse><AccrualResult>") + text.toHtmlEscaped()
                          + QStringLiteral("</AccrualResult></AccrualResponse>")));
}

std::string SlipClient::waiting() const
{
    return readable(lastReport.toString(1));
}

QDomDocument documentOf(const QString& xml)
{
    QDomDocument document;
    EXPECT_TRUE(document.setContent(xml)) << readable(xml);
    return document;
}

std::string report(const std::string& commands)
{
    const std::string attributes = R"( cached="false" name="custom" title="vantiro check" type="document")";
    return commands.empty() ? "<report" + attributes + "/>\n"
                            : "<report" + attributes + ">\n" + commands + "</report>\n";
}

std::string textLine(const std::string& align, const std::string& size, const std::string& text)
{
    return " <printer op=\"setfont\" size=\"" + size + "\"/>\n <text align=\"" + align + "\" maxwidth=\"all\">" + text
        + "</text>\n <printer op=\"resetfont\"/>\n";
}
