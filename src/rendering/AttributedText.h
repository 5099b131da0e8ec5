#pragma once

#include "rendering/ParagraphStyle.h"
#include "rendering/TextAttributes.h"

#include <QHash>
#include <QSharedDataPointer>
#include <QString>

#include <cstddef>
#include <iterator>
#include <span>

namespace Quillory {

// A text with attributes: one string, runs of character attributes and runs of paragraph styles. An immutable value,
// cheap to copy, readable on any thread. Every position counts UTF-16 units of the string.
class AttributedText {
public:
    // Equal neighbours are one run; the runs cover the string without gaps, in order.
    struct Run {
        qsizetype location = 0;
        qsizetype length = 0;
        quint32 index = 0; // tells apart what the text has for it
        qsizetype end() const { return location + length; }
        bool operator==(Run const&) const = default;
    };

    class Runs;
    class Builder;

    AttributedText();
    AttributedText(AttributedText const& other);
    AttributedText(AttributedText&& other) noexcept;
    AttributedText& operator=(AttributedText const& other);
    AttributedText& operator=(AttributedText&& other) noexcept;
    ~AttributedText();

    QString const& string() const;
    qsizetype length() const { return string().size(); }
    bool isEmpty() const { return string().isEmpty(); }

    Runs runs() const;
    Runs paragraphRuns() const;

    TextAttributes const& attributes(Run const& run) const;
    ParagraphStyle const& paragraphStyle(Run const& run) const;
    // Of a paragraph whose style has a block.
    TableCell tableCell(Run const& run) const;

    // The position in runs() of the run that holds `location`, which must lie within the string.
    qsizetype runAt(qsizetype location) const;
    qsizetype paragraphRunAt(qsizetype location) const;

    // The same text with every paragraph in one style, that of its end. A picture has no style, and what marks a quote
    // or an item has not that of the table or code after it.
    AttributedText withWholeParagraphs() const;

    bool operator==(AttributedText const& other) const;

private:
    struct PlacedStyle;
    // A run as it is held, of which a long text has hundreds of thousands: it begins where the one before it ends.
    struct HeldRun {
        quint32 end = 0;
        quint32 index = 0;
    };
    struct Data;
    explicit AttributedText(QExplicitlySharedDataPointer<Data const> data);
    QExplicitlySharedDataPointer<Data const> m_data;
};

// Neighbouring runs, each made when it is looked at. Valid for as long as the text.
class AttributedText::Runs {
public:
    class Iterator {
    public:
        using difference_type = std::ptrdiff_t;
        using value_type = Run;

        Iterator() = default;
        Iterator(Runs const& runs, std::size_t position)
            : m_held(runs.m_held)
            , m_position(position)
        {
        }
        Run operator*() const { return Runs(m_held)[m_position]; }
        Iterator& operator++()
        {
            ++m_position;
            return *this;
        }
        Iterator operator++(int) { return { Runs(m_held), m_position++ }; }
        bool operator==(Iterator const& other) const { return m_position == other.m_position; }

    private:
        std::span<HeldRun const> m_held;
        std::size_t m_position = 0;
    };

    std::size_t size() const { return m_held.size(); }
    bool empty() const { return m_held.empty(); }
    Run operator[](std::size_t position) const
    {
        qsizetype const location = position > 0 ? m_held[position - 1].end : 0;
        return { location, m_held[position].end - location, m_held[position].index };
    }
    Run front() const { return operator[](0); }
    Run back() const { return operator[](size() - 1); }
    Iterator begin() const { return { *this, 0 }; }
    Iterator end() const { return { *this, size() }; }

private:
    friend class AttributedText;
    explicit Runs(std::span<HeldRun const> held)
        : m_held(held)
    {
    }
    std::span<HeldRun const> m_held;
};

// Makes an attributed text from its start to its end.
class AttributedText::Builder {
public:
    // Names an entry that was added once and is appended without being compared again. Valid for this builder alone.
    enum class AttributesId : quint32;
    enum class StyleId : quint32;

    Builder();
    ~Builder();

    qsizetype length() const;
    void reserve(qsizetype length);
    AttributesId add(TextAttributes const& attributes);
    StyleId add(ParagraphStyle const& style);
    // The same style in another cell.
    StyleId add(StyleId style, TableCell cell);

    void appendKnown(QStringView text, AttributesId attributes, StyleId style);
    void append(QStringView text, TextAttributes const& attributes, ParagraphStyle const& style);
    // The object character. The attributes hold what stands for it.
    void appendAttachment(TextAttributes const& attributes, ParagraphStyle const& style);

    AttributedText build() &&;

private:
    QExplicitlySharedDataPointer<Data> m_data;
    QHash<TextAttributes, quint32> m_attributeIndex;
};

}
