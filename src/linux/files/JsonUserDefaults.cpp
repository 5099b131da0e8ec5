#include "linux/files/JsonUserDefaults.h"

#include "linux/files/AtomicFile.h"

#include <QJsonDocument>
#include <QStandardPaths>

#include <mutex>
#include <utility>

namespace Quillory {

namespace {

template<typename... Functions>
struct Overloaded : Functions... {
    using Functions::operator()...;
};

std::optional<QByteArray> dataOf(QJsonObject const& object)
{
    auto const text = object.value(QStringLiteral("data"));
    if (object.size() != 1 || !text.isString())
        return std::nullopt;
    auto decoded = QByteArray::fromBase64Encoding(text.toString().toUtf8(), QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return std::nullopt;
    return std::move(decoded.decoded);
}

std::optional<UserDefaults::Value> fromJson(QJsonValue const& json)
{
    switch (json.type()) {
    case QJsonValue::Bool:
        return json.toBool();
    case QJsonValue::Double:
        return json.toDouble();
    case QJsonValue::String:
        return json.toString();
    case QJsonValue::Array:
        return json.toArray();
    case QJsonValue::Object:
        if (auto data = dataOf(json.toObject()))
            return std::move(*data);
        return json.toObject();
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return std::nullopt;
}

QJsonValue toJson(UserDefaults::Value const& value)
{
    return std::visit(Overloaded {
                          [](QByteArray const& data) -> QJsonValue {
                              return QJsonObject { { QStringLiteral("data"), QString::fromLatin1(data.toBase64()) } };
                          },
                          [](auto const& plain) { return QJsonValue(plain); },
                      },
        value);
}

}

// Lets the writes of workers and of `flush` through one at a time, and never an older state over a newer one.
class JsonUserDefaults::Writer {
public:
    explicit Writer(QString path)
        : m_path(std::move(path))
    {
    }

    std::optional<SystemError> write(QByteArray const& contents, quint64 generation)
    {
        std::lock_guard const lock(m_mutex);
        if (generation <= m_written)
            return std::nullopt;
        auto const result = replaceFile(m_path, contents);
        if (!result)
            return result.error();
        m_written = generation;
        return std::nullopt;
    }

private:
    QString m_path;
    std::mutex m_mutex;
    quint64 m_written = 0;
};

QString JsonUserDefaults::standardPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation)
        + QStringLiteral("/quillory/defaults.json");
}

JsonUserDefaults::JsonUserDefaults(QString path, Executor& executor)
    : m_path(std::move(path))
    , m_executor(executor)
    , m_writer(std::make_shared<Writer>(m_path))
{
    load();
}

JsonUserDefaults::~JsonUserDefaults()
{
    flush();
}

std::optional<UserDefaults::Value> JsonUserDefaults::value(QString const& key) const
{
    return fromJson(m_object.value(key));
}

void JsonUserDefaults::setValue(QString const& key, Value value)
{
    change(key, toJson(value));
}

void JsonUserDefaults::removeValue(QString const& key)
{
    change(key, QJsonValue::Undefined);
}

Registration JsonUserDefaults::observeTrouble(std::function<void(Trouble const&)> told)
{
    if (m_trouble)
        told(*m_trouble);
    return m_observers.add(std::move(told));
}

void JsonUserDefaults::tell(Trouble const& trouble)
{
    if (m_trouble == trouble)
        return;
    m_trouble = trouble;
    m_observers.tell(trouble);
}

void JsonUserDefaults::flush()
{
    if (!prepareToWrite())
        return;
    m_write.end();
    finishWrite(m_writer->write(QJsonDocument(m_writing).toJson(), m_generation));
}

void JsonUserDefaults::load()
{
    m_readError.reset();
    auto const contents = readWholeFile(m_path);
    if (!contents) {
        m_readError = contents.error();
        tell({ Trouble::Kind::unreadable, m_path, m_readError->localizedDescription() });
        return;
    }
    m_onDisk = {};
    if (*contents) {
        auto const document = QJsonDocument::fromJson(**contents);
        if (document.isObject()) {
            m_onDisk = document.object();
        } else if (auto const aside = setFileAside(m_path, QStringLiteral("damaged"))) {
            m_damagedFile = *aside;
            tell({ Trouble::Kind::setAside, *aside });
        } else {
            m_readError = aside.error();
            tell({ Trouble::Kind::unreadable, m_path, m_readError->localizedDescription() });
        }
    }
    auto merged = m_onDisk;
    for (auto const& key : std::as_const(m_changedKeys))
        merged.insert(key, m_object.value(key)); // an undefined value removes
    m_object = merged;
}

void JsonUserDefaults::change(QString const& key, QJsonValue const& value)
{
    if (m_object.value(key) == value)
        return;
    m_object.insert(key, value);
    if (m_readError)
        m_changedKeys.insert(key);
    ++m_generation;
    writeLater();
}

void JsonUserDefaults::writeLater()
{
    if (std::exchange(m_isWriteDue, true))
        return;
    m_due = m_executor.after(writeDelay, [this] {
        m_isWriteDue = false;
        if (!prepareToWrite())
            return;
        m_write = m_executor.detach([writer = m_writer, contents = QJsonDocument(m_writing).toJson(),
                                        generation = m_generation] { return writer->write(contents, generation); },
            [this](std::optional<SystemError> error) { finishWrite(error); });
    });
}

// False when there is nothing to write, or the file that stands there must not be replaced.
bool JsonUserDefaults::prepareToWrite()
{
    m_due.end();
    m_isWriteDue = false;
    if (m_readError && !m_changedKeys.isEmpty())
        load();
    if (m_readError) {
        if (!m_changedKeys.isEmpty())
            m_lastWriteError = m_readError;
        return false;
    }
    m_changedKeys.clear();
    // A write under way counts as a difference: it may put back what is older than the present values.
    if (m_object == m_onDisk && !m_isWriteUnderWay)
        return false;
    m_writing = m_object;
    m_isWriteUnderWay = true;
    return true;
}

void JsonUserDefaults::finishWrite(std::optional<SystemError> error)
{
    m_lastWriteError = error;
    if (error)
        return tell({ Trouble::Kind::unwritable, m_path, error->localizedDescription() });
    m_trouble.reset();
    m_onDisk = m_writing;
    m_isWriteUnderWay = false;
}

}
