#pragma once

#include <QByteArray>
#include <QString>

#include <concepts>
#include <optional>
#include <utility>
#include <vector>

namespace Quillory {

// Writes JSON as it is told, into memory. Keeps no tree, so that a value may be nested to any depth.
class JsonWriter {
public:
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    // Calls `write` between the brackets, for a list with each of its elements.
    template<typename Write>
    void object(Write write)
    {
        beginObject();
        write();
        endObject();
    }
    template<typename List, typename Write>
    void array(List const& list, Write write)
    {
        beginArray();
        for (auto const& element : list)
            write(element);
        endArray();
    }

    void key(QStringView name)
    {
        separate();
        quote(name);
        m_bytes += ':';
        m_isAfterKey = true;
    }

    void value(QStringView text)
    {
        separate();
        quote(text);
    }
    void value(double number) { literal(QByteArray::number(number, 'g', 17)); }
    void value(std::integral auto number)
    {
        if constexpr (std::same_as<decltype(number), bool>)
            literal(number ? "true" : "false");
        else
            literal(QByteArray::number(static_cast<qint64>(number)));
    }
    void null() { literal("null"); }

    // A key with its value; null for what is absent.
    template<typename Value>
    void member(QStringView name, Value const& content)
    {
        key(name);
        value(content);
    }
    template<typename Value>
    void member(QStringView name, std::optional<Value> const& content)
    {
        key(name);
        content ? value(*content) : null();
    }

    // Begins a line before the next value. Means nothing to JSON, and much to whoever compares two files.
    void beginLine() { m_beginsLine = true; }

    QByteArray const& bytes() const { return m_bytes; }

private:
    void begin(char bracket)
    {
        separate();
        m_bytes += bracket;
        m_isFirst.push_back(true);
    }

    void end(char bracket)
    {
        m_isFirst.pop_back();
        m_bytes += bracket;
    }

    void literal(QByteArray const& text)
    {
        separate();
        m_bytes += text;
    }

    void separate()
    {
        if (std::exchange(m_isAfterKey, false))
            return;
        if (!m_isFirst.back())
            m_bytes += ',';
        m_isFirst.back() = false;
        if (std::exchange(m_beginsLine, false))
            m_bytes += '\n';
    }

    void quote(QStringView text)
    {
        m_bytes += '"';
        for (char const byte : text.toUtf8()) {
            auto const code = static_cast<unsigned char>(byte);
            if (byte == '"' || byte == '\\')
                m_bytes += '\\';
            if (code >= 0x20)
                m_bytes += byte;
            else if (byte == '\n' || byte == '\t')
                m_bytes += byte == '\n' ? "\\n" : "\\t";
            else
                m_bytes += "\\u" + QByteArray::number(code, 16).rightJustified(4, '0');
        }
        m_bytes += '"';
    }

    QByteArray m_bytes;
    bool m_beginsLine = false;
    std::vector<bool> m_isFirst { true };
    bool m_isAfterKey = false;
};

}
