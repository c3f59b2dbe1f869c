#pragma once

#include "host/export.h"

#include <QList>
#include <QMetaType>
#include <QString>
#include <QVariant>

namespace tr {

/// Translatable text: a key with its Russian wording and the texts that fill its place markers %1 to %99.
/// A value: copied freely, between threads too as long as no copy is changed while another thread reads it.
/// Every exception of the contract carries one, and so does `lastError`.
class VANTIRO_HOST_API Tr {
public:
    /// The empty text. In a result it means that there is no error. [any-thread]
    Tr();

    /// Text that is not to be translated, such as the fault text of a server. Place markers in it are not filled
    /// unless `arg` is called, so "%1" in a text that came from outside stays "%1". [any-thread]
    explicit Tr(const QString& text);

    /// A translation key with its Russian wording. [any-thread]
    Tr(const QString& key, const QString& text);

    Tr(const Tr& other);
    Tr& operator=(const Tr& other);
    virtual ~Tr();

    /// Fills the next place marker: the first call fills the marker with the lowest number, the second call the next
    /// one. Returns this object, so calls can be chained. Markers without an argument stay as they are. [any-thread]
    Tr& arg(const Tr& argument);

    /// The Russian text with the arguments filled in. All arguments are filled in one step, so a marker inside an
    /// argument stays what it was. [any-thread]
    [[nodiscard]] QString ru() const;

    /// The key that a host looks its translation up by; empty for a text that is not to be translated. [any-thread]
    [[nodiscard]] QString getKey() const;

    /// A variant that holds this `tr::Tr`, for dialogs and events; its conversion to a string is `ru()`. [any-thread]
    operator QVariant() const; // implicit on purpose: events take it where they take any other argument

private:
    QString key;
    QString text;
    QString translation; // for a host that shows another language than Russian; plug-ins never set it
    QList<Tr> arguments;
};

/// The key of a text that has no translation of its own, such as the compound "%1%2".
inline const QString undefined = QStringLiteral("undefined");

} // namespace tr

Q_DECLARE_METATYPE(tr::Tr)
