#pragma once

#include <QByteArray>
#include <QStringView>

#include <vector>

namespace Quillory {

// Writes JSON as it is told, into memory. Keeps no tree, so that a value may be nested to any depth.
class JsonWriter {
public:
    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }
    void key(QStringView name);

    void string(QStringView text);
    void number(double value);
    void integer(qint64 value);
    void boolean(bool value);
    void null();

    // Begins a line before the next value. Means nothing to JSON, and much to whoever compares two files.
    void beginLine() { m_beginsLine = true; }

    // A key with its value.
    void member(QStringView name, QStringView text);
    void numberMember(QStringView name, double value);
    void integerMember(QStringView name, qint64 value);
    void booleanMember(QStringView name, bool value);
    void nullMember(QStringView name);

    QByteArray const& bytes() const { return m_bytes; }

private:
    void begin(char bracket);
    void end(char bracket);
    void separate();
    void write(QStringView text);

    QByteArray m_bytes;
    bool m_beginsLine = false;
    std::vector<bool> m_isFirst { true };
    bool m_isBehindKey = false;
};

}
