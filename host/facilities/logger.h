#pragma once

#include "host/export.h"

#include <QString>

namespace Log4Qt {

/// A named log. Formats are UTF-8 text with the place markers %1, %2 and %3, which are filled with the arguments in
/// their order and in one step, so a marker inside an argument stays what it was. An overload that takes a `QString`
/// first logs it as it stands. Layout, destinations and thresholds are the host's, which must keep credentials out of
/// what it writes. No operation throws. [any-thread]
class VANTIRO_HOST_API Logger {
public:
    void trace(const char* format, const QString& argument) const;

    void debug(const QString& text) const;

    void info(const char* text) const;
    void info(const char* format, const QString& argument) const;
    void info(const char* format, int first, const QString& second) const;

    void warn(const char* text) const;

    void error(const char* text) const;
    void error(const QString& text) const;
    void error(const char* format, const QString& argument) const;
    void error(const char* format, int first, int second, const QString& third) const;
    void error(const char* format, const QString& first, int second, int third) const;

protected:
    Logger(); // made by the `LogManager` alone
    virtual ~Logger();

private:
    Q_DISABLE_COPY(Logger)
};

} // namespace Log4Qt
