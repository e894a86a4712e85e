#pragma once

#include <QMetaMethod>
#include <QMetaObject>
#include <QStringList>

#include <type_traits>

/// The signatures, in normal form, of what \a type itself declares of \a kind, in the order of
/// declaration, without what it inherits: e.g. "socketReadData(QByteArray)".
[[nodiscard]] inline QStringList declared(const QMetaObject &type, QMetaMethod::MethodType kind)
{
    QStringList signatures;
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (method.methodType() == kind) {
            signatures.append(QString::fromLatin1(method.methodSignature()));
        }
    }
    return signatures;
}

/// Whether all slots that \a type itself declares have this \a access.
[[nodiscard]] inline bool slotsAre(const QMetaObject &type, QMetaMethod::Access access)
{
    for (int i = type.methodOffset(); i < type.methodCount(); ++i) {
        const QMetaMethod method = type.method(i);
        if (method.methodType() == QMetaMethod::Slot && method.access() != access) {
            return false;
        }
    }
    return true;
}

/// True when the object, function or member pointer \a entity is of exactly the type \a Stated.
template <typename Stated, typename Entity>
[[nodiscard]] constexpr bool hasType(Entity)
{
    return std::is_same_v<Stated, Entity>;
}
