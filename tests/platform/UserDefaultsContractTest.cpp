#include "platform/linux/files/JsonUserDefaults.h"
#include "support/ManualExecutor.h"
#include "support/MemoryUserDefaults.h"

#include <gmock/gmock.h>

#include <QTemporaryDir>

namespace Quillory {
namespace {

using Value = UserDefaults::Value;

struct InMemory {
    MemoryUserDefaults defaults;
};

struct OnDisk {
    QTemporaryDir folder;
    ManualExecutor executor;
    JsonUserDefaults defaults { folder.filePath(QStringLiteral("defaults.json")), executor };
};

template<typename Harness>
class UserDefaultsContract : public testing::Test, public Harness {
protected:
    QString m_key = QStringLiteral("key");
};

using Defaults = testing::Types<InMemory, OnDisk>;
TYPED_TEST_SUITE(UserDefaultsContract, Defaults);

TYPED_TEST(UserDefaultsContract, A_value_of_each_type_comes_back_as_it_was_set)
{
    QJsonArray const array { 1, QStringLiteral("two"), QJsonObject { { QStringLiteral("three"), true } } };
    for (auto const& value : { Value(true), Value(false), Value(16.5), Value(-3.0), Value(QStringLiteral("é\n\"🜁")),
             Value(QString()), Value(QByteArray("\0\xff\x01", 3)), Value(QByteArray()), Value(array),
             Value(QJsonArray()), Value(QJsonObject { { QStringLiteral("data"), 1 } }), Value(QJsonObject()) }) {
        SCOPED_TRACE(value.index());
        this->defaults.setValue(this->m_key, value);
        EXPECT_EQ(this->defaults.value(this->m_key), value);
    }
}

TYPED_TEST(UserDefaultsContract, A_value_is_absent_under_another_type_another_key_and_after_its_removal)
{
    EXPECT_EQ(this->defaults.value(this->m_key), std::nullopt);
    this->defaults.removeValue(this->m_key);
    this->defaults.setValue(this->m_key, true);
    EXPECT_EQ(this->defaults.template get<bool>(this->m_key), true);
    EXPECT_EQ(this->defaults.template get<QString>(this->m_key), std::nullopt);
    EXPECT_EQ(this->defaults.template get<double>(this->m_key), std::nullopt);
    EXPECT_EQ(this->defaults.value(QStringLiteral("Key")), std::nullopt);
    this->defaults.setValue(this->m_key, QStringLiteral("text"));
    EXPECT_EQ(this->defaults.template get<QString>(this->m_key), QStringLiteral("text"));
    this->defaults.removeValue(this->m_key);
    EXPECT_EQ(this->defaults.value(this->m_key), std::nullopt);
}

}
}
