#pragma once

#include "platform/UserDefaults.h"

#include <QHash>

#include <vector>

namespace Quillory {

// User defaults in memory that remember every call that changed or could have changed them.
class MemoryUserDefaults final : public UserDefaults {
public:
    struct Write {
        QString key;
        std::optional<Value> value; // absent for a removal
        bool operator==(Write const&) const = default;
    };

    std::optional<Value> value(QString const& key) const override
    {
        auto const found = m_values.find(key);
        return found == m_values.end() ? std::nullopt : std::optional(*found);
    }

    void setValue(QString const& key, Value value) override
    {
        m_writes.push_back({ key, value });
        m_values.insert(key, std::move(value));
    }

    void removeValue(QString const& key) override
    {
        m_writes.push_back({ key, std::nullopt });
        m_values.remove(key);
    }

    Registration observeTrouble(std::function<void(Trouble const&)> told) override
    {
        m_told = std::move(told);
        return Registration([this] { m_told = nullptr; });
    }
    void tell(Trouble const& trouble) const { m_told(trouble); }

    // In order, those that set an equal value among them.
    std::vector<Write> const& writes() const { return m_writes; }
    void forgetWrites() { m_writes.clear(); }

private:
    QHash<QString, Value> m_values;
    std::vector<Write> m_writes;
    std::function<void(Trouble const&)> m_told;
};

}
