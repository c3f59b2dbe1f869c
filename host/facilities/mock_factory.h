#pragma once

#include <QSharedPointer>

/// Gives out the replaceable objects of the host. The contract declares `extern template` for each of them, and the
/// host instantiates it: `mocked` exists once in the process.
///
/// `mocked` is set and reset while nothing else uses the factory; `create` may then be called from any thread.
template <class T>
class MockFactory {
public:
    MockFactory() = delete;

    /// The substitute, owned by whoever set it, or null for the real thing.
    static T* mocked;

    /// A new `T`, or the substitute, which the returned pointer never deletes. [any-thread]
    [[nodiscard]] static QSharedPointer<T> create()
    {
        if (mocked != nullptr) {
            return QSharedPointer<T>(mocked, [](T*) { });
        }
        return QSharedPointer<T>::create();
    }
};

template <class T>
T* MockFactory<T>::mocked = nullptr;
