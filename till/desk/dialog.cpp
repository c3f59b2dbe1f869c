#include "host/framework/dialog.h"

#include "till/desk/cashier.h"
#include "till/facilities/redaction.h"

template class MockFactory<Dialog>;

namespace core::BasicDialog {

Result::Result()
    : isCanceled(true)
{
}

Result::Result(const QString& entered, std::function<void(const tr::Tr&)> dispatchFunction)
    : isCanceled(false)
    , data(entered)
    , dispatch(std::move(dispatchFunction))
{
}

bool Result::canceled() const
{
    return isCanceled;
}

QString Result::getData() const
{
    return data;
}

void Result::dispatchEvent(const tr::Tr& text) const
{
    if (dispatch) {
        dispatch(text);
    }
}

} // namespace core::BasicDialog

namespace {

/// No half of a surrogate pair is left at the end.
[[nodiscard]] QString cutTo(int limit, QString line)
{
    if (limit > 0 && line.size() > limit) {
        line.truncate(line.at(limit).isLowSurrogate() ? limit - 1 : limit);
    }
    return line;
}

/// A server's words may repeat the credentials that it was sent.
void showToCashier(const tr::Tr& text)
{
    till::cashier().show(till::redact(text.ru()));
}

} // namespace

Dialog::Dialog() = default;
Dialog::~Dialog() = default;

core::BasicDialog::Result Dialog::showForm(const core::InputForm& form)
{
    till::cashier().show(form.title.ru());
    const std::optional<QString> line = till::cashier().ask(form.message.ru());
    if (!line) {
        return core::BasicDialog::Result();
    }
    return core::BasicDialog::Result(cutTo(form.lengthLimit, *line),
                                     showToCashier);
}

void Dialog::showError(const tr::Tr& text, int /*first*/, int /*second*/)
{
    showToCashier(text);
}

void Dialog::showMessage(const tr::Tr& text, int /*first*/, int /*second*/, int /*third*/)
{
    showToCashier(text);
}
