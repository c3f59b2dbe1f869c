#include "client/xml_guard.h"

#include "client/outside_xml.h"

namespace vantiro {

namespace {

    [[nodiscard]] bool isForbidden(char16_t c)
    {
        return (c < 0x20 && c != u'\t' && c != u'\n' && c != u'\r') || c >= 0xFFFE;
    }

    class Scanner {
    public:
        explicit Scanner(QStringView textToScan)
            : text(textToScan)
        {
        }

        [[nodiscard]] std::optional<XmlRefusal> scan()
        {
            while (index < text.size() && !refusal) {
                const char16_t c = text.at(index).unicode();
                if (c == u'<') {
                    scanMarkup();
                } else if (isForbidden(c)) {
                    refuse(QStringLiteral("character is not allowed"));
                } else {
                    ++index;
                }
            }
            return refusal;
        }

    private:
        void refuse(const QString& reason)
        {
            refusal = XmlRefusal { reason, index };
        }

        [[nodiscard]] bool startsWith(QStringView what) const
        {
            return text.sliced(index).startsWith(what);
        }

        void scanMarkup()
        {
            if (startsWith(u"<!--")) {
                skip(4, u"-->");
            } else if (startsWith(u"<![CDATA[")) {
                skip(9, u"]]>");
            } else if (startsWith(u"<?")) {
                skip(2, u"?>");
            } else if (startsWith(u"<!DOCTYPE")) {
                refuse(QStringLiteral("document type declaration is not allowed"));
            } else if (startsWith(u"<!")) {
                refuse(QStringLiteral("declaration is not allowed"));
            } else if (startsWith(u"</")) {
                --depth;
                skip(2, u">");
            } else {
                scanStartTag();
            }
        }

        /// Passes a construct that holds no markup.
        void skip(qsizetype opening, QStringView closing)
        {
            const qsizetype end = text.indexOf(closing, index + opening);
            if (end < 0) {
                refuse(QStringLiteral("markup is not terminated"));
                return;
            }
            for (; index < end; ++index) {
                if (isForbidden(text.at(index).unicode())) {
                    refuse(QStringLiteral("character is not allowed"));
                    return;
                }
            }
            index = end + closing.size();
        }

        void scanStartTag()
        {
            if (++depth > maximumXmlDepth) {
                refuse(QStringLiteral("elements are nested too deeply"));
                return;
            }
            const qsizetype start = index++;
            int attributes = 0;
            char16_t quote = 0;
            for (; index < text.size(); ++index) {
                const char16_t c = text.at(index).unicode();
                if (isForbidden(c)) {
                    refuse(QStringLiteral("character is not allowed"));
                    return;
                }
                if (c == u'<') {
                    refuse(QStringLiteral("'<' is not allowed in a tag"));
                    return;
                }
                if (quote != 0) {
                    quote = c == quote ? u'\0' : quote;
                } else if (c == u'"' || c == u'\'') {
                    quote = c;
                    if (++attributes > maximumXmlAttributes) {
                        refuse(QStringLiteral("element has too many attributes"));
                        return;
                    }
                } else if (c == u'>') {
                    if (text.at(index - 1) == u'/') {
                        --depth; // an empty element
                    }
                    ++index;
                    return;
                }
            }
            index = start;
            refuse(QStringLiteral("markup is not terminated"));
        }

        QStringView text;
        qsizetype index = 0;
        int depth = 0;
        std::optional<XmlRefusal> refusal;
    };

} // namespace

std::optional<XmlRefusal> findXmlRefusal(QStringView text)
{
    return Scanner(text).scan();
}

} // namespace vantiro
