#pragma once

#include "platform/UserDefaults.h"

#include <QHash>
#include <QStringList>

namespace Quillory {

// User defaults in memory that remember every key that was changed or could have been.
class MemoryUserDefaults final : public UserDefaults {
public:
    std::optional<Value> value(QString const& key) const override
    {
        auto const found = m_values.find(key);
        return found == m_values.end() ? std::nullopt : std::optional(*found);
    }

    void setValue(QString const& key, Value value) override
    {
        writes << key;
        m_values.insert(key, std::move(value));
    }

    void removeValue(QString const& key) override
    {
        writes << key;
        m_values.remove(key);
    }

    Registration observeTrouble(std::function<void(Trouble const&)> told) override
    {
        m_told = std::move(told);
        return Registration([this] { m_told = nullptr; });
    }
    void tell(Trouble const& trouble) const { m_told(trouble); }

    // The keys in order, those that were given an equal value among them.
    QStringList writes;

private:
    QHash<QString, Value> m_values;
    std::function<void(Trouble const&)> m_told;
};

}
