#include "tests/cheque/generated_document.h"

#include "tests/support/document_builder.h"

using namespace Qt::StringLiterals;

namespace {

double roubles(qint64 kopecks)
{
    return static_cast<double>(kopecks) / 100.0;
}

QList<QString> pieces()
{
    return { u"4600051000057"_s,
             u"abc"_s,
             u"Сыр"_s,
             u" "_s,
             u"&"_s,
             u"&amp;"_s,
             u"<"_s,
             u">"_s,
             u"\""_s,
             u"'"_s,
             u"]]>"_s,
             u"<![CDATA["_s,
             u"\n"_s,
             u"\r\n"_s,
             u"\t"_s,
             u"%1"_s,
             u"\x1D"_s,
             u"\x01"_s,
             u"\xFFFE"_s,
             u"\xD83D"_s,
             u"\xDE00"_s,
             u"\U0001F600"_s,
             QString(QChar(u'\0')),
             u"<!--"_s,
             u"&#10;"_s };
}

}

DocumentGenerator::DocumentGenerator(unsigned seed)
    : engine(seed)
{
}

int DocumentGenerator::below(int count)
{
    return static_cast<int>(engine() % static_cast<unsigned>(count));
}

qint64 DocumentGenerator::kopecks()
{
    const int most[] = { 1, 100, 10000, 100000000 };
    return below(most[below(4)]);
}

QString DocumentGenerator::text(int longest)
{
    static const QList<QString> known = pieces();
    QString result;
    for (int count = below(longest + 1); count > 0; --count) {
        result += known.at(below(static_cast<int>(known.size())));
    }
    return result;
}

GeneratedDocument DocumentGenerator::next()
{
    GeneratedDocument made;
    DocumentBuilder builder;
    const int types[] = { EDocumentType::sale, EDocumentType::goodsReturn, 7 };
    builder.type(types[below(3)]).identity(text(4) + u"x"_s).number(below(100000)).shift(below(1000));
    if (below(2) == 0) {
        builder.closed();
    }
    if (below(3) != 0) {
        made.card = u"9"_s + text(3);
        builder.card(made.card);
    }

    const int lineCount = below(7);
    for (int position = 1; position <= lineCount; ++position) {
        GeneratedLine line { position, kopecks(), below(5000), kopecks(), text(3), text(2) };
        Goods goods(position, line.code, roubles(line.price), static_cast<double>(line.quantity) / 1000.0);
        goods.barcode(line.barcode).minPrice(below(3) == 0 ? roubles(line.price) : 0.5).costs(roubles(line.sum));
        if (below(4) == 0) {
            goods.takesNoPoints();
        }
        if (below(4) == 0) {
            goods.takesNoDiscount();
        }
        builder.line(goods);
        made.lines.append(line);
        made.sum += line.sum;
        if (below(4) == 0) {
            made.positionCoupons.insert(position, { text(2), text(2) });
        }
    }
    made.sum += below(3) == 0 ? kopecks() : 0; // a document may round its sum
    builder.costs(roubles(made.sum));

    // Positions reach one beyond the lines, and codes repeat: both happen, and neither may harm.
    for (int count = below(5); count > 0; --count) {
        const GeneratedRecord record { 1 + below(lineCount + 1), below(4), kopecks() };
        builder.discount(Detail(record_name::positionDiscount).code(record.code),
                         { { record.position, roubles(record.sum) } });
        made.carried.append(record);
    }
    for (int count = below(5); count > 0; --count) {
        const GeneratedRecord record { 1 + below(lineCount + 1), below(6), kopecks() };
        made.grantedImpacts.append(discountImpact(Detail(record_name::positionDiscount)
                                                      .code(record.code)
                                                      .percent(below(100))
                                                      .on(record.position)
                                                      .sum(roubles(record.sum))));
        made.granted.append(record);
    }
    if (below(2) == 0) {
        made.grantedOnCheque = kopecks();
        made.grantedImpacts.append(
            discountImpact(Detail(record_name::chequeDiscount).onCheque().sum(roubles(made.grantedOnCheque))));
    }
    for (int count = below(4); count > 0; --count) {
        QMap<int, qint64> points;
        for (int details = below(4); details > 0; --details) {
            points.insert(1 + below(lineCount + 1), kopecks());
        }
        QMap<int, double> sums;
        for (auto point = points.constBegin(); point != points.constEnd(); ++point) {
            sums.insert(point.key(), roubles(point.value()));
            made.spent.append({ point.key(), 0, point.value() });
        }
        made.spentImpacts.append(bonusImpact(sums));
        builder.impact(made.spentImpacts.constLast());
    }
    for (int count = below(3); count > 0; --count) {
        made.certificates.append(kopecks());
        builder.certificate(text(2), roubles(made.certificates.constLast()));
    }
    for (int count = below(3); count > 0; --count) {
        made.coupons.append(text(3));
    }
    made.document = builder.build();
    return made;
}
