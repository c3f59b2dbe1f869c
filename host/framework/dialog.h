#pragma once

#include "host/export.h"
#include "host/facilities/mock_factory.h"
#include "host/facilities/tr.h"

#include <QSharedPointer>
#include <QString>

#include <functional>

namespace core {

/// A form with one text field. The fields that a plug-in does not set keep their defaults. A plain value.
struct InputForm {
    tr::Tr title;
    tr::Tr message;
    tr::Tr scanError; // shown when a scanned code cannot be read
    tr::Tr okButton;
    tr::Tr cancelButton;
    int type = 0; // the host's kinds of form; 5 is a text field
    QString id; // names the form to the host
    int lengthLimit = 0; // characters; 0 means the host's own limit
};

namespace BasicDialog {

/// How a form was left. A value; copies share the form. [cheque-thread]
class VANTIRO_HOST_API Result {
public:
    /// A cancelled form.
    Result();
    /// A form left with the data. `dispatch` is what `dispatchEvent` does; none means nothing.
    Result(const QString& data, std::function<void(const tr::Tr&)> dispatch);

    [[nodiscard]] bool canceled() const;
    /// What was entered, as it was entered; empty when cancelled.
    [[nodiscard]] QString getData() const;
    /// Shows the text on the form.
    void dispatchEvent(const tr::Tr& text) const;

private:
    bool isCanceled;
    QString data;
    std::function<void(const tr::Tr&)> dispatch;
};

} // namespace BasicDialog

} // namespace core

/// The cashier's screen, made through `MockFactory<Dialog>`. [cheque-thread] [blocks: until the cashier answers]
class VANTIRO_HOST_API Dialog {
public:
    Dialog();
    virtual ~Dialog();

    [[nodiscard]] virtual core::BasicDialog::Result showForm(const core::InputForm& form);
    /// The two numbers are the host's; plug-ins pass 0 and 0.
    virtual void showError(const tr::Tr& text, int first, int second);
    /// The three numbers are the host's; plug-ins pass 1, 0 and 0.
    virtual void showMessage(const tr::Tr& text, int first, int second, int third);

private:
    Q_DISABLE_COPY(Dialog)
};

extern template class VANTIRO_HOST_API MockFactory<Dialog>;
