#pragma once

#include <gmock/gmock.h>

#include <QByteArray>
#include <QStringList>

#include <chrono>
#include <ostream>

// What every file of tests begins with: the matchers, the literals, and values of Qt that tell what they hold.
using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace testing;

// Sanitizers are slow, and keep what was freed for a while.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
inline constexpr bool isSanitized = true;
#else
inline constexpr bool isSanitized = false;
#endif

inline void PrintTo(QString const& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(QByteArray const& bytes, std::ostream* out)
{
    *out << '"' << bytes.left(400).toPercentEncoding(" \n\"'{}[]()<>:;,.!?/|\\#*+=-_~`@$^&").toStdString() << '"';
}
