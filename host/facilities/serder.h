#pragma once

#include "host/export.h"

#include <QList>
#include <QMetaObject>
#include <QString>
#include <QStringList>
#include <QVariant>

/// Turns objects with a `QMetaObject` into variants and back, property by property, for the document's stored data.
/// What comes out must survive the host's store: after `SaveToFileLogic::save`, a restart and a load, `deserialize`
/// gets the value that the store gives back, with the types that it gives it back in (a map that went through JSON has
/// doubles for integers and texts for dates). [cheque-thread]
namespace serder {

namespace details {

/// How objects of one meta-object are turned. A value; the properties are walked when it is made.
class VANTIRO_HOST_API Strategy {
public:
    /// The strategy for objects of this meta-object, which must outlive it.
    [[nodiscard]] static Strategy create(const QMetaObject& metaObject);

    Strategy(const Strategy& other);
    Strategy& operator=(const Strategy& other);
    ~Strategy();

    /// Writes the object at `object` into `*target` as a map with one entry per stored property. `object` points to
    /// an object of the class that `metaObject` describes, or of one that derives from it as its first base.
    void serialize(QVariant* target, const void* object, const QMetaObject& metaObject) const;

    /// Sets the properties of the object at `object` from a variant that `serialize` has made. Properties that the
    /// variant lacks stay as they are; a value that cannot be read leaves its property at its default.
    void deserialize(void* object, const QVariant& source, const QMetaObject& metaObject) const;

private:
    struct Property;

    Strategy();

    QList<Property> properties; // the stored ones, in the order of their names
};

} // namespace details

/// The way that values of type `T` are stored by default: for classes with a `staticMetaObject`, its strategy.
template <class T>
struct default_serder_type {
    static const details::Strategy strategy;
};

template <class T>
const details::Strategy default_serder_type<T>::strategy = details::Strategy::create(T::staticMetaObject);

/// Lists of texts are stored as lists of texts; reading takes whatever list a store has made of one.
template <>
struct VANTIRO_HOST_API default_serder_type<QList<QString>> {
    static void serialize(QVariant* target, const QList<QString>& list);
    static void deserialize(QList<QString>* list, const QVariant& source);
};

} // namespace serder
