#include "JsonWriter.h"

#include <utility>

namespace Quillory {

void JsonWriter::separate()
{
    if (m_isBehindKey) {
        m_isBehindKey = false;
        return;
    }
    if (!m_isFirst.back())
        m_bytes += ',';
    m_isFirst.back() = false;
    if (std::exchange(m_beginsLine, false))
        m_bytes += '\n';
}

void JsonWriter::begin(char bracket)
{
    separate();
    m_bytes += bracket;
    m_isFirst.push_back(true);
}

void JsonWriter::end(char bracket)
{
    m_isFirst.pop_back();
    m_bytes += bracket;
}

void JsonWriter::key(QStringView name)
{
    separate();
    write(name);
    m_bytes += ':';
    m_isBehindKey = true;
}

void JsonWriter::string(QStringView text)
{
    separate();
    write(text);
}

void JsonWriter::write(QStringView text)
{
    static constexpr char digits[] = "0123456789abcdef";
    m_bytes += '"';
    for (char const byte : text.toUtf8()) {
        auto const code = static_cast<unsigned char>(byte);
        if (byte == '"' || byte == '\\') {
            m_bytes += '\\';
            m_bytes += byte;
        } else if (byte == '\n') {
            m_bytes += "\\n";
        } else if (byte == '\t') {
            m_bytes += "\\t";
        } else if (code < 0x20) {
            m_bytes += "\\u00";
            m_bytes += digits[code >> 4U];
            m_bytes += digits[code & 0xFU];
        } else {
            m_bytes += byte;
        }
    }
    m_bytes += '"';
}

void JsonWriter::number(double value)
{
    separate();
    m_bytes += QByteArray::number(value, 'g', 17);
}

void JsonWriter::integer(qint64 value)
{
    separate();
    m_bytes += QByteArray::number(value);
}

void JsonWriter::boolean(bool value)
{
    separate();
    m_bytes += value ? "true" : "false";
}

void JsonWriter::null()
{
    separate();
    m_bytes += "null";
}

void JsonWriter::member(QStringView name, QStringView text)
{
    key(name);
    string(text);
}

void JsonWriter::numberMember(QStringView name, double value)
{
    key(name);
    number(value);
}

void JsonWriter::integerMember(QStringView name, qint64 value)
{
    key(name);
    integer(value);
}

void JsonWriter::booleanMember(QStringView name, bool value)
{
    key(name);
    boolean(value);
}

void JsonWriter::nullMember(QStringView name)
{
    key(name);
    null();
}

}
