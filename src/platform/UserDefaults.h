#pragma once

#include "platform/Registration.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <optional>
#include <variant>

namespace Quillory {

// The program's preferences, which outlive the process. Main thread only.
// A change holds at once for readers and reaches the disk later, whole; see the adapter for when.
class UserDefaults {
public:
    using Value = std::variant<bool, double, QString, QByteArray, QJsonArray, QJsonObject>;

    // The fault of the file that they are kept in.
    struct Trouble {
        enum class Kind { setAside, unreadable, unwritable };
        Kind kind = Kind::unwritable;
        QString file; // the one that was set aside, or could not be used
        QString description; // the system's, in the user's language; none of a damaged file
        bool operator==(Trouble const&) const = default;
    };

    virtual ~UserDefaults() = default;

    virtual std::optional<Value> value(QString const& key) const = 0;
    virtual void setValue(QString const& key, Value value) = 0;
    virtual void removeValue(QString const& key) = 0;

    // Calls `told` of each trouble once, until it is over; of the latest that came before at once.
    virtual Registration observeTrouble(std::function<void(Trouble const&)> told) = 0;

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
