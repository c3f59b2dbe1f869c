#include "till/program/doctor_config.h"

#include "till/program/doctor_names.h"

#include <QFile>
#include <QFileInfo>
#include <QMap>

#include <algorithm>

namespace till::diagnosis {

namespace {

[[nodiscard]] const QString& section()
{
    static const QString name = QStringLiteral("Vantiro");
    return name;
}

/// Of the plug-in, and of the till beside it.
[[nodiscard]] const QMap<QString, QStringList>& knownNames()
{
    static const QMap<QString, QStringList> names {
        { section(),
          { QStringLiteral("hosts"), QStringLiteral("timeout"), QStringLiteral("user"), QStringLiteral("password"),
            QStringLiteral("noBonusForMinprice"), QStringLiteral("forbidDiscountForDiscountedPosition"),
            QStringLiteral("checkCouponPrefix"), QStringLiteral("checkCouponMask"),
            QStringLiteral("positionCouponPrefix"), QStringLiteral("positionCouponMask"),
            QStringLiteral("restoreLoyaltyState") } },
        { QStringLiteral("Till"),
          { QStringLiteral("shift"), QStringLiteral("slips"), QStringLiteral("deliveryTimeout") } },
    };
    return names;
}

/// A line that was meant otherwise may hold a password where its name should be, so that only what looks like a name is
/// shown.
[[nodiscard]] bool isShowable(const ConfigNames::Name& entry)
{
    constexpr qsizetype longest = 40;
    return entry.hasValue && entry.name.size() <= longest && std::ranges::all_of(entry.name, [](QChar character) {
               return character.isLetterOrNumber() || character == u'_' || character == u'.';
           });
}

[[nodiscard]] Finding unknownName(const ConfigNames::Name& entry)
{
    const QString name = isShowable(entry) ? QStringLiteral(" \"%1\"").arg(entry.name) : QString();
    const QString meant = nearest(entry.name, knownNames().value(entry.section));
    const QString advice = meant.isEmpty() ? QStringLiteral("remove it or correct it")
                                           : QStringLiteral("\"%1\" was probably meant").arg(meant);
    return warning(QStringLiteral("Line %1 sets an unknown name%2 in [%3], which has no effect; %4.")
                       .arg(QString::number(entry.line), name, entry.section, advice));
}

[[nodiscard]] Findings checkSections(const ConfigNames& names)
{
    Findings findings;
    for (const ConfigNames::Section& head : names.sections) {
        const QString meant = nearest(head.name, knownNames().keys());
        if (!knownNames().contains(head.name) && !meant.isEmpty()) {
            findings.append(warning(QStringLiteral("Line %1 begins the section [%2], which nobody reads; write [%3].")
                                        .arg(QString::number(head.line), head.name, meant)));
        }
    }
    const auto isStray = [](const ConfigNames::Name& entry) { return entry.section.isEmpty(); };
    if (const auto stray = std::ranges::find_if(names.names, isStray); stray != names.names.end()) {
        findings.append(
            warning(QStringLiteral("Line %1 stands above the first section and has no effect; put it below [Vantiro].")
                        .arg(stray->line)));
    }
    return findings;
}

[[nodiscard]] Findings checkNames(const ConfigNames& names)
{
    Findings findings;
    QMap<QString, QStringList> setIn;
    for (const ConfigNames::Name& entry : names.names) {
        const auto known = knownNames().constFind(entry.section);
        if (known == knownNames().cend()) {
            continue;
        }
        if (!known->contains(entry.name)) {
            findings.append(unknownName(entry));
        } else if (setIn[entry.section].contains(entry.name)) {
            findings.append(warning(
                QStringLiteral("Line %1 sets \"%2\" once more, and only the last one counts; remove the others.")
                    .arg(QString::number(entry.line), entry.name)));
        } else {
            setIn[entry.section].append(entry.name);
        }
    }
    const QStringList set = setIn.value(section());
    findings.prepend(set.isEmpty() ? warning(
                         QStringLiteral("Nothing is set in [Vantiro], so all defaults hold; set at least hosts."))
                                   : ok(QStringLiteral("[Vantiro] sets %1; everything else has its default.")
                                            .arg(set.join(QStringLiteral(", ")))));
    if (!set.isEmpty() && !set.contains(QStringLiteral("hosts"))) {
        findings.append(warning(QStringLiteral("hosts is not set, so the service is looked for at http://127.0.0.1/; "
                                               "set hosts in [Vantiro].")));
    }
    return findings;
}

} // namespace

Findings checkConfigFile(const QString& path, bool named)
{
    if (!QFileInfo::exists(path)) {
        return {
            named ? failed(
                QStringLiteral("There is no configuration %1; make it, or name another with --config FILE.").arg(path))
                  : warning(
                      QStringLiteral("There is no configuration %1, so all defaults hold; make it, with [Vantiro] and "
                                     "hosts in it.")
                          .arg(path))
        };
    }
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        const QString reason = QFileInfo(path).isFile() ? file.errorString() : QStringLiteral("it is no file");
        return { failed(
            QStringLiteral("The configuration %1 cannot be read (%2); give this user the right to read it, or name "
                           "another with --config FILE.")
                .arg(path, reason)) };
    }
    const ConfigNames names = namesIn(file.readAll());

    Findings findings { ok(QStringLiteral("The configuration is %1.").arg(path)) };
    for (const int line : names.damagedLines) {
        findings.append(
            warning(QStringLiteral("Line %1 is not understood and has no effect; write NAME=VALUE below [Vantiro], in "
                                   "UTF-8.")
                        .arg(line)));
    }
    findings += checkSections(names);
    findings += checkNames(names);
    const bool holdsPassword = std::ranges::any_of(names.names, [](const ConfigNames::Name& entry) {
        return entry.section == section() && entry.name == u"password" && entry.hasValue;
    });
    if (holdsPassword && file.permissions().testFlag(QFile::ReadOther)) {
        findings.append(
            warning(QStringLiteral("Every user of this machine can read the password in %1; close it with chmod 600.")
                        .arg(path)));
    }
    return findings;
}

} // namespace till::diagnosis
