#pragma once

#include "platform/Executor.h"
#include "platform/Observers.h"
#include "platform/SystemError.h"
#include "platform/UserDefaults.h"

#include <QSet>

#include <memory>
#include <optional>

namespace Quillory {

// User defaults in one JSON object on disk. Data stands as {"data": "<base64>"}, so an object of exactly that form
// reads as data. Changes are gathered for `writeDelay` and then written whole on a worker; `flush` and the end of this
// object write what is still owed before they return. Members that nobody asks for stay as they are.
//
// A file that is no JSON object is set aside as `<name>.damaged-<n>` and the defaults are empty. A file that is there and
// can't be read is never replaced: changes hold in memory, and once it can be read they are put on top of what it says.
class JsonUserDefaults final : public UserDefaults {
public:
    // Stays below the 250 ms within which a change is to be on its way to the disk.
    static constexpr std::chrono::milliseconds writeDelay { 200 };

    // `quillory/defaults.json` in the user's configuration folder.
    static QString standardPath();

    // `executor` must outlive it.
    JsonUserDefaults(QString path, Executor& executor);
    ~JsonUserDefaults() override;

    std::optional<Value> value(QString const& key) const override;
    void setValue(QString const& key, Value value) override;
    void removeValue(QString const& key) override;
    Registration observeTrouble(std::function<void(Trouble const&)> told) override;

    // Writes what is owed now. What fails here is tried again at the next change or flush.
    void flush();

    // Why the latest write failed; absent when it succeeded.
    std::optional<SystemError> lastWriteError() const { return m_lastWriteError; }

    // The new place of a file that this start found damaged; absent when there was none.
    std::optional<QString> damagedFile() const { return m_damagedFile; }

private:
    class Writer;

    void load();
    void change(QString const& key, QJsonValue const& value);
    void writeLater();
    bool prepareToWrite();
    void finishWrite(std::optional<SystemError> error);
    void tell(Trouble const& trouble);

    QString m_path;
    Executor& m_executor;
    std::shared_ptr<Writer> m_writer;

    QJsonObject m_object;
    QJsonObject m_onDisk;
    QJsonObject m_writing; // by the latest write
    std::optional<SystemError> m_readError; // while it stands, the file may not be replaced
    QSet<QString> m_changedKeys; // what to put on top of a file that could not be read yet

    quint64 m_generation = 0;
    bool m_isWriteDue = false;
    bool m_isWriteUnderWay = false; // until one is known to have succeeded
    Registration m_due;
    Registration m_write;
    std::optional<SystemError> m_lastWriteError;
    std::optional<QString> m_damagedFile;
    std::optional<Trouble> m_trouble; // until the file is written
    Observers<void(Trouble const&)> m_observers;
};

}
