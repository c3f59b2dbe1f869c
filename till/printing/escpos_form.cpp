#include "till/printing/escpos_form.h"

#include "till/printing/code_page.h"

#include <QByteArrayView>

#include <initializer_list>

namespace till {

namespace {

    constexpr char esc = 0x1B;
    constexpr char gs = 0x1D;

    class EscPosWriter {
    public:
        EscPosWriter()
        {
            send({ esc, '@' });
            send({ esc, 't', 17 }); // code page 866
        }

        void operator()(const SlipRow& row)
        {
            setAlign(row.align);
            setSize(row.size);
            bytes += toPrinterPage(row.text);
            bytes += '\n';
        }

        void operator()(const ArrangedEan13& item)
        {
            setAlign(SlipAlign::center);
            send({ gs, 'H', item.code.withDigits ? char(2) : char(0) }); // digits: below or none
            send({ gs, 'w', static_cast<char>(item.code.moduleWidth) });
            send({ gs, 'h', static_cast<char>(item.code.height) });
            send({ gs, 'k', 67, static_cast<char>(item.code.content.size()) });
            bytes += item.code.content.toLatin1();
        }

        void operator()(const ArrangedQr& item)
        {
            setAlign(SlipAlign::center);
            const QByteArray content = item.code.content.toUtf8();
            sendQr(65, QByteArrayView("\x32\x00", 2)); // model 2
            sendQr(67, QByteArray(1, static_cast<char>(item.moduleWidth)));
            sendQr(69, "1"); // error correction M
            sendQr(80, '0' + content); // store
            sendQr(81, "0"); // print
        }

        [[nodiscard]] QByteArray finished()
        {
            send({ esc, 'd', 3 }); // feed three lines
            send({ gs, 'V', 66, 0 }); // feed to the knife and cut
            return bytes;
        }

    private:
        void send(std::initializer_list<char> command)
        {
            bytes.append(command.begin(), static_cast<qsizetype>(command.size()));
        }

        /// A function of the family for two-dimensional codes, for the QR code.
        void sendQr(char function, QByteArrayView parameters)
        {
            const qsizetype length = parameters.size() + 2;
            send({ gs, '(', 'k', static_cast<char>(length & 0xFF), static_cast<char>(length >> 8), 49, function });
            bytes += parameters;
        }

        void setAlign(SlipAlign wanted)
        {
            const char position = wanted == SlipAlign::center ? '\1' : wanted == SlipAlign::right ? '\2' : '\0';
            if (position != align) {
                send({ esc, 'a', position });
                align = position;
            }
        }

        void setSize(SlipSize wanted)
        {
            if (wanted == size) {
                return;
            }
            send({ esc, 'M', wanted == SlipSize::smaller ? char(1) : char(0) });
            send({ gs, '!', wanted == SlipSize::enlarge ? char(0x11) : char(0) });
            size = wanted;
        }

        // as the initialisation leaves the printer
        char align = 0;
        SlipSize size = SlipSize::normal;
        QByteArray bytes;
    };

} // namespace

Rendered<QByteArray> renderForPrinter(const Slip& slip, int columns)
{
    const Arrangement arrangement = arrange(slip, printerPaper(columns));
    EscPosWriter writer;
    for (const ArrangedItem& item : arrangement.items) {
        std::visit(writer, item);
    }
    return { writer.finished(), arrangement.findings };
}

} // namespace till
