#pragma once

#include <QDomElement>
#include <QString>

#include <vector>

/// An attribute of a cheque as a plain value: a text as it stands, or a number that is yet to be printed.
struct PlainAttribute {
    QString name;
    QString text; // null for a number
    double number = 0.0;
    int decimals = 0;

    bool operator==(const PlainAttribute&) const = default;

    [[nodiscard]] QString value() const
    {
        return text.isNull() ? QString::number(number, 'f', decimals) : text;
    }
};

struct PlainElement {
    QString name;
    int depth = 0; // 0 for the root
    int attributeCount = 0;

    bool operator==(const PlainElement&) const = default;
};

/// A cheque as plain values: what is left to do once all rules of the cheque have been applied. Texts of whole numbers
/// and times are there already, so that whoever writes the tree is rather flattered than wronged.
///
/// Flat, with all characters in one string: a tree of small objects would leave the heap in pieces, and a text made in
/// such a heap takes twice its time.
class PlainTree {
public:
    /// The element with all below it. Elements and attributes alone, which is all that a cheque holds.
    explicit PlainTree(const QDomElement& root);

    PlainTree(const PlainTree&) = delete;
    PlainTree& operator=(const PlainTree&) = delete;

    [[nodiscard]] bool isSame(const PlainTree& other) const;

    std::vector<PlainElement> elements; // each before its children
    std::vector<PlainAttribute> attributes; // those of the first element, by name, then those of the second

private:
    [[nodiscard]] QString kept(QStringView text);

    QString characters; // the texts above point into it
};
