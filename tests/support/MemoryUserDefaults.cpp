#include "support/MemoryUserDefaults.h"

namespace Quillory {

std::optional<UserDefaults::Value> MemoryUserDefaults::value(QString const& key) const
{
    auto const found = m_values.find(key);
    return found == m_values.end() ? std::nullopt : std::optional(*found);
}

void MemoryUserDefaults::setValue(QString const& key, Value value)
{
    m_writes.push_back({ key, value });
    m_values.insert(key, std::move(value));
}

void MemoryUserDefaults::removeValue(QString const& key)
{
    m_writes.push_back({ key, std::nullopt });
    m_values.remove(key);
}

}
