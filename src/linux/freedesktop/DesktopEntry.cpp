#include "linux/freedesktop/DesktopEntry.h"

#include <QUrl>

namespace Quillory {

namespace {

using Values = QHash<QString, QString>;

// The escapes that every text of such a file may have.
QString unescaped(QStringView text)
{
    constexpr QStringView names = u"sntr\\";
    constexpr QStringView meanings = u" \n\t\r\\";
    QString result;
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (text[index] != u'\\' || index + 1 == text.size()) {
            result += text[index];
            continue;
        }
        auto const escaped = text[++index];
        if (auto const known = names.indexOf(escaped); known >= 0)
            result += meanings[known];
        else
            result.append(u'\\').append(escaped);
    }
    return result;
}

QString localized(Values const& values, QString const& key, QStringList const& languages)
{
    for (auto const& language : languages) {
        if (auto const found = values.constFind(QStringLiteral("%1[%2]").arg(key, language)); found != values.cend())
            return *found;
    }
    return values.value(key);
}

// One argument as written, and whether it stood in quotes, where nothing is put in.
struct Argument {
    QString text;
    bool isQuoted = false;
};

// Reads a quoted argument up to its closing quote. False when there is none.
bool readQuoted(QStringView line, qsizetype& index, QString& text)
{
    for (++index; index < line.size(); ++index) {
        if (line[index] == u'"')
            return true;
        if (line[index] == u'\\' && index + 1 < line.size() && QStringView(u"\"`$\\").contains(line[index + 1]))
            ++index;
        text += line[index];
    }
    return false;
}

std::optional<QList<Argument>> arguments(QStringView line)
{
    QList<Argument> all;
    bool isInside = false;
    for (qsizetype index = 0; index < line.size(); ++index) {
        if (line[index] == u' ' || line[index] == u'\t') {
            isInside = false;
            continue;
        }
        if (!isInside)
            all.append(Argument());
        isInside = true;
        if (line[index] != u'"') {
            all.last().text += line[index];
            continue;
        }
        all.last().isQuoted = true;
        if (!readQuoted(line, index, all.last().text))
            return std::nullopt;
    }
    return all;
}

class Expansion {
public:
    Expansion(DesktopEntry const& entry, QString const& file)
        : m_entry(entry)
        , m_file(file)
    {
    }

    // False for an unknown code.
    bool add(Argument const& argument)
    {
        if (argument.isQuoted) {
            command.append(argument.text);
            return true;
        }
        if (argument.text == QStringLiteral("%i")) {
            if (!m_entry.icon.isEmpty())
                command << QStringLiteral("--icon") << m_entry.icon;
            return true;
        }
        QString text;
        for (qsizetype index = 0; index < argument.text.size(); ++index) {
            if (argument.text[index] != u'%') {
                text += argument.text[index];
                continue;
            }
            ++index;
            if (index == argument.text.size() || !addCode(argument.text[index], text))
                return false;
        }
        if (!text.isEmpty())
            command.append(text);
        return true;
    }

    QStringList command;
    bool hasFile = false;

private:
    bool addCode(QChar code, QString& text)
    {
        switch (code.unicode()) {
        case u'%':
            text += u'%';
            return true;
        case u'f':
        case u'F':
            hasFile = true;
            text += m_file;
            return true;
        case u'u':
        case u'U':
            hasFile = true;
            text += QString::fromLatin1(QUrl::fromLocalFile(m_file).toEncoded());
            return true;
        case u'c':
            text += m_entry.name;
            return true;
        case u'k':
            text += m_entry.path;
            return true;
        default:
            return QStringView(u"idDnNvm").contains(code); // nothing stands for these any more
        }
    }

    DesktopEntry const& m_entry;
    QString const& m_file;
};

}

QHash<QString, QString> DesktopEntry::mainGroup(QByteArray const& contents)
{
    Values values;
    bool isInside = false;
    for (auto const& bytes : contents.split('\n')) {
        auto const line = QString::fromUtf8(bytes).trimmed();
        if (line.startsWith(u'[')) {
            if (isInside)
                break;
            isInside = line == QStringLiteral("[Desktop Entry]");
        } else if (auto const equals = line.indexOf(u'='); isInside && equals > 0 && !line.startsWith(u'#')) {
            values.insert(line.left(equals).trimmed(), unescaped(QStringView(line).mid(equals + 1).trimmed()));
        }
    }
    return values;
}

std::optional<DesktopEntry> DesktopEntry::parse(
    QByteArray const& contents, QString const& path, QStringList const& languages)
{
    auto const values = mainGroup(contents);
    auto const isTrue = [&](QString const& key) { return values.value(key) == QStringLiteral("true"); };
    if (values.value(QStringLiteral("Type")) != QStringLiteral("Application") || isTrue(QStringLiteral("Hidden"))
        || values.value(QStringLiteral("Exec")).isEmpty())
        return std::nullopt;
    return DesktopEntry {
        .path = path,
        .name = localized(values, QStringLiteral("Name"), languages),
        .icon = localized(values, QStringLiteral("Icon"), languages),
        .exec = values.value(QStringLiteral("Exec")),
        .folder = values.value(QStringLiteral("Path")),
        .wantsTerminal = isTrue(QStringLiteral("Terminal")),
    };
}

std::optional<QStringList> DesktopEntry::commandFor(QString const& file) const
{
    auto const line = arguments(exec);
    if (!line || line->isEmpty())
        return std::nullopt;
    Expansion expansion(*this, file);
    for (auto const& argument : *line) {
        if (!expansion.add(argument))
            return std::nullopt;
    }
    if (!expansion.hasFile)
        expansion.command.append(file);
    return expansion.command;
}

}
