#pragma once

#include "rendering/ParagraphStyle.h"
#include "rendering/TextAttributes.h"

#include <QHash>
#include <QSharedDataPointer>
#include <QString>

#include <span>
#include <vector>

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
        bool operator==(Run const&) const = default;
    };

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

    std::span<Run const> runs() const;
    std::span<Run const> paragraphRuns() const;

    TextAttributes const& attributes(Run const& run) const;
    ParagraphStyle const& paragraphStyle(Run const& run) const;
    // Of a paragraph whose style has a block.
    TableCell tableCell(Run const& run) const;

    // The position in runs() of the run that holds `location`, which must lie within the string.
    qsizetype runAt(qsizetype location) const;
    qsizetype paragraphRunAt(qsizetype location) const;

    // The same text with every paragraph in one style, that of its end. A picture has no style, and what marks a quote
    // or an item has not that of the table or code behind it.
    AttributedText withWholeParagraphs() const;

    bool operator==(AttributedText const& other) const;

private:
    struct PlacedStyle;
    struct Data;
    explicit AttributedText(QExplicitlySharedDataPointer<Data const> data);
    QExplicitlySharedDataPointer<Data const> m_data;
};

// Makes an attributed text from its start to its end.
class AttributedText::Builder {
public:
    // What was added once is appended without being compared again. Valid for this builder alone.
    enum class AttributesId : quint32;
    enum class StyleId : quint32;

    Builder();
    ~Builder();

    qsizetype length() const;
    QString textFrom(qsizetype location) const;
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
