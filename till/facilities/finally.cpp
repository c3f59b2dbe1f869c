#include "host/facilities/finally.h"

#include "host/facilities/log_manager.h"

#include <cstdio>
#include <exception>
#include <utility>

namespace {

// The contract forbids the function to throw. One that does all the same must not end the till: it may run while
// another exception is on its way.
void reportCurrentException() noexcept
{
    try {
        const Log4Qt::Logger* const logger = Log4Qt::LogManager::logger(QStringLiteral("till"), QString());
        try {
            throw;
        } catch (const std::exception& exception) {
            logger->error("Завершающее действие закончилось исключением: %1", QString::fromUtf8(exception.what()));
        } catch (...) {
            logger->error("Завершающее действие закончилось исключением");
        }
    } catch (...) {
        std::fputs("Завершающее действие закончилось исключением\n", stderr);
    }
}

} // namespace

Finally::Finally(std::function<void()> functionToRun)
    : function(std::move(functionToRun))
{
}

Finally::~Finally()
{
    if (!function) {
        return;
    }
    try {
        function();
    } catch (...) {
        reportCurrentException();
    }
}
