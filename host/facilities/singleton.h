#pragma once

/// The one object of a host service. The contract declares `extern template` for each service, and the host
/// instantiates it: `instance` exists once in the process, whatever the number of plug-ins.
///
/// A test or a host that wants another object stores it in `instance` before the first use. Nobody deletes it: it
/// lives as long as the process. The first use is not guarded; it happens while plug-ins start. [cheque-thread]
template <class T>
class Singleton {
public:
    Singleton() = delete;

    static T* instance;

    /// The object, made on first use.
    [[nodiscard]] static T* get()
    {
        if (instance == nullptr) {
            instance = new T;
        }
        return instance;
    }
};

template <class T>
T* Singleton<T>::instance = nullptr;
