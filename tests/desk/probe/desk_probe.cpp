#include "host/framework/dialog.h"
#include "host/framework/text_printer.h"
#include "till/desk/cashier.h"

#include <QCoreApplication>
#include <QStringList>

namespace {

/// Asks so many times, and shows what came back.
void ask(int times)
{
    for (int i = 0; i < times; ++i) {
        const std::optional<QString> line = till::cashier().ask(QStringLiteral("Код"));
        till::cashier().show(line ? u'[' + *line + u']' : QStringLiteral("none"));
    }
}

/// Everything that a plug-in lets the cashier see.
void show()
{
    core::InputForm form;
    form.title = tr::Tr(QStringLiteral("Подтверждение"));
    form.message = tr::Tr(QStringLiteral("Код из SMS"));
    const core::BasicDialog::Result result = Dialog().showForm(form);
    result.dispatchEvent(tr::Tr(QStringLiteral("Неверный код")));
    Dialog().showError(tr::Tr(QStringLiteral("Ошибка")), 0, 0);
    Dialog().showMessage(tr::Tr(QStringLiteral("Сообщение")), 1, 0, 0);
    TextPrinter().printText(QStringLiteral("Спасибо\nза покупку"), -1);
}

} // namespace

/// Stands before the cashier that a till has by itself: `desk_probe ask TIMES` or `desk_probe show`.
int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"ask") {
        ask(arguments.value(2).toInt());
    } else if (arguments.value(1) == u"show") {
        show();
    } else {
        return 2;
    }
    return 0;
}
