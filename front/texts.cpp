#include "front/texts.h"

namespace vantiro {

tr::Tr withRemark(const tr::Tr& reason, const tr::Tr& remark)
{
    tr::Tr text(tr::undefined, QStringLiteral("%1%2"));
    return text.arg(reason).arg(remark);
}

tr::Tr onlyEarn()
{
    return tr::Tr(QStringLiteral("vantiroOnlyEarn"), QStringLiteral(". Доступно только начисление баллов"));
}

} // namespace vantiro
