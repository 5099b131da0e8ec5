#pragma once

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <optional>
#include <variant>

namespace Quillory {

// The program's preferences, which outlive the process. Main thread only.
// A change holds at once for readers and reaches the disk later, whole; see the adapter for when.
class UserDefaults {
public:
    using Value = std::variant<bool, double, QString, QByteArray, QJsonArray, QJsonObject>;

    virtual ~UserDefaults() = default;

    virtual std::optional<Value> value(QString const& key) const = 0;
    virtual void setValue(QString const& key, Value value) = 0;
    virtual void removeValue(QString const& key) = 0;

    // The value under `key`, absent when there is none or it is of another type.
    template<typename Type>
    std::optional<Type> get(QString const& key) const
    {
        auto stored = value(key);
        if (auto* typed = stored ? std::get_if<Type>(&*stored) : nullptr)
            return std::move(*typed);
        return std::nullopt;
    }
};

}
