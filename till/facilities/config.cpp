#include "host/facilities/config.h"

#include "host/facilities/log_manager.h"
#include "till/facilities/config_file.h"

#include <QFileInfo>
#include <QHash>
#include <QIODevice>
#include <QSettings>
#include <QStringDecoder>

#include <mutex>
#include <optional>
#include <utility>

template class Singleton<Config>;

namespace {

struct Values {
    std::mutex mutex;
    QHash<QString, QString> byKey; // "Group/name"
};

[[nodiscard]] Values& values()
{
    static Values instance;
    return instance;
}

[[nodiscard]] const Log4Qt::Logger& logger()
{
    return *Log4Qt::LogManager::logger(QStringLiteral("till"), QStringLiteral("config"));
}

/// The text of the bytes, or nothing when they are no UTF-8: a password in another encoding must not become another
/// one.
[[nodiscard]] std::optional<QString> decoded(const QByteArray& bytes)
{
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(text);
}

[[nodiscard]] QByteArray unquoted(const QByteArray& text)
{
    const bool quoted = text.size() >= 2 && text.startsWith('"') && text.endsWith('"');
    return quoted ? text.sliced(1, text.size() - 2) : text;
}

/// Reads line by line into the map of `QSettings`. `takeLine` tells whether it understood the line.
class PlainIniReader {
public:
    explicit PlainIniReader(QSettings::SettingsMap& target)
        : map(target)
    {
    }

    [[nodiscard]] bool takeLine(const QByteArray& line)
    {
        if (line.isEmpty() || line.startsWith('#') || line.startsWith(';')) {
            return true;
        }
        return line.startsWith('[') ? takeHead(line) : takeValue(line);
    }

private:
    bool takeHead(const QByteArray& line)
    {
        // The values below a head that cannot be read must not count to the section before it.
        prefix.reset();
        const std::optional<QString> name
            = line.endsWith(']') ? decoded(line.sliced(1, line.size() - 2).trimmed()) : std::nullopt;
        if (name.value_or(QString()).isEmpty()) {
            return false;
        }
        prefix = *name + u'/';
        return true;
    }

    bool takeValue(const QByteArray& line)
    {
        const qsizetype equals = line.indexOf('=');
        const std::optional<QString> name = decoded(line.first(qMax(equals, 0)).trimmed());
        const std::optional<QString> value = decoded(unquoted(line.sliced(equals + 1).trimmed()));
        if (!prefix || name.value_or(QString()).isEmpty() || !value) {
            return false;
        }
        map.insert(*prefix + *name, *value);
        return true;
    }

    QSettings::SettingsMap& map;
    std::optional<QString> prefix = QString(); // section and slash; nothing below a damaged head
};

/// Our own reading of the INI syntax: that of `QSettings` splits values at commas and gives `;` and `\` a meaning.
bool readPlainIni(QIODevice& device, QSettings::SettingsMap& map)
{
    QByteArray content = device.readAll();
    if (content.startsWith("\xEF\xBB\xBF")) {
        content.remove(0, 3);
    }
    PlainIniReader reader(map);
    int number = 0;
    for (const QByteArray& line : content.split('\n')) {
        ++number;
        if (!reader.takeLine(line.trimmed())) {
            logger().error("Не разобрана и не действует строка %1 файла настроек", QString::number(number));
        }
    }
    return true;
}

bool refuseToWrite(QIODevice& /*device*/, const QSettings::SettingsMap& /*map*/)
{
    return false; // the file is the operator's
}

[[nodiscard]] QSettings::Format plainIni()
{
    static const QSettings::Format format
        = QSettings::registerFormat(QStringLiteral("ini"), readPlainIni, refuseToWrite);
    return format;
}

[[nodiscard]] QHash<QString, QString> readFile(const QString& path)
{
    QHash<QString, QString> result;
    if (path.isEmpty()) {
        return result;
    }
    if (!QFileInfo(path).isFile()) {
        logger().error("Нет файла настроек %1, действуют значения по умолчанию", path);
        return result;
    }
    const QSettings settings(path, plainIni());
    if (settings.status() != QSettings::NoError) {
        logger().error("Файл настроек %1 не читается, действуют значения по умолчанию", path);
    }
    for (const QString& key : settings.allKeys()) {
        result.insert(key, settings.value(key).toString());
    }
    return result;
}

[[nodiscard]] std::optional<QString> find(const QString& key)
{
    QString path = key;
    if (const qsizetype colon = key.indexOf(u':'); colon >= 0) {
        path[colon] = u'/';
    }
    const std::lock_guard lock(values().mutex);
    const auto it = std::as_const(values().byKey).constFind(path);
    return it == values().byKey.constEnd() ? std::nullopt : std::optional(*it);
}

[[nodiscard]] std::optional<bool> asBool(const QString& text)
{
    const QString word = text.toLower();
    if (word == u"true" || word == u"1" || word == u"yes" || word == u"on") {
        return true;
    }
    if (word == u"false" || word == u"0" || word == u"no" || word == u"off") {
        return false;
    }
    return std::nullopt;
}

} // namespace

namespace till {

void setConfigFile(const QString& path)
{
    QHash<QString, QString> read = readFile(path);
    const std::lock_guard lock(values().mutex);
    values().byKey.swap(read);
}

} // namespace till

Config::Config() = default;
Config::~Config() = default;

QString Config::getString(const QString& key, const QString& defaultValue)
{
    return find(key).value_or(defaultValue);
}

int Config::getInt(const QString& key, int defaultValue)
{
    const std::optional<QString> text = find(key);
    if (!text) {
        return defaultValue;
    }
    bool ok = false;
    const int value = text->toInt(&ok, 10);
    if (!ok) {
        logger().error("Настройка %1 не целое число, действует значение по умолчанию", key);
    }
    return ok ? value : defaultValue;
}

bool Config::getBool(const QString& key, bool defaultValue)
{
    const std::optional<QString> text = find(key);
    if (!text) {
        return defaultValue;
    }
    const std::optional<bool> value = asBool(*text);
    if (!value) {
        logger().error("Настройка %1 не да и не нет, действует значение по умолчанию", key);
    }
    return value.value_or(defaultValue);
}
