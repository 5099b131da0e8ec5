#pragma once

#include <QString>
#include <QStringList>

#include <array>
#include <compare>
#include <cstdint>
#include <optional>

namespace Quillory {

// The number of a release: one to four numbers of at most nine digits between points, then for one that comes before its
// release a "-" or "~" and words of letters and digits between points, as "1.4.0-rc.2".
//
// The numbers are compared in order, a missing one as 0. Of equal ones the version with words comes first; words are
// compared in order, numbers among them by their value and before all others, those by their characters; fewer words
// come first. So 1.9 < 1.10-beta < 1.10-rc.2 < 1.10-rc.10 < 1.10 = 1.10.0.
class ReleaseVersion {
public:
    // Absent where `text` is no version, blanks around it included.
    static std::optional<ReleaseVersion> fromText(QString const& text);

    QString const& text() const { return m_text; }
    bool isPrerelease() const { return !m_words.isEmpty(); }

    std::weak_ordering operator<=>(ReleaseVersion const& other) const;
    bool operator==(ReleaseVersion const& other) const { return (*this <=> other) == 0; }

private:
    static constexpr int mostNumbers = 4;

    QString m_text;
    std::array<std::uint32_t, mostNumbers> m_numbers {};
    QStringList m_words;
};

}
